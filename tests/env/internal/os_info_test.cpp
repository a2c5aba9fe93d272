// The text of a version, and the order of versions.

#include "orv/env/os_info.h"

#include "env/win_version.h"
#include "harness/memory.h"
#include "harness/test.h"
#include "orv/runtime/result.h"

using namespace OrvEnvironment; // NOLINT(google-build-using-namespace)

TEST_CASE(VersionsHaveTextAndOrder)
{
    constexpr auto kCapacity = OrvEnvironment::detail::kWinVersionCapacity;
    constexpr auto kMost = 0xFFFFFFFF;
    struct {
        OsFacts facts;
        const wchar_t *text;
        bool isWindows7OrLater;
    } const cases[] = {
        {{6, 0, 6002, 0, 1, 0, ProductServer, ProcessorItanium},
         L"Windows 6.0.6002 Service Pack 0.1, server, Itanium",
         false},
        {{6, 1, 7601, 0, 0, 0, ProductWorkstation, ProcessorX64},
         L"Windows 6.1.7601, workstation, x64",
         true},
        {{kMost, kMost, kMost, 255, 255, 0, ProductDomainController, {}},
         L"Windows 4294967295.4294967295.4294967295 Service Pack 255.255, domain controller, unknown "
         L"processor",
         true},
    };
    CHECK_TEXT(OsInfo::GetVersionString(), L"");
    wchar_t *const text = test::GuardedArray<wchar_t>(kCapacity);
    for (const auto &c : test::Rows(cases)) {
        CHECK_EQUAL(OrvEnvironment::detail::GetWinVersionString(c.facts, text, kCapacity), ORV_S_OK);
        OsInfo::Initialize(c.facts, text);
        CHECK_TEXT(OsInfo::GetVersionString(), c.text);
        CHECK_EQUAL(OsInfo::IsAtLeast(6, 1), c.isWindows7OrLater);
        CHECK_EQUAL(OrvEnvironment::detail::GetWinVersionString(c.facts, text, 9), ORV_E_BUFFER_TOO_SMALL);
    }
    OsInfo::Initialize({}, L"");
}
