// Servers, clients and views, in both storages.

#include "orv/shm/shared_memory_view.h"

#include "harness/test.h"
#include "harness/usage.h"
#include "nt/programs.h"
#include "nt/teb.h"
#include "orv/runtime/result.h"

namespace
{

constexpr unsigned long kId = 0x0A7E57;
constexpr uint32_t kPage = 0x1000;
constexpr uint32_t kGranularity = 0x10000;

uint32_t SizeOf(const OrvSharedMemoryView &view)
{
    unsigned int size = 1;
    CHECK_EQUAL(view.GetSize(size), ORV_S_OK);
    return size;
}

char *BytesOf(const OrvSharedMemoryView &view)
{
    return static_cast<char *>(view.GetPointer());
}

MEMORY_BASIC_INFORMATION RegionOf(const OrvSharedMemoryView &view)
{
    MEMORY_BASIC_INFORMATION information = {};
    CHECK_EQUAL(
        NtQueryVirtualMemory(NtCurrentProcess(), BytesOf(view), 0, &information, sizeof information, nullptr),
        0);
    return information;
}

/// The view of a section is as large as it says: the last byte can be touched, and nothing that is mapped
/// with it stands before or behind it.
void CheckEdges(const OrvSharedMemoryView &view, uint32_t size)
{
    CHECK_EQUAL(SizeOf(view), size);
    const MEMORY_BASIC_INFORMATION region = RegionOf(view);
    CHECK(region.AllocationBase == BytesOf(view) && region.RegionSize == size);
    static_cast<void>(static_cast<const volatile char *>(BytesOf(view))[size - 1]);
}

/// Opens the section that has the name of an id of the session in a directory; a null handle when it fails.
HANDLE OpenNatively(unsigned long id, OrvBasSyncNamed::NamedObjectRoot root)
{
    OrvBasSyncNamed named(id, OrvBasSyncSession);
    UNICODE_STRING name;
    RtlInitUnicodeString(&name, named.GetConstructedWinObjectName(root));
    const OBJECT_ATTRIBUTES attributes = {sizeof attributes, nullptr, &name, 0, nullptr, nullptr};
    HANDLE handle = nullptr;
    ZwOpenSection(&handle, SECTION_MAP_READ, &attributes);
    return handle;
}

OrvFlags<OrvAccessFlagsValues> ReadAndWrite()
{
    return OrvFlags<OrvAccessFlagsValues>(OrvAccessRead) | OrvAccessWrite;
}

} // namespace

TEST_CASE(SectionIsSharedByItsId)
{
    const test::Usage before = test::CountUsage();
    OrvSecurityCtx context;
    constexpr OrvBasSyncObjectNameSpace kNameSpaces[] = {OrvBasSyncGlobal, OrvBasSyncSession};
    for (const auto nameSpace : kNameSpaces) {
        test::Note("name space", nameSpace);
        OrvSharedMemoryServer server;
        OrvSharedMemoryClient client;
        CHECK_EQUAL(client.Open(kId, nameSpace, ReadAndWrite()), ORV_E_FILE_NOT_FOUND);
        CHECK(!client.IsInitialized());
        CHECK_EQUAL(server.Create(3 * kGranularity + 1, kId, nameSpace, &context), ORV_S_OK);
        CHECK(server.IsInitialized() && !server.IsStorageHeap());
        CHECK_EQUAL(client.Open(kId, nameSpace, ReadAndWrite()), ORV_S_OK);
        CHECK_EQUAL(client.Open(kId, nameSpace, ReadAndWrite()), ORV_S_OK); // once more: the first is closed
        OrvSharedMemoryServer other;
        CHECK_EQUAL(other.Create(1, kId, nameSpace, nullptr), ORV_S_ALREADY_EXISTS);

        OrvSharedMemoryView whole, end, others;
        CHECK_EQUAL(whole.Attach(server, 0, 0), ORV_S_OK);
        CheckEdges(whole, 3 * kGranularity + kPage);
        CHECK_EQUAL(end.Attach(client, 3 * kGranularity, 0, true), ORV_S_OK);
        CheckEdges(end, kPage);
        CHECK_EQUAL(others.Attach(other, 2 * kGranularity, 1), ORV_S_OK);
        CheckEdges(others, kPage);
        CHECK_EQUAL(BytesOf(end)[0], 0);
        BytesOf(whole)[3 * kGranularity] = 'e';
        BytesOf(others)[0] = 'o';
        CHECK_EQUAL(BytesOf(end)[0], 'e');
        CHECK_EQUAL(BytesOf(whole)[2 * kGranularity], 'o');

        // The views keep the section, and its name, while nobody has a handle to it.
        CHECK_EQUAL(server.Destroy(), ORV_S_OK);
        CHECK_EQUAL(other.Destroy(), ORV_S_OK);
        CHECK_EQUAL(client.Close(), ORV_S_OK);
        CHECK_EQUAL(BytesOf(end)[0], 'e');
        CHECK_EQUAL(end.Detach(), ORV_S_OK);
        CHECK_EQUAL(end.Detach(), ORV_S_OK);
        CHECK(!end.GetPointer() && SizeOf(end) == 0);
        CHECK_EQUAL(server.Create(1, 0, nameSpace, nullptr), ORV_S_OK); // closed when it goes
    }
    CHECK_EQUAL(test::CountUsage().handles, before.handles);
}

TEST_CASE(SectionStandsInTheSessionsDirectoryOrTheBase)
{
    ULONG &session = NtCurrentPeb()->SessionId;
    const ULONG own = session;
    const OrvBasSyncNamed::NamedObjectRoot roots[] = {OrvBasSyncNamed::SessionRoot,
                                                      OrvBasSyncNamed::BaseRoot};
    for (const auto root : roots) {
        test::Note("root", root);
        session = root == OrvBasSyncNamed::BaseRoot ? 4711 : own; // a session that has no directory
        OrvSharedMemoryServer server;
        OrvSharedMemoryClient client;
        const OrvResult created = server.Create(1, kId, OrvBasSyncSession, nullptr);
        const OrvResult opened = client.Open(kId, OrvBasSyncSession, OrvAccessRead);
        HANDLE const handle = OpenNatively(kId, root);
        session = own;
        CHECK(created == ORV_S_OK && opened == ORV_S_OK);
        OrvSharedMemoryClient attached;
        attached.AttachToSection(handle);
        OrvSharedMemoryView view; // `access` is still that of an object that opened nothing
        CHECK_EQUAL(view.Attach(attached, 0, 0), ORV_S_OK);
        CHECK(attached.DetachFromSection() == handle);
        CHECK(!attached.IsInitialized() && attached.DetachFromSection() == INVALID_HANDLE_VALUE);
        CHECK_EQUAL(ZwClose(handle), 0);
    }
}

TEST_CASE(UnnamedSectionsAreTheirOwn)
{
    OrvSharedMemoryServer a, b;
    OrvSharedMemoryClient client;
    OrvSharedMemoryView view;
    CHECK_EQUAL(a.Create(1, 0, OrvBasSyncSession, nullptr), ORV_S_OK);
    CHECK_EQUAL(b.Create(1, 0, OrvBasSyncSession, nullptr), ORV_S_OK);
    CHECK(OrvFailed(client.Open(0, OrvBasSyncSession, OrvAccessRead)));
    CHECK_EQUAL(client.Open(kId, OrvBasSyncProcess, OrvAccessRead), ORV_E_NOT_PROVIDED);
    CHECK_EQUAL(a.Create(0, 0, OrvBasSyncSession, nullptr), ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(view.Attach(a, 0, 0), ORV_E_INVALID_HANDLE);
    CHECK_EQUAL(client.Connect(a), ORV_E_INVALID_HANDLE);
    CHECK(!a.IsInitialized() && !client.IsInitialized());
}

TEST_CASE(ClientsHaveTheRightsThatTheyAskedFor)
{
    OrvSharedMemoryServer server;
    CHECK_EQUAL(server.Create(kPage, kId, OrvBasSyncSession, nullptr), ORV_S_OK);
    OrvSharedMemoryClient reader;
    CHECK_EQUAL(reader.Open(kId, OrvBasSyncSession, OrvAccessRead), ORV_S_OK);
    OrvSharedMemoryView view;
    CHECK_EQUAL(view.Attach(reader, 0, 0), ORV_E_ACCESS_DENIED);
    CHECK(!view.GetPointer());
    CHECK_EQUAL(view.Attach(reader, 0, 0, true), ORV_S_OK);

    OrvSharedMemoryClient connected;
    CHECK_EQUAL(connected.Connect(server), ORV_S_OK);
    void *const shown = view.GetPointer();
    const struct {
        int64_t offset;
        uint32_t size;
    } refused[] = {
        {1, 0}, {-1, 0}, {-0x10000, 1}, {kGranularity, 0}, {0, 2 * kPage}, {0x7FFFFFFFFFFF0000, 0}};
    for (const auto &c : test::Rows(refused)) {
        CHECK(OrvFailed(view.Attach(connected, c.offset, c.size)));
        CHECK(view.GetPointer() == shown && SizeOf(view) == kPage);
    }
    CHECK_EQUAL(view.Attach(connected, 0, 0), ORV_S_OK);
    CHECK_EQUAL(RegionOf(view).Protect, PAGE_READONLY);
}

TEST_CASE(HeapRangesLieWithinTheBlock)
{
    OrvSharedMemoryServer server;
    CHECK_EQUAL(server.Create(100, kId, OrvBasSyncProcess, nullptr), ORV_S_OK);
    CHECK(server.IsStorageHeap());
    OrvSharedMemoryView whole;
    CHECK_EQUAL(whole.Attach(server, 0, 0), ORV_S_OK);
    const struct {
        int64_t offset;
        uint32_t size;
        uint32_t shown; ///< 0: refused
    } cases[] = {
        {0, 0, 100}, {99, 0, 1}, {99, 2, 0}, {100, 0, 0}, {-1, 1, 0}, {1, 0xFFFFFFFF, 0}, {INT64_MAX, 1, 0},
    };
    OrvSharedMemoryView view;
    uint32_t lastSize = 0;
    for (const auto &c : test::Rows(cases)) {
        CHECK_EQUAL(view.Attach(server, c.offset, c.size), c.shown ? ORV_S_OK : ORV_E_END_OF_DATA);
        if (c.shown) {
            CHECK(BytesOf(view) == BytesOf(whole) + c.offset);
            lastSize = c.shown;
        }
        CHECK_EQUAL(SizeOf(view), lastSize);
    }
    CHECK_EQUAL(view.Detach(), ORV_S_OK);
    CHECK(!view.GetPointer() && SizeOf(view) == lastSize);

    CHECK_EQUAL(server.Create(0, kId, OrvBasSyncProcess, nullptr), ORV_S_OK);
    CHECK(server.IsInitialized());
    CHECK_EQUAL(view.Attach(server, 0, 0), ORV_E_END_OF_DATA);
}

TEST_CASE(HeapBlockLivesAsLongAsItsLastHolder)
{
    const auto heap = NtCurrentPeb()->ProcessHeap;
    OrvSharedMemoryServer server;
    OrvSharedMemoryClient first, second;
    CHECK_EQUAL(server.Create(4, kId, OrvBasSyncProcess, nullptr), ORV_S_OK);
    CHECK_EQUAL(first.Connect(server), ORV_S_OK);
    CHECK_EQUAL(second.Connect(server), ORV_S_OK);
    OrvSharedMemoryView view;
    CHECK_EQUAL(view.Attach(server, 0, 0), ORV_S_OK);
    BytesOf(view)[3] = 'h';
    const auto block = BytesOf(view) - 8;
    CHECK_EQUAL(server.Destroy(), ORV_S_OK);
    CHECK_EQUAL(first.Close(), ORV_S_OK);
    CHECK_EQUAL(view.Attach(second, 3, 1), ORV_S_OK);
    CHECK_EQUAL(BytesOf(view)[0], 'h');
    CHECK(RtlValidateHeap(heap, 0, block));
    CHECK_EQUAL(second.Connect(server), ORV_E_INVALID_HANDLE); // the last holder closes first
    CHECK(!RtlValidateHeap(heap, 0, block));
}
