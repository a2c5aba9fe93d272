// What the load of the library left behind.

#include "orv/startup/startup.h"

#include "harness/test.h"
#include "nt/teb.h"
#include "orv/orv.h"

TEST_CASE(LoadingRecordsTheFacts)
{
    OSVERSIONINFOW version = {};
    version.dwOSVersionInfoSize = sizeof version;
    CHECK_EQUAL(OrvNtdll_RtlGetVersion(&version), 0);
    const OrvEnvironment::OsFacts &os = OrvEnvironment::OsInfo::GetFacts();
    CHECK_EQUAL(os.majorVersion, version.dwMajorVersion);
    CHECK_EQUAL(os.minorVersion, version.dwMinorVersion);
    CHECK_EQUAL(os.buildNumber, version.dwBuildNumber);
    CHECK(os.productType - 1 < 3 && os.processorArchitecture - 1 < 3);
    CHECK_EQUAL(OrvEnvironment::OsInfo::GetVersionString()[0], L'W');

    const OrvEnvironment::MachineFacts &machine = OrvEnvironment::MachineInfo::GetFacts();
    CHECK_EQUAL(machine.pageSize, 0x1000u);
    CHECK_EQUAL(machine.allocationGranularity, 0x10000u);
    CHECK_EQUAL(machine.processorCount, NtCurrentPeb()->NumberOfProcessors);

    // More start-ups only count.
    CHECK_EQUAL(InternalInitializeOrvSysDll(), ORV_S_OK);
    CHECK_EQUAL(OrvInitializeSysMini(), ORV_S_OK);
    OrvDestroySysMini();
    InternalDestroyOrvSysDll();
}
