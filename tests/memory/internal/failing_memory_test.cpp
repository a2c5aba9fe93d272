// Every operation that allocates, once for each of its allocations with that one refused: it says so, what it
// was given is as it was, and nothing is left behind.

#include "orv/orv.h"

#include "harness/test.h"
#include "harness/usage.h"
#include "sync/internal/redirected.h"

IMPORT_SLOT(RtlAllocateHeap, 12);
IMPORT_SLOT(RtlReAllocateHeap, 16);

namespace
{

// How many allocations there were since counting began, and which of them is refused.
bool counts;
uint32_t allocations;
uint32_t refused;

bool IsRefused()
{
    return counts && allocations++ == refused;
}

PVOID NTAPI Allocate(HANDLE heap, ULONG flags, size_t size)
{
    return IsRefused() ? nullptr : Redirected<decltype(RtlAllocateHeap)>::original(heap, flags, size);
}

PVOID NTAPI Reallocate(HANDLE heap, ULONG flags, PVOID block, size_t size)
{
    return IsRefused() ? nullptr
                       : Redirected<decltype(RtlReAllocateHeap)>::original(heap, flags, block, size);
}

/// While it lives, allocations are not counted: for what an operation needs beforehand.
struct Unwatched {
    Unwatched() { counts = false; }
    ~Unwatched() { counts = true; }
};

constexpr wchar_t kText[] = L"a text that is longer than it looks";
constexpr wchar_t kKey[] = L"Software\\OrvFailingMemoryTest";
constexpr OrvResult kChanged = ORV_E_INVALID_STATE; ///< a failure changed what it must not

/// A heap buffer that an operation may only change when it succeeds.
class Guarded
{
public:
    Guarded()
    {
        const Unwatched unwatched;
        buffer.Assign(L"before");
    }

    OrvResult Judge(OrvResult result) const
    {
        const _ORV_UTF16CHAR_STR &text = buffer.GetInternal();
        if (OrvSucceeded(result) || (text.length == 6 && OrvCompareString(text.characters, L"before") == 0))
            return result;
        return kChanged;
    }

    OrvUtf16CharHeapBuffer buffer;
};

class Collector final : public OrvBasWinRegistryHandle::NameInserter
{
public:
    OrvResult Insert(const OrvStringRefBase<wchar_t> &) override { return 0; }
};

/// A key of the calling user that exists while an operation runs.
class Key : public OrvBasWinRegistryHandle
{
public:
    Key() : OrvBasWinRegistryHandle(OrvRegistryCurrentUser)
    {
        const Unwatched unwatched;
        OpenOrCreateKey(kKey);
        SetStringValue(kText, L"text");
        SetBinaryValue(kLarge, sizeof kLarge, L"large");
        CreateKeys(L"a\\b\\c");
    }
    ~Key()
    {
        const Unwatched unwatched;
        DeleteKey(L"", true);
        CloseKey();
    }

private:
    static constexpr uint8_t kLarge[1000] = {};
};

struct IgnoringHandler final : OrvBasXmlSaxHandlerBase {
};

class IdleThread final : public OrvBasThread
{
public:
    ~IdleThread() override { WaitForThreadToStop(-1); }
};

struct Operation {
    const char *name;
    OrvResult (*run)();
    bool copes = false; ///< an allocation that is refused may be done without
};

template <typename Context>
OrvResult Decompress(Context &&context)
{
    uint8_t in[4] = {};
    uint8_t out[64];
    context.SetNextIn(in);
    context.SetAvailIn(0);
    context.SetNextOut(out);
    context.SetAvailOut(sizeof out);
    const OrvResult result = context.Decompress();
    return result == ORV_E_OUT_OF_MEMORY ? result : 0;
}

const Operation kOperations[] = {
    {"assign",
     [] {
         Guarded g;
         return g.Judge(g.buffer.Assign(kText));
     }},
    {"append",
     [] {
         Guarded g;
         return g.Judge(g.buffer.Append(kText));
     }},
    {"resize",
     [] {
         Guarded g;
         return g.Judge(g.buffer.Resize(1000));
     }},
    {"reserve",
     [] {
         Guarded g;
         return g.Judge(g.buffer.ReserveElements(1000));
     }},
    {"format a buffer",
     [] {
         OrvUtf16CharHeapBuffer buffer;
         return OrvFormatString(OrvMakeMutableStringRef(buffer), L"%s%300d", kText, 1);
     }},
    {"GUID text",
     [] {
         Guarded g;
         return g.Judge(OrvGuidUtils::GetStringAppend(_OrvGuid(), OrvMakeMutableStringRef(g.buffer)));
     }},
    {"combine",
     [] {
         Guarded g;
         return g.Judge(OrvBasPath::CombinePaths(g.buffer, kText, kText));
     }},
    {"combine with itself",
     [] {
         Guarded g;
         return g.Judge(OrvBasPath::CombinePaths(g.buffer, kText, g.buffer.GetValue()));
     }},
    {"append a path",
     [] {
         Guarded g;
         return g.Judge(OrvBasPath::AppendPath(g.buffer, kText));
     }},
    {"full path",
     [] {
         Guarded g;
         return g.Judge(OrvBasPath::GetFullPath(g.buffer, kText));
     }},
    {"long path",
     [] {
         Guarded g;
         return g.Judge(OrvBasPath::GetLongPath(g.buffer, L"C:\\windows\\system32\\ntdll.dll"));
     }},
    {"normalized path",
     [] {
         Guarded g;
         return g.Judge(OrvBasPath::GetNormalizedPath(g.buffer, L"C:\\windows\\system32\\ntdll.dll"));
     },
     true},
    {"temporary directory",
     [] {
         Guarded g;
         return g.Judge(OrvBasPath::GetTempDirPath(g.buffer));
     }},
    {"random name",
     [] {
         Guarded g;
         return g.Judge(OrvBasPath::GetRandomName(g.buffer));
     }},
    {"native path",
     [] {
         Guarded g;
         return g.Judge(OrvNtdll_RtlDosPathNameToNtPathName_T_EliminateDosDevice(L"C:\\con", g.buffer));
     }},
    {"environment",
     [] {
         Guarded g;
         return g.Judge(OrvNtdll_RtlExpandEnvironmentStrings_T(kText, g.buffer));
     }},
    {"file identity",
     [] {
         OrvFileId id;
         return OrvFileIdUtils::GetId(id, L"C:\\windows");
     }},
    {"lock file",
     [] {
         OrvBasWinLockFile lock;
         return lock.Create(L"C:\\windows", false);
     }},
    {"named event",
     [] {
         wchar_t name[200] = {};
         for (uint32_t i = 0; i < 199; i++)
             name[i] = L'n';
         OrvBasWinEvent event;
         return event.Create(OrvBasEvent::ManualReset, false, name, OrvBasWinSyncSession, nullptr);
     }},
    {"shared heap block",
     [] {
         OrvSharedMemoryServer server;
         return server.Create(10, 1, OrvBasSyncProcess, nullptr);
     }},
    {"thread",
     [] {
         IdleThread thread;
         return thread.StartThread(static_cast<OrvPriority>(0), nullptr,
                                   OrvFlags<OrvBasThread::ThreadFlag>(0u), nullptr);
     },
     true},
    {"buffer stream",
     [] {
         OrvBufferStream stream;
         uint32_t written = 0;
         OrvResult result = stream.Write(kText, sizeof kText, written);
         if (OrvSucceeded(result))
             result = stream.Write(kText, sizeof kText, written);
         return OrvFailed(result) && stream.GetLength() % sizeof kText ? kChanged : result;
     }},
    {"inflate",
     [] {
         detail::OrvDeflateContext context;
         const OrvResult result = context.Initialize(100, false, 6);
         return OrvFailed(result) ? result : Decompress(context);
     }},
    {"deflate",
     [] {
         detail::OrvDeflateContext context;
         return context.Initialize(100, true, 6);
     }},
    {"bzip2",
     [] {
         detail::OrvBZ2Context context;
         return context.Initialize(100, true);
     }},
    {"XML writer",
     [] {
         OrvMbCharHeapBuffer unused;
         OrvBufferStream stream;
         OrvBasXmlWriter::Impl *const writer = OrvBasXmlWriter::Impl::New(stream);
         if (!writer)
             return ORV_E_OUT_OF_MEMORY;
         OrvResult result = writer->SetIndent(L"  ");
         for (uint32_t i = 0; i < 40 && OrvSucceeded(result); i++)
             result = writer->WriteStartElement(kText);
         if (OrvSucceeded(result))
             result = writer->Flush();
         OrvBasXmlWriter::Impl::Delete(writer);
         return result;
     }},
    {"XML reader",
     [] {
         static const char kDocument[] = "<a b='c'><d>text &amp; more</d><e/></a>";
         OrvMemoryStream stream(kDocument, sizeof kDocument - 1);
         IgnoringHandler handler;
         return OrvBasXmlSaxParse(stream, handler);
     }},
    {"open a key",
     [] {
         const Key parent;
         OrvBasWinRegistryHandle key(OrvRegistryCurrentUser);
         const OrvResult result = key.OpenKeyIfExists(kKey);
         return OrvFailed(result) && key.IsOpened() ? kChanged : result;
     }},
    {"delete keys",
     [] {
         Key key;
         return key.DeleteKey(L"a", true);
     }},
    {"list keys",
     [] {
         Key key;
         Collector names;
         return key.EnumKeys(names);
     }},
    {"list values",
     [] {
         Key key;
         Collector names;
         return key.EnumValues(names);
     }},
    {"key's name",
     [] {
         Key key;
         OrvBasWinRegistryRootType root = OrvRegistryNoRoot;
         OrvUtf16HeapString path;
         uint32_t access = 7;
         const OrvResult result = key.SplitCurrentKeyName(root, path, access);
         return OrvFailed(result) && (root != OrvRegistryNoRoot || access != 7) ? kChanged : result;
     }},
    {"large value",
     [] {
         Key key;
         OrvBasWinRegistryValueType type = OrvRegistryLink;
         OrvByteHeapBuffer bytes;
         const OrvResult result = key.QueryValue(type, bytes, L"large");
         return OrvFailed(result) && type != OrvRegistryLink ? kChanged : result;
     }},
    {"string value",
     [] {
         Key key;
         OrvUtf16HeapString value;
         return key.GetStringValue(value, L"text", true);
     }},
    {"set a counted string",
     [] {
         Key key;
         return key.SetStringValue(OrvStringRefBase<wchar_t>(kText, 5), L"text");
     }},
    {"watch a key",
     [] {
         Key key;
         OrvBasEvent event;
         const OrvResult result = event.Create(OrvBasEvent::ManualReset, false);
         return OrvFailed(result) ? result : key.StartSingleWatchingKeyChange(event, true);
     },
     true},
    {"combine a location",
     [] {
         OrvUtf16HeapString text;
         return OrvBasWinRegistryHandle::CombineRegistryPath(text, OrvRegistryUsers, kText, kText);
     }},
    {"split a location",
     [] {
         OrvUtf16HeapString path;
         OrvUtf16HeapString value;
         OrvBasWinRegistryRootType root = OrvRegistryNoRoot;
         bool hasValue = false;
         const OrvResult result =
             OrvBasWinRegistryHandle::SplitRegistryPath(root, path, hasValue, value, L"HKCU\\a\\\\b");
         return OrvFailed(result) && root != OrvRegistryNoRoot ? kChanged : result;
     }},
};

} // namespace

TEST_CASE(EachAllocationMayBeRefused)
{
    CHECK_EQUAL(InternalInitializeOrvSysDll(), ORV_S_OK);
    const Redirected<decltype(RtlAllocateHeap)> allocate(RtlAllocateHeapSlot, Allocate);
    const Redirected<decltype(RtlReAllocateHeap)> reallocate(RtlReAllocateHeapSlot, Reallocate);
    for (const Operation &operation : kOperations) {
        test::Note(operation.name, 0);
        counts = true;
        refused = 0xFFFFFFFF;
        CHECK(
            OrvSucceeded(operation.run())); // also fills what is kept for good, such as roots of the registry
        allocations = 0;
        CHECK(OrvSucceeded(operation.run()));
        const uint32_t count = allocations;
        CHECK(count != 0 || operation.copes);
        for (uint32_t i = 0; i < count; i++) {
            test::Note(operation.name, i);
            const test::Usage before = test::CountUsage();
            allocations = 0;
            refused = i;
            const OrvResult result = operation.run();
            counts = false;
            CHECK(result == ORV_E_OUT_OF_MEMORY || (operation.copes && OrvSucceeded(result)));
            CHECK_USAGE(before);
            counts = true;
        }
        counts = false;
    }
}
