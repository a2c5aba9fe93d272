#include "orv/orv.h"

int OrvMain(int, wchar_t **)
{
    // Everyone may wait for the event and ask for its state. Whoever is not named has no right.
    const OrvWinEventRights toWait = OrvWinEventSynchronize | OrvWinEventQueryState;
    OrvSecurityCtx context;
    OrvResult result = context.Allow(OrvGroupEveryone, toWait);
    // Labels came with Windows Vista. Before that this is a success with a remark, and nothing has been done.
    if (OrvSucceeded(result))
        result = context.SetMandatoryLevel(OrvMandatoryMedium);

    // What the context says becomes the descriptor that creation takes. It lives as long as the context.
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

    // What belongs to the user who runs this: others but the system and administrators have no right to it.
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
