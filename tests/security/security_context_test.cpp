// Descriptors built from groups, rights and levels, read back from the kernel object that took them.

#include "orv/security/security_context.h"

#include "harness/test.h"
#include "nt/programs.h"
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
    // An entry: type, flags, size of the whole, rights; then the identifier.
    const uint8_t everyone[] = {0, 0, 20, 0, 1, 0, 0x11, 0, 1, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0};
    const uint8_t administrators[] = {0, 0, 24, 0, 3,  0, 0x1F, 0, 1,    2, 0, 0,
                                      0, 0, 0,  5, 32, 0, 0,    0, 0x20, 2, 0, 0};
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
    CHECK(Contains(bytes, size, administrators, sizeof administrators));
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

TEST_CASE(ContextRefusesTheEntryThatHasNoRoom)
{
    OrvSecurityCtx context;
    int entries = 0;
    while (entries < 20 && OrvSucceeded(context.Allow(OrvGroupEveryone, 1)))
        ++entries;
    CHECK(entries >= 10 && entries < 20);
    OrvWinSecurityDescriptor *descriptor = nullptr;
    CHECK_EQUAL(context.GetSecurityDescriptor(descriptor), ORV_S_OK);
}
