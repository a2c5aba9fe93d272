// The predefined keys.

#include "orv/registry/registry_handle.h"

#include "harness/test.h"
#include "harness/thread.h"
#include "harness/usage.h"
#include "orv/runtime/result.h"

TEST_CASE(RootsAreOpenedOnFirstUseAndOnce)
{
    // The first use, by eight threads at once: all but one close what they opened.
    const test::Usage before = test::CountUsage();
    OrvResult results[8] = {};
    auto work = [&](uint32_t i) {
        OrvBasWinRegistryHandle root(OrvRegistryCurrentConfig);
        results[i] = root.OpenRegistryRoot(OrvRegistryCurrentConfig);
    };
    test::RunOnThreads(8, work);
    for (const OrvResult result : results)
        CHECK_EQUAL(result, ORV_S_OK);
    CHECK_EQUAL(test::CountUsage().handles, before.handles + 1);

    const struct {
        OrvBasWinRegistryRootType root;
        bool opens;
    } cases[] = {
        {OrvRegistryClassesRoot, true},
        {OrvRegistryUsers, true},
        {OrvRegistryPerformanceData, false},
        {OrvRegistryDynData, false},
    };
    OrvBasWinRegistryHandle handle(OrvRegistryLocalMachine);
    for (const auto &c : test::Rows(cases)) {
        CHECK_EQUAL(OrvSucceeded(handle.OpenRegistryRoot(c.root)), c.opens);
        CHECK_EQUAL(handle.SetParent(c.root), ORV_S_OK);
        OrvBasWinRegistryKeyInfo info = {};
        CHECK_EQUAL(OrvSucceeded(handle.GetKeyInfo(info)), c.opens);
    }
    CHECK_EQUAL(handle.OpenRegistryRoot(OrvRegistryNoRoot), ORV_E_INVALID_HANDLE);
    CHECK_EQUAL(handle.OpenRegistryRoot(static_cast<OrvBasWinRegistryRootType>(7)), ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(handle.SetParent(OrvRegistryNoRoot), ORV_E_INVALID_HANDLE);
}
