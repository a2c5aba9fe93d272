// orvtool info: prints what the library found on this system.

#include "command.h"

#include "nt/teb.h"
#include "orv/env/machine_info.h"
#include "orv/env/os_info.h"
#include "orv/runtime/kernel32_entry_points.h"
#include "orv/runtime/ntdll_entry_points.h"

namespace orvtool
{

namespace
{

constexpr const char *kOptionalNtdllNames[] = {
    "RtlGetVersion",
    "RtlGetProductInfo",
    "ZwCreateMutant",
    "RtlAddMandatoryAce",
    "ZwQueryDirectoryObject",
    "ZwOpenProcessToken",
    "RtlExitUserThread",
    "CsrGetProcessId",
    "RtlGetNativeSystemInformation",
    "RtlGetUnloadEventTrace",
    "NtGetTickCount",
    "RtlDowncaseUnicodeChar",
    "RtlGetUnloadEventTraceEx",
    "ZwCreateTransaction",
    "RtlGetCurrentTransaction",
    "RtlSetCurrentTransaction",
    "ZwCommitTransaction",
    "ZwRollbackTransaction",
    "RtlWow64EnableFsRedirectionEx",
    "ZwOpenKeyTransacted",
    "ZwCreateKeyTransacted",
    "EtwEventRegister",
    "EtwEventUnregister",
    "EtwEventWrite",
    "EtwEventWriteEx",
    "ZwCancelIoFileEx",
    "RtlEncodePointer",
    "RtlDecodePointer",
};

void PrintTables(Stream &out)
{
    uint32_t found = 0;
    for (const char *name : kOptionalNtdllNames)
        found += OrvNtdll_FunctionExists(name);
    out.Print(L"ntdll table       %s, %u of %u optional entries\n",
              OrvNtdllIsTableInitialized() ? L"filled" : L"empty", found,
              static_cast<uint32_t>(sizeof kOptionalNtdllNames / sizeof kOptionalNtdllNames[0]));
    for (const char *name : kOptionalNtdllNames) {
        if (OrvNtdll_FunctionExists(name))
            continue;
        out.Print(L"  missing         ");
        for (; *name; name++)
            out.Print(L"%c", *name);
        out.Print(L"\n");
    }
    out.Print(L"kernel32 table    %s\n", OrvKernel32IsTableInitialized() ? L"filled" : L"empty");
}

ExitCode Run(const Command &command, Console &console, ArgumentReader &arguments)
{
    if (!arguments.IsAtEnd())
        return UnwantedArgument(command, console, arguments);
    Stream &out = console.out;
    const OrvEnvironment::OsFacts &os = OrvEnvironment::OsInfo::GetFacts();
    const OrvEnvironment::MachineFacts &machine = OrvEnvironment::MachineInfo::GetFacts();
    out.Print(L"system            %s\n", OrvEnvironment::OsInfo::GetVersionString());
    out.Print(L"suites            %#x\n", os.suiteMask);
    out.Print(L"64-bit system     %s\n", OrvIsWOW64Process() ? L"yes" : L"no");
    out.Print(L"session           %u\n", NtCurrentPeb()->SessionId);
    out.Print(L"processors        %u\n", machine.processorCount);
    out.Print(L"memory            pages of %u bytes, reserved in steps of %u\n", machine.pageSize,
              machine.allocationGranularity);
    out.Print(L"since start-up    %u ms\n", OrvGetTimestamp());
    PrintTables(out);
    return kExitSuccess;
}

} // namespace

const Command kInfoCommand = {
    L"info",
    L"what the library found on this system",
    L"Usage: orvtool info\n"
    L"\n"
    L"Prints the system's version and suites, the session, the processors and memory units, and the state\n"
    L"of the tables of optional entry points with the names that are missing.\n",
    Run,
};

} // namespace orvtool
