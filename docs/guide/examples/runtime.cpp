#include "orv/orv.h"

namespace
{

const wchar_t *Kind(OrvResult result)
{
    if (OrvFailed(result))
        return result == ORV_W_TIMEOUT ? L"a failure, by a warning" : L"a failure";
    return result == ORV_S_OK ? L"a success" : L"a success with a remark";
}

} // namespace

int OrvMain(int, wchar_t **)
{
    const OrvResult results[] = {ORV_S_OK, ORV_S_ALREADY_EXISTS, ORV_W_TIMEOUT, ORV_E_ACCESS_DENIED};
    for (const OrvResult result : results)
        OrvPrint(L"%08X, %s, is %s\n", result, OrvGetResultName(result), Kind(result));

    // Win32 error numbers become result codes: some have a code of their own, all others keep their number.
    uint32_t win32Error = 0;
    const OrvResult denied = OrvCreateErrorCodeFromWin32(5);
    OrvPrint(L"5 is %08X", denied);
    if (OrvCreateWin32CodeFromErrorCode(win32Error, denied))
        OrvPrint(L", and %u again\n", win32Error);
    OrvPrint(L"1018 is %08X\n", OrvCreateErrorCodeFromWin32(1018));
    const auto accessDenied = static_cast<int32_t>(0xC0000022); // as a native call of your own returns it
    OrvPrint(L"status %08X is %08X\n", accessDenied, OrvCreateErrorCodeFromNtStatus(accessDenied));

    // What start-up recorded, and what this system has.
    const OrvEnvironment::MachineFacts &machine = OrvEnvironment::MachineInfo::GetFacts();
    OrvPrint(L"pages of %u bytes, reserved in steps of %u\n", machine.pageSize,
             machine.allocationGranularity);
    OrvPrint(L"Windows 5.1 or later: %s\n", OrvEnvironment::OsInfo::IsAtLeast(5, 1) ? L"yes" : L"no");
    if (OrvNtdllIsFnLoaded_RtlGetProductInfo())
        OrvPrint(L"RtlGetProductInfo may be called\n");

    // Start-ups are counted. The loader has run the first one; this one is the second.
    const OrvResult result = OrvInitializeSysMini();
    OrvDestroySysMini();
    return OrvFailed(result) ? 1 : 0;
}
