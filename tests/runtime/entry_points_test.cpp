// The entry-point tables of the DLL as the loader leaves them, and their wrappers on the real platform.

#include "orv/runtime/kernel32_entry_points.h"
#include "orv/runtime/ntdll_entry_points.h"
#include "orv/runtime/result.h"

#include "harness/test.h"
#include "nt/nt.h"
#include "nt/teb.h"

TEST_CASE(PredicatesAgreeWithTheModule)
{
    struct {
        const char *name;
        bool (*isLoaded)();
    } const cases[] = {
        {"RtlGetProductInfo", OrvNtdllIsFnLoaded_RtlGetProductInfo},
        {"NtGetTickCount", OrvNtdllIsFnLoaded_NtGetTickCount},
        {"CsrGetProcessId", OrvNtdllIsFnLoaded_CsrGetProcessId},
        {"RtlGetNativeSystemInformation", OrvNtdllIsFnLoaded_RtlGetNativeSystemInformation},
        {"EtwEventWriteEx", OrvNtdllIsFnLoaded_EtwEventWriteEx},
    };
    for (const auto &c : cases)
        CHECK_EQUAL(c.isLoaded(), OrvNtdll_FunctionExists(c.name));
    CHECK(OrvNtdll_FunctionExists("ZwClose") && !OrvNtdll_FunctionExists("ZwNoSuchFunction"));
    CHECK(!OrvNtdll_FunctionExists("") && !OrvNtdll_FunctionExists(nullptr));
    CHECK_EQUAL(OrvIsWOW64Process(), OrvNtdll_FunctionExists("NtWow64CsrGetProcessId"));
}

TEST_CASE(WrappersPassResultsOn)
{
    CHECK_EQUAL(OrvNtdllForceInitialize(), 1);
    OSVERSIONINFOW version = {};
    version.dwOSVersionInfoSize = sizeof version;
    CHECK_EQUAL(OrvNtdll_RtlGetVersion(&version), STATUS_SUCCESS);
    CHECK_EQUAL(version.dwMajorVersion, NtCurrentPeb()->OSMajorVersion);

    void *const pointer = &version;
    CHECK_EQUAL(OrvNtdll_RtlDecodePointer(OrvNtdll_RtlEncodePointer(pointer)), pointer);

    const unsigned long first = OrvGetTimestamp();
    CHECK(OrvNtdll_NtGetTickCount() - first < 1000);
}

TEST_CASE(FailedFlagsBecomeResults)
{
    const wchar_t missing[] = L"C:\\no such folder\\file";
    CHECK_EQUAL(OrvKernel32_CopyFileW(missing, missing, true), ORV_E_PATH_NOT_FOUND);

    char byte = 0;
    unsigned long count = 0;
    CHECK_EQUAL(OrvKernel32_ReadFile(nullptr, &byte, 1, &count, nullptr), ORV_E_INVALID_HANDLE);
    CHECK_EQUAL(OrvWinGetLastError(), 6ul);
    OrvWinSetLastError(0x12345678);
    CHECK_EQUAL(NtCurrentTeb()->LastErrorValue, 0x12345678ul);
    CHECK(OrvKernel32_GetACP() != 0);
}
