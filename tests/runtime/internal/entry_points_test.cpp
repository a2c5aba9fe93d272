// The tables before anything filled them, and what replaces a missing entry.

#include "orv/runtime/kernel32_entry_points.h"
#include "orv/runtime/ntdll_entry_points.h"
#include "orv/runtime/result.h"
#include "orv/startup/startup.h"

#include "harness/replace.h"
#include "harness/test.h"
#include "nt/programs.h"
#include "nt/teb.h"
#include "runtime/entry_table.h"

TEST_CASE(EmptyTablesAnswerAndFallBack)
{
    CHECK(!OrvNtdllIsTableInitialized());
    CHECK_EQUAL(OrvNtdllForceInitialize(), 0);
    CHECK(!OrvNtdll_FunctionExists("ZwClose"));
    CHECK(!OrvIsWOW64Process());
    CHECK(!OrvNtdllIsFnLoaded_NtGetTickCount());
    CHECK(!OrvKernel32IsTableInitialized());
    CHECK(!OrvKernel32IsFnLoaded_ReadFile());

    const wchar_t samples[][2] = {{L'A', L'a'}, {L'z', L'z'}, {0x0416, 0x0436}, {0x00DF, 0x00DF}, {0, 0}};
    for (const auto &sample : samples)
        CHECK_EQUAL(OrvNtdll_RtlDowncaseUnicodeChar(sample[0]), sample[1]);

    const volatile KUSER_SHARED_DATA &shared = SharedUserData();
    const uint64_t before = uint64_t(shared.TickCountLow) * shared.TickCountMultiplier >> 24;
    CHECK(OrvGetTimestamp() - static_cast<uint32_t>(before) < 1000);

    OrvKernel32ForceInitialize(); // brings the ntdll table too
    CHECK(OrvNtdllIsTableInitialized() && OrvNtdllIsFnLoaded_NtGetTickCount());
    CHECK(OrvKernel32IsTableInitialized() && OrvKernel32IsFnLoaded_ReadFile());
    for (const auto &sample : samples)
        CHECK_EQUAL(OrvNtdll_RtlDowncaseUnicodeChar(sample[0]), sample[1]);
}

TEST_CASE(FailureWithoutAReasonIsZero)
{
    // No function of the platform fails and says no reason, so this one is made to.
    CHECK_EQUAL(InternalInitializeOrvSysDll(), ORV_S_OK);
    const test::ReplacedFunction fails(L"kernel32.dll", "ReadFile", false, 20);
    OrvWinSetLastError(0);
    CHECK_EQUAL(OrvKernel32_ReadFile(nullptr, nullptr, 0, nullptr, nullptr), ORV_S_OK);
    OrvWinSetLastError(5);
    CHECK_EQUAL(OrvKernel32_ReadFile(nullptr, nullptr, 0, nullptr, nullptr), ORV_E_ACCESS_DENIED);
    InternalDestroyOrvSysDll();
}

TEST_CASE(MissingNamesBecomeNullEntries)
{
    struct {
        PVOID module;
        PVOID entries[3];
    } table = {nullptr, {&table, &table, &table}};
    static constexpr ANSI_STRING names[] = {
        detail::EntryName("ZwClose"), detail::EntryName("ZwNoSuchFunction"), detail::EntryName("ZwSetEvent")};
    CHECK_EQUAL(OrvNtdllTableInitialize(), ORV_S_OK);
    detail::FillEntryTable(table, OrvGetNtdllModuleHandle(), names);
    CHECK(table.entries[0] != nullptr && table.entries[0] != &table);
    CHECK_EQUAL(table.entries[1], nullptr);
    CHECK(table.entries[2] != nullptr && table.entries[2] != &table);
}
