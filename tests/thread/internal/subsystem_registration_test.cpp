// Which systems are told of a thread and how, and threads where the library was started up by hand or not at
// all.

#include "thread/subsystem_registration.h"

#include "harness/replace.h"
#include "harness/test.h"
#include "harness/usage.h"
#include "nt/teb.h"
#include "orv/orv.h"
#include "thread/worker.h"

namespace
{

constexpr const wchar_t *kNtdll = L"ntdll.dll";

ULONG told[4]; ///< the call's number, and the thread's handle, process and id

NTSTATUS NTAPI CallServer(const ULONG *message, PVOID capture, ULONG api, ULONG argumentSize)
{
    told[0] = !capture && argumentSize == 12 ? api : 0;
    for (uint32_t i = 0; i < 3; i++)
        told[1 + i] = message[10 + i];
    return 0;
}

extern "C" void __fastcall NoteService(ULONG shortcut, const ULONG *arguments)
{
    for (uint32_t i = 0; i < 3; i++)
        told[1 + i] = shortcut ? 0 : arguments[i];
}

/// As the 64-bit side is entered: the number in eax, the rest where a fast call has it.
__attribute__((naked)) void EnterSixtyFourBits()
{
    __asm__("movl %%eax, %c0\n\tjmp @NoteService@8" : : "i"(told));
}

NTSTATUS NTAPI FindAnything(PVOID, const ANSI_STRING *name, ULONG, PVOID *address)
{
    *address = name->Buffer[0] == 'C' ? reinterpret_cast<PVOID>(CallServer) : nullptr;
    return 0;
}

} // namespace

TEST_CASE(OldSystemsAreTold)
{
    struct {
        uint32_t major, minor;
        bool isWow64, isEnabled;
        ULONG call;
    } const cases[] = {
        {5, 0, true, false, 0},       {5, 1, true, false, 0x300A},  {5, 2, true, true, 0x300A},
        {5, 2, false, false, 0},      {5, 1, false, true, 0x10001}, {6, 0, true, true, 0x10001},
        {6, 1, false, true, 0x10001}, {6, 2, false, true, 0},
    };
    const CLIENT_ID clientId = {reinterpret_cast<HANDLE>(12), reinterpret_cast<HANDLE>(13)};
    CHECK_EQUAL(OrvNtdllTableInitialize(), ORV_S_OK);
    TEB *const teb = NtCurrentTeb();
    const PVOID entry = teb->WOW32Reserved;
    teb->WOW32Reserved = reinterpret_cast<PVOID>(EnterSixtyFourBits);
    for (const auto &c : test::Rows(cases)) {
        OrvEnvironment::OsInfo::Initialize({c.major, c.minor, 0, 0, 0, 0, {}, {}}, L"");
        OrvBasThread::SetSubsystemRegistration(c.isEnabled);
        for (ULONG &value : told)
            value = 0;
        const test::ReplacedFunction calls(kNtdll, "CsrClientCallServer", CallServer);
        if (c.isWow64) {
            const test::ReplacedFunction finds(kNtdll, "LdrGetProcedureAddress", FindAnything);
            detail::RegisterWithSubsystem(reinterpret_cast<HANDLE>(11), clientId);
        } else {
            detail::RegisterWithSubsystem(reinterpret_cast<HANDLE>(11), clientId);
        }
        CHECK_EQUAL(told[0], c.call);
        for (ULONG i = 0; i < 3; i++)
            CHECK_EQUAL(told[1 + i], c.call ? 11 + i : 0);
    }
    teb->WOW32Reserved = entry;
    OrvBasThread::SetSubsystemRegistration(false);
}

TEST_CASE(ThreadsNeedNoStartUp)
{
    for (uint32_t i = 0; i < 2; i++) {
        if (i == 0)
            OrvNtdllTableDestroy(); // and so the platform's thread-exit entry is missing
        else
            CHECK_EQUAL(OrvInitializeSysMini(), ORV_S_OK);
        const test::Usage before = test::CountUsage();
        {
            Worker thread;
            thread.exitCode = 21;
            CHECK_EQUAL(thread.Start(), ORV_S_OK);
            CHECK_EQUAL(thread.End(), 21);
        }
        CHECK_USAGE(before);
    }
    OrvDestroySysMini();
}
