#include "orv/orv.h"

int OrvMain(int, wchar_t **)
{
    // Everyone may wait for the event and query its state. An account that is not named has no rights.
    const OrvWinEventRights toWait = OrvWinEventSynchronize | OrvWinEventQueryState;
    OrvSecurityCtx context;
    OrvResult result = context.Allow(OrvGroupEveryone, toWait);
    // Integrity levels exist since Windows Vista. Before, this is a success with a remark and changes nothing.
    if (OrvSucceeded(result))
        result = context.SetMandatoryLevel(OrvMandatoryMedium);

    // The context makes the descriptor that Create takes, and owns it.
    OrvWinSecurityDescriptor *descriptor = nullptr;
    if (OrvSucceeded(result))
        result = context.GetSecurityDescriptor(descriptor);
    OrvBasWinEvent event;
    if (OrvSucceeded(result))
        result = event.Create(OrvBasEvent::ManualReset, true, L"OrvGuideGuarded", OrvBasWinSyncSession,
                              descriptor);
    if (OrvFailed(result))
        return 1;

    OrvBasWinEvent other;
    result = other.Open(L"OrvGuideGuarded", OrvBasWinSyncSession, toWait);
    OrvPrint(L"to wait: %08X, signalled: %s\n", result, other.Wait(0) == ORV_S_OK ? L"yes" : L"no");
    OrvPrint(L"to set it, too: %08X\n",
             other.Open(L"OrvGuideGuarded", OrvBasWinSyncSession, toWait | OrvWinEventModifyState));
    if (OrvFailed(result))
        return 1;

    // An object of the user who runs this: only this user, the system and administrators have rights to it.
    OrvSecurityCtx onlyMine;
    OrvBasWinMutex mutex;
    result = onlyMine.AllowPrivate(OrvWinMutexAllAccess);
    if (OrvSucceeded(result))
        result = onlyMine.GetSecurityDescriptor(descriptor);
    if (OrvSucceeded(result))
        result = mutex.Create(false, L"OrvGuidePrivate", OrvBasWinSyncSession, descriptor);
    const OrvBasMutexHolder holder(&mutex, 0);
    OrvPrint(L"mine: %08X, held: %s\n", result, holder.IsHeld() ? L"yes" : L"no");
    return OrvFailed(result) ? 1 : 0;
}
