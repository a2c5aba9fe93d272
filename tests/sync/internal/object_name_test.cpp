// Full names of objects for sessions that this process is not in, and their limits.

#include "sync/object_name.h"

#include "harness/memory.h"
#include "harness/test.h"
#include "orv/runtime/result.h"

namespace
{

constexpr auto kGlobal = OrvBasWinSyncGlobal;
constexpr auto kSession = OrvBasWinSyncSession;
constexpr auto kLibrary = OrvBasWinSyncLibrary;
constexpr auto kUnknown = static_cast<OrvBasWinSyncObjectNameSpace>(3);

} // namespace

TEST_CASE(FullNamesFollowNameSpaceAndSession)
{
    struct {
        const wchar_t *name;
        OrvBasWinSyncObjectNameSpace nameSpace;
        ULONG sessionId;
        const wchar_t *fullName;
    } const cases[] = {
        {L"N", kSession, 0, L"\\BaseNamedObjects\\N"},
        {L"N", kGlobal, 5, L"\\Sessions\\5\\BaseNamedObjects\\Global\\N"},
        {L"N", kSession, 12, L"\\Sessions\\12\\BaseNamedObjects\\N"},
        {L"N", kLibrary, 0, L"\\OrvObjects\\N"},
        {L"", kUnknown, 5, L""},
        {nullptr, kGlobal, 5, L""},
    };
    for (const auto &c : test::Rows(cases)) {
        detail::ObjectName fullName;
        CHECK_EQUAL(fullName.Build(c.name, c.nameSpace, c.sessionId), ORV_S_OK);
        CHECK_TEXT(fullName.GetText(), c.fullName);
        CHECK_EQUAL(fullName.IsEmpty(), *c.fullName == 0);
    }
}

TEST_CASE(LongNamesKeepEveryCharacter)
{
    constexpr uint32_t kPrefix = 12; // "\OrvObjects\"
    constexpr uint32_t kLongest = 32766 - kPrefix;
    constexpr uint32_t kMost = 70000;
    auto *const characters = test::GuardedArray<wchar_t>(kMost + 1);
    for (uint32_t i = 0; i < kMost; i++)
        characters[i] = L'n';
    const auto name = [&](uint32_t length) { return characters + kMost - length; };
    const uint32_t lengths[] = {115, 116, 243, 244, kLongest, kLongest + 1, kMost};
    for (const uint32_t length : lengths) {
        test::Note("length", length);
        detail::ObjectName fullName;
        const bool fits = length <= kLongest;
        CHECK_EQUAL(fullName.Build(name(length), kLibrary, 0), fits ? ORV_S_OK : ORV_E_INVALID_NAME);
        if (fits)
            CHECK_TEXT(fullName.GetText() + kPrefix, static_cast<const wchar_t *>(name(length)));
    }
    const test::RefusingHeap refusing;
    detail::ObjectName fullName;
    CHECK_EQUAL(fullName.Build(name(100), kLibrary, 0), ORV_S_OK); // without an allocation
}
