// Descriptors built from groups, rights and levels, read back from the kernel object that took them.

#include "orv/security/security_context.h"

#include "harness/replace.h"
#include "harness/test.h"
#include "harness/usage.h"
#include "nt/programs.h"
#include "orv/runtime/ntdll_entry_points.h"
#include "orv/runtime/result.h"
#include "orv/sync/win_event.h"

namespace
{

constexpr ULONG kAccessList = 4;
constexpr ULONG kLabel = 0x10;

/// Creates an event under the context and gives its descriptor, in the platform's self-relative form.
ULONG DescriptorOf(OrvSecurityCtx &context, void *buffer, ULONG size)
{
    OrvWinSecurityDescriptor *descriptor = nullptr;
    CHECK_EQUAL(context.GetSecurityDescriptor(descriptor), ORV_S_OK);
    OrvBasWinEvent event;
    CHECK_EQUAL(event.Create(OrvBasEvent::ManualReset, false, L"orv security context test",
                             OrvBasWinSyncObjectNameSpace(1), descriptor),
                ORV_S_OK);
    ULONG needed = 0;
    CHECK_EQUAL(NtQuerySecurityObject(event.GetHandle(), kAccessList | kLabel, buffer, size, &needed), 0);
    return needed;
}

/// The user of this process, as the platform says it.
struct User {
    struct {
        TOKEN_USER user;
        UCHAR sid[SECURITY_MAX_SID_SIZE];
    } information = {};
    ULONG size = 0; ///< of the identifier

    User()
    {
        HANDLE token = nullptr;
        CHECK_EQUAL(NtOpenProcessToken(NtCurrentProcess(), TOKEN_QUERY, &token), 0);
        CHECK_EQUAL(ZwQueryInformationToken(token, TokenUser, &information, sizeof information, &size), 0);
        ZwClose(token);
        size = RtlLengthSid(information.user.Sid);
    }
};

// An entry: type, flags, size of the whole, rights; then the identifier.
constexpr uint8_t kAdministrators[] = {0, 0, 24, 0, 3,  0, 0x1F, 0, 1,    2, 0, 0,
                                       0, 0, 0,  5, 32, 0, 0,    0, 0x20, 2, 0, 0};

bool Contains(const uint8_t *bytes, ULONG size, const void *wanted, ULONG wantedSize)
{
    for (ULONG i = 0; i + wantedSize <= size; ++i)
        if (memcmp(bytes + i, wanted, wantedSize) == 0)
            return true;
    return false;
}

} // namespace

TEST_CASE(EntriesAndLevelReachTheObject)
{
    const uint8_t everyone[] = {0, 0, 20, 0, 1, 0, 0x11, 0, 1, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0};
    const uint8_t medium[] = {0x11, 0, 20, 0, 1, 0, 0, 0, 1, 1, 0, 0, 0, 0, 0, 16, 0, 0x20, 0, 0};
    OrvSecurityCtx context;
    CHECK_EQUAL(context.Allow(OrvGroupEveryone, 0x110001), ORV_S_OK);
    CHECK_EQUAL(context.Allow(OrvGroupAdministrators, 0x1F0003), ORV_S_OK);
    CHECK_EQUAL(context.Allow(static_cast<OrvWellKnownGroup>(5), 1), ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(context.SetMandatoryLevel(OrvMandatoryHigh), ORV_S_OK);
    CHECK_EQUAL(context.SetMandatoryLevel(OrvMandatoryMedium), ORV_S_OK);
    CHECK_EQUAL(context.SetMandatoryLevel(static_cast<OrvMandatoryLevel>(5)), ORV_E_INVALID_ARGUMENT);
    uint8_t bytes[512];
    const ULONG size = DescriptorOf(context, bytes, sizeof bytes);
    CHECK(Contains(bytes, size, everyone, sizeof everyone));
    CHECK(Contains(bytes, size, kAdministrators, sizeof kAdministrators));
    CHECK(Contains(bytes, size, medium, sizeof medium));
}

TEST_CASE(ContextGivesTheCallersDescriptorOrNone)
{
    int native = 0;
    OrvSecurityCtx given(&native);
    OrvSecurityCtx none;
    OrvWinSecurityDescriptor *descriptor = nullptr;
    CHECK_EQUAL(given.GetSecurityDescriptor(descriptor), ORV_S_OK);
    CHECK(descriptor->GetNative() == &native);
    CHECK_EQUAL(none.GetSecurityDescriptor(descriptor), ORV_S_OK);
    CHECK(descriptor->GetNative() == nullptr);
}

TEST_CASE(PrivateObjectsAreTheUsersTheSystemsAndTheAdministrators)
{
    const User user;
    const uint8_t system[] = {0, 0, 20, 0, 3, 0, 0x1F, 0, 1, 1, 0, 0, 0, 0, 0, 5, 18, 0, 0, 0};
    uint8_t own[8 + SECURITY_MAX_SID_SIZE] = {0, 0, static_cast<uint8_t>(8 + user.size), 0, 3, 0, 0x1F, 0};
    __builtin_memcpy(own + 8, user.information.user.Sid, user.size);
    const test::Usage before = test::CountUsage();
    for (uint32_t impersonates = 0; impersonates < 2; impersonates++) {
        test::Note("impersonates", impersonates);
        if (impersonates)
            CHECK_EQUAL(RtlImpersonateSelf(2), 0); // SecurityImpersonation
        OrvSecurityCtx context;
        CHECK_EQUAL(context.AllowPrivate(0x1F0003), ORV_S_OK);
        uint8_t bytes[512];
        const ULONG size = DescriptorOf(context, bytes, sizeof bytes);
        CHECK(Contains(bytes, size, own, 8 + user.size));
        CHECK(Contains(bytes, size, system, sizeof system));
        CHECK(Contains(bytes, size, kAdministrators, sizeof kAdministrators));
        // Three entries, and no more: their number stands in front of the first.
        const uint8_t start[] = {3, 0, 0, 0, 0, 0, own[2]};
        CHECK(Contains(bytes, size, start, sizeof start));
        HANDLE none = nullptr;
        NtSetInformationThread(NtCurrentThread(), ThreadImpersonationToken, &none, sizeof none);
    }
    CHECK_USAGE(before);
}

TEST_CASE(UserThatCannotBeFoundOrAddedChangesNothing)
{
    const User user;
    const test::Usage before = test::CountUsage();
    const struct {
        const char *function;
        USHORT argumentBytes;
    } failures[] = {{"ZwOpenThreadToken", 16}, {"ZwOpenProcessToken", 12}, {"ZwQueryInformationToken", 20}};
    OrvWinSecurityDescriptor *descriptor = nullptr;
    for (const auto &f : failures) {
        test::Note("failure", static_cast<uint32_t>(&f - failures));
        OrvSecurityCtx context;
        {
            const test::ReplacedFunction refusing(L"ntdll.dll", f.function, 0xC0000022, f.argumentBytes);
            CHECK_EQUAL(context.AllowPrivate(1), ORV_E_ACCESS_DENIED);
        }
        CHECK_EQUAL(context.GetSecurityDescriptor(descriptor), ORV_S_OK);
        CHECK(descriptor->GetNative() == nullptr);
    }
    // There is room for the user and no more: none of the three stays.
    OrvSecurityCtx full;
    for (uint32_t i = 0; i < 9; i++)
        CHECK_EQUAL(full.Allow(OrvGroupAdministrators, 1), ORV_S_OK);
    CHECK(OrvFailed(full.AllowPrivate(1)));
    CHECK_EQUAL(full.Allow(OrvGroupAdministrators, 1), ORV_S_OK);
    OrvNtdllTableDestroy();
    OrvSecurityCtx context;
    CHECK_EQUAL(context.AllowCurrentUser(1), ORV_E_NOT_SUPPORTED);
    CHECK_EQUAL(OrvNtdllTableInitialize(), ORV_S_OK);
    CHECK_EQUAL(context.AllowCurrentUser(1), ORV_S_OK);
    CHECK_USAGE(before);
}
