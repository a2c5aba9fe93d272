// The text of a version, and the order of versions.

#include "orv/env/os_info.h"

#include "env/win_version.h"
#include "harness/memory.h"
#include "harness/test.h"
#include "orv/runtime/result.h"

using namespace OrvEnvironment; // NOLINT(google-build-using-namespace)

TEST_CASE(VersionsHaveTextAndOrder)
{
    struct {
        OsFacts facts;
        const wchar_t *text;
        bool isWindows7OrLater;
    } const cases[] = {
        {{5, 1, 2600, 3, 0, 0, ProductWorkstation, ProcessorX86},
         L"Windows 5.1.2600 Service Pack 3.0, workstation, x86",
         false},
        {{6, 0, 6002, 0, 1, 0, ProductDomainController, ProcessorItanium},
         L"Windows 6.0.6002 Service Pack 0.1, domain controller, Itanium",
         false},
        {{6, 1, 7601, 0, 0, 0, ProductServer, ProcessorX64}, L"Windows 6.1.7601, server, x64", true},
        {{10, 0, 26100, 0, 0, 0, {}, {}}, L"Windows 10.0.26100, unknown product, unknown processor", true},
        {{0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 255, 255, 0, ProductDomainController, {}},
         L"Windows 4294967295.4294967295.4294967295 Service Pack 255.255, domain controller, "
         L"unknown processor",
         true},
    };
    CHECK_TEXT(OsInfo::GetVersionString(), L"");
    for (const auto &c : cases) {
        test::Note("major version", c.facts.majorVersion);
        wchar_t *const text = test::GuardedArray<wchar_t>(OrvEnvironment::detail::kWinVersionCapacity);
        CHECK_EQUAL(OrvEnvironment::detail::GetWinVersionString(c.facts, text,
                                                                OrvEnvironment::detail::kWinVersionCapacity),
                    ORV_S_OK);
        OsInfo::Initialize(c.facts, text);
        CHECK_TEXT(OsInfo::GetVersionString(), c.text);
        CHECK_EQUAL(OsInfo::GetFacts().buildNumber, c.facts.buildNumber);
        CHECK_EQUAL(OsInfo::IsAtLeast(6, 1), c.isWindows7OrLater);
    }
    wchar_t *const small = test::GuardedArray<wchar_t>(9);
    CHECK_EQUAL(OrvEnvironment::detail::GetWinVersionString(cases[0].facts, small, 9),
                ORV_E_BUFFER_TOO_SMALL);
}
