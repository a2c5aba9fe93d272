// Names made of object ids.

#include "orv/sync/sync_named.h"

#include "sync/objects.h"

TEST_CASE(IdsBecomeNames)
{
    struct {
        uint32_t id, nameSpace, root;
        const wchar_t *rest; // behind the session's directory for root 0
    } const cases[] = {
        {0x1A2B, 1, 0, L"\\BaseNamedObjects\\ORVSYNC_1a2b"},
        {0xFFFFFFFF, 0, 1, L"\\BaseNamedObjects\\Global\\ORVSYNC_ffffffff"},
    };
    OrvBasSyncNamed named(0, OrvBasSyncGlobal);
    CHECK(!named.IsNamed());
    CHECK_EQUAL(named.GetConstructedWinObjectName(OrvBasSyncNamed::SessionRoot), nullptr);
    for (const auto &c : test::Rows(cases)) {
        named.SetObjectId(c.id, static_cast<OrvBasSyncObjectNameSpace>(c.nameSpace));
        Path expected;
        if (c.root == 0)
            expected << L"\\Sessions\\" << NtCurrentPeb()->SessionId;
        expected << c.rest;
        const wchar_t *const name =
            named.GetConstructedWinObjectName(static_cast<OrvBasSyncNamed::NamedObjectRoot>(c.root));
        CHECK_TEXT(name, static_cast<const wchar_t *>(expected.text));
    }
}
