// Every operation that allocates, once for each of its allocations with that one refused: it says so, what it
// was given is as it was, and nothing is left behind. Nor is anything written behind a block, whose end is
// marked. The contended sparse lock, thread-local keys and conversions that need the platform's pages are
// refused memory by tests of their own.

#include "orv/orv.h"

#include "fs/test_file.h"
#include "harness/test.h"
#include "harness/usage.h"
#include "registry/registry_test_key.h"
#include "sync/internal/redirected.h"

IMPORT_SLOT(RtlAllocateHeap, 12);
IMPORT_SLOT(RtlReAllocateHeap, 16);
IMPORT_SLOT(RtlFreeHeap, 12);

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

// Behind the bytes that were asked for stands what nothing may overwrite.
constexpr uint32_t kMark = 0xE2D0B10C;

PVOID Mark(PVOID block, size_t size)
{
    if (block)
        __builtin_memcpy(static_cast<uint8_t *>(block) + size, &kMark, sizeof kMark);
    return block;
}

/// Looks behind a block that is about to go.
void CheckMark(HANDLE heap, PVOID block)
{
    uint32_t mark = 0;
    const auto *const end = static_cast<uint8_t *>(block) + RtlSizeHeap(heap, 0, block);
    __builtin_memcpy(&mark, end - sizeof mark, sizeof mark);
    CHECK_EQUAL(mark, kMark);
}

PVOID NTAPI Allocate(HANDLE heap, ULONG flags, size_t size)
{
    if (IsRefused())
        return nullptr;
    return Mark(Redirected<decltype(RtlAllocateHeap)>::original(heap, flags, size + sizeof kMark), size);
}

PVOID NTAPI Reallocate(HANDLE heap, ULONG flags, PVOID block, size_t size)
{
    if (IsRefused())
        return nullptr;
    CheckMark(heap, block);
    return Mark(Redirected<decltype(RtlReAllocateHeap)>::original(heap, flags, block, size + sizeof kMark),
                size);
}

BOOLEAN NTAPI Free(HANDLE heap, ULONG flags, PVOID block)
{
    CheckMark(heap, block);
    return Redirected<decltype(RtlFreeHeap)>::original(heap, flags, block);
}

/// While it lives, allocations are not counted: for what an operation needs beforehand.
struct Unwatched {
    Unwatched() { counts = false; }
    ~Unwatched() { counts = true; }
};

constexpr wchar_t kText[] = L"a text that is longer than it looks";
constexpr wchar_t kKey[] = L"Software\\OrvFailingMemoryTest";
constexpr OrvResult kChanged = ORV_E_INVALID_STATE; ///< a failure changed what it must not

using Buffer = OrvUtf16CharHeapBuffer;

/// The result of an operation, which must not have changed this when it failed.
OrvResult Unless(bool changed, OrvResult result)
{
    return OrvFailed(result) && changed ? kChanged : result;
}

/// Runs an operation on a heap buffer that it may only change when it succeeds.
OrvResult Keep(OrvResult (*change)(Buffer &))
{
    Buffer buffer;
    {
        const Unwatched unwatched;
        buffer.Assign(L"before");
    }
    const OrvResult result = change(buffer);
    const _ORV_UTF16CHAR_STR &text = buffer.GetInternal();
    const bool kept = text.length == 6 && OrvCompareString(text.characters, L"before") == 0;
    return OrvSucceeded(result) || kept ? result : kChanged;
}

/// A path, of which an operation makes text that is not short.
template <OrvResult (*operation)(Buffer &out, const wchar_t *path, uint32_t length)>
OrvResult OfPath(Buffer &b)
{
    return operation(b, L"C:\\windows\\system32\\ntdll.dll", OrvTerminated);
}

class Collector final : public OrvBasWinRegistryHandle::NameInserter
{
public:
    OrvResult Insert(const OrvStringRefBase<wchar_t> &) override { return 0; }
} collector;

/// A key of the calling user that exists while an operation runs.
class Key : public OrvBasWinRegistryHandle
{
public:
    Key() : OrvBasWinRegistryHandle(OrvRegistryCurrentUser)
    {
        const Unwatched unwatched;
        OpenOrCreateKey(kKey);
        SetStringValue(kText, L"text", true);
        uint8_t bytes[999]; // no whole characters, and no terminator
        __builtin_memset(bytes, 'x', sizeof bytes);
        SetBinaryValue(bytes, sizeof bytes, L"large");
        SetValue(OrvRegistryMultiString, bytes, sizeof bytes, L"strings");
        CreateKeys(L"a\\b\\c\\d\\e\\f\\g\\h\\i\\j\\k\\l\\m\\n\\o\\p\\q\\r\\s");
        wchar_t name[258]; // more than the first block of an enumerator, as the depth is of a deletion
        for (wchar_t &character : name)
            character = L'n';
        SetDWordValue(1, {name, 258});
    }
    ~Key()
    {
        const Unwatched unwatched;
        DeleteKey(L"", true);
        CloseKey();
    }
};

struct IgnoringHandler final : OrvBasXmlSaxHandlerBase {
};

class IdleThread final : public OrvBasThread
{
public:
    ~IdleThread() override { WaitForThreadToStop(-1); }
};

/// What is given to it is made anew for every run.
template <typename... Given>
struct Operation {
    const char *name;
    OrvResult (*run)(Given &...);
    bool copes = false; ///< an allocation that is refused may be done without
};

/// Two compressed streams in a row, there and back.
template <typename Writer, typename Reader>
OrvResult CompressAndDecompress()
{
    OrvBufferStream packed;
    uint32_t count = 0;
    for (int i = 0; i < 2; i++) {
        Writer writer;
        OrvResult result = writer.Create(packed);
        if (OrvSucceeded(result))
            result = writer.Write(kText, sizeof kText, count);
        if (OrvSucceeded(result))
            result = writer.Finish();
        if (OrvFailed(result))
            return result;
    }
    Reader reader;
    uint8_t bytes[sizeof kText];
    OrvResult result = reader.Create(packed);
    while (OrvSucceeded(result))
        result = reader.Read(bytes, sizeof bytes, count);
    return result == ORV_E_END_OF_DATA ? reader.NextStream() : result;
}

const Operation<Buffer> kBufferOperations[] = {
    {"append", [](Buffer &b) { return b.Append(kText); }},
    {"combine with itself", [](Buffer &b) { return OrvBasPath::CombinePaths(b, kText, b.GetValue()); }},
    {"combine with itself by a reference",
     [](Buffer &b) {
         return OrvBasPath::CombinePaths(OrvMakeMutableStringRef(b), kText, {b.GetBuffer(), 6});
     }},
    {"full path", OfPath<OrvBasPath::GetFullPath>},
    {"long path", OfPath<OrvBasPath::GetLongPath>},
    {"normalized path", OfPath<OrvBasPath::GetNormalizedPath>, true},
    {"change an extension", [](Buffer &b) { return OrvBasPath::ChangeExtension(b, kText, L"txt"); }},
    {"temporary file", [](Buffer &b) { return OrvBasPath::GetRandomTempFileName(b); }},
    {"temporary directory", [](Buffer &b) { return OrvBasPath::GetTempDirPath(b); }},
    {"native path",
     [](Buffer &b) { return OrvNtdll_RtlDosPathNameToNtPathName_T_EliminateDosDevice(L"C:\\..\\con", b); }},
    {"native path of a literal one",
     [](Buffer &b) {
         return OrvNtdll_RtlDosPathNameToNtPathName_T_EliminateDosDevice(L"\\\\?\\C:\\\\x", b);
     }},
    {"convert bytes",
     [](Buffer &b) {
         char bytes[300];
         __builtin_memset(bytes, 'x', sizeof bytes);
         return OrvConvertMb2TString(b, bytes, OrvCodePageUtf8, sizeof bytes);
     }},
    {"hexadecimal digits", [](Buffer &b) { return OrvConvertBytes2HexString(b, kText, sizeof kText); }},
    {"environment", [](Buffer &b) { return OrvNtdll_RtlExpandEnvironmentStrings_T(kText, b); }},
};

const Operation<Key> kKeyOperations[] = {
    {"delete keys", [](Key &key) { return key.DeleteKey(L"a", true); }},
    {"list values", [](Key &key) { return key.EnumValues(collector); }},
    {"key's name",
     [](Key &key) {
         OrvBasWinRegistryRootType root = OrvRegistryNoRoot;
         OrvUtf16HeapString path;
         uint32_t access = 7;
         const OrvResult result = key.SplitCurrentKeyName(root, path, access);
         return Unless(root != OrvRegistryNoRoot || access != 7, result);
     }},
    {"large value",
     [](Key &key) {
         OrvBasWinRegistryValueType type = OrvRegistryLink;
         OrvByteHeapBuffer bytes;
         const OrvResult result = key.QueryValue(type, bytes, L"large");
         return Unless(type != OrvRegistryLink || bytes.GetSize(), result);
     }},
    {"large strings", [](Key &key) { return key.GetStringArrayValue(collector, L"strings"); }},
    {"string value",
     [](Key &key) {
         OrvUtf16HeapString value;
         const OrvResult result = key.GetStringValue(value, L"text", true);
         return Unless(value.GetLength(), result);
     }},
    {"set a counted string",
     [](Key &key) {
         return key.SetStringValue({kText, 5}, L"text");
     }},
    {"set strings",
     [](Key &key) {
         const wchar_t *texts[20];
         for (const wchar_t *&text : texts)
             text = kText;
         Texts strings(texts, 20);
         const OrvResult result = key.SetStringArrayValue(strings, L"text");
         const Unwatched unwatched;
         OrvUtf16HeapString value;
         return Unless(OrvFailed(key.GetStringValue(value, L"text")), result);
     }},
    {"save, restore and load a key",
     [](Key &key) {
         OrvBasWinRegistryHandle::EnablePrivilege(OrvRegistryBackupPrivilege, true);
         OrvBasWinRegistryHandle::EnablePrivilege(OrvRegistryRestorePrivilege, true);
         const wchar_t *const file = L"C:\\windows\\temp\\orv-failing-memory";
         OrvUtf16HeapString path;
         OrvBasWinRegistryHandle hive(OrvRegistryUsers);
         OrvResult result = key.SaveKey(file);
         if (OrvSucceeded(result))
             result = key.RestoreKey(file, &path);
         if (OrvSucceeded(result))
             result = hive.LoadKey(L"OrvFailingMemoryTest", file);
         if (OrvSucceeded(result))
             hive.UnLoadKey();
         const Unwatched unwatched;
         TestFileName(file).Delete(); // if there is one
         return result;
     }},
};

const Operation<> kOperations[] = {
    {"format a buffer",
     [] {
         OrvUtf16CharHeapBuffer buffer;
         return OrvFormatString(OrvMakeMutableStringRef(buffer), L"%s%300d", kText, 1);
     }},
    {"format bytes",
     [] {
         char bytes[300];
         __builtin_memset(bytes, 'x', sizeof bytes);
         bytes[299] = 0;
         OrvUtf16CharHeapBuffer buffer;
         const OrvResult result = OrvFormatString(OrvCodePageUtf8, buffer, L"%hs", bytes);
         return Unless(!buffer.IsEmpty(), result);
     }},
    {"convert to another page",
     [] {
         char text[1000] = {};
         char target[1001] = {7};
         const OrvResult result = OrvConvertMb2MbString(target, sizeof target, text, OrvCodePageOem,
                                                        OrvCodePageUtf8, nullptr, sizeof text);
         return Unless(target[0] != 7, result);
     }},
    {"long formatted attribute",
     [] {
         OrvBufferStream stream;
         OrvBasXmlWriter::Holder writer(stream);
         if (!writer)
             return OrvResult(ORV_E_OUT_OF_MEMORY);
         OrvResult result = writer->WriteStartElement(kText);
         if (OrvSucceeded(result))
             result = writer->WriteFormattedAttribute(kText, L"%0300d", 1);
         return OrvFailed(writer->GetError()) ? OrvResult(kChanged) : result;
     }},
    {"compress to a stream",
     [] { return CompressAndDecompress<OrvDeflateWriteStream, OrvInflateReadStream>(); }},
    {"compress to a stream by bzip2",
     [] { return CompressAndDecompress<OrvBZ2WriteStream, OrvBZ2ReadStream>(); }},
    {"lock file", [] { return OrvBasWinLockFile().Create(L"C:\\windows", false); }},
    {"lock in a file",
     [] {
         OrvBasWinLockFileResource lock;
         const OrvResult result = lock.Open(L"C:\\windows", false);
         return Unless(lock.IsInitialized(), result);
     }},
    {"named event",
     [] {
         wchar_t name[200] = {};
         for (uint32_t i = 0; i < 199; i++)
             name[i] = L'n';
         OrvBasWinEvent event;
         const OrvResult result =
             event.Create(OrvBasEvent::ManualReset, false, name, OrvBasWinSyncSession, nullptr);
         return Unless(event.IsInitialized(), result);
     }},
    {"shared heap block",
     [] {
         OrvSharedMemoryServer server;
         const OrvResult result = server.Create(10, 1, OrvBasSyncProcess, nullptr);
         return Unless(server.IsInitialized(), result);
     }},
    {"thread",
     [] {
         IdleThread thread;
         return thread.StartThread(static_cast<OrvPriority>(0), nullptr,
                                   OrvFlags<OrvBasThread::ThreadFlag>(0u), nullptr);
     },
     true},
    {"object on the heap",
     []() -> OrvResult {
         auto *const event = new OrvBasEvent;
         if (!event)
             return ORV_E_OUT_OF_MEMORY;
         delete event;
         return ORV_S_OK;
     }},
    {"buffer stream",
     [] {
         OrvBufferStream stream;
         uint32_t written = 0;
         static constexpr uint8_t kBytes[4096] = {};
         OrvResult result = stream.Write(kBytes, sizeof kBytes, written);
         if (OrvSucceeded(result))
             result = stream.Write(kBytes, 1, written);
         return Unless(stream.GetLength() % sizeof kBytes, result);
     }},
    {"XML writer",
     []() -> OrvResult {
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
         static const char kDocument[] = "<!DOCTYPE a [<!ENTITY t 'text'><!ATTLIST d b CDATA 'c'>]>"
                                         "<a b='c'><d>&t; &amp; more</d><e/></a>";
         OrvMemoryStream stream(kDocument, sizeof kDocument - 1);
         IgnoringHandler handler;
         return OrvBasXmlSaxParse(stream, handler);
     }},
    {"open a key",
     [] {
         const Key parent;
         OrvBasWinRegistryHandle key(OrvRegistryCurrentUser);
         const OrvResult result = key.OpenKeyIfExists(kKey);
         return Unless(key.IsOpened(), result);
     }},
    {"open a key in the 32-bit view",
     [] {
         OrvBasWinRegistryHandle machine(OrvRegistryLocalMachine);
         machine.SetViewMode(OrvRegistryViewNode);
         const OrvResult result = machine.OpenKeyIfExists(L"Software\\OrvNoSuchKey");
         return result == ORV_E_OUT_OF_MEMORY ? result : 0; // there may be no such key
     }},
    {"combine a location",
     [] {
         OrvUtf16HeapString text;
         const OrvResult result =
             OrvBasWinRegistryHandle::CombineRegistryPath(text, OrvRegistryUsers, kText, kText);
         return Unless(text.GetLength(), result);
     }},
    {"split a location",
     [] {
         OrvUtf16HeapString path;
         OrvUtf16HeapString value;
         OrvBasWinRegistryRootType root = OrvRegistryNoRoot;
         bool hasValue = false;
         const OrvResult result =
             OrvBasWinRegistryHandle::SplitRegistryPath(root, path, hasValue, value, L"HKCU\\a\\\\b");
         return Unless(root != OrvRegistryNoRoot, result);
     }},
};

/// Runs it with memory enough, then once for each allocation with that one refused.
template <typename Run>
void RefuseEach(const char *name, bool copes, Run run)
{
    test::Note(name, 0);
    counts = true;
    refused = 0xFFFFFFFF;
    CHECK(OrvSucceeded(run())); // also fills what is kept for good, such as roots of the registry
    allocations = 0;
    CHECK(OrvSucceeded(run()));
    const uint32_t count = allocations;
    CHECK(count != 0 || copes);
    for (uint32_t i = 0; i < count; i++) {
        test::Note(name, i);
        const test::Usage before = test::CountUsage();
        allocations = 0;
        refused = i;
        const OrvResult result = run();
        counts = false;
        CHECK(result == ORV_E_OUT_OF_MEMORY || (copes && OrvSucceeded(result)));
        CHECK_USAGE(before);
        counts = true;
    }
    counts = false;
}

} // namespace

TEST_CASE(EachAllocationMayBeRefused)
{
    CHECK_EQUAL(InternalInitializeOrvSysDll(), ORV_S_OK);
    const Redirected<decltype(RtlAllocateHeap)> allocate(RtlAllocateHeapSlot, Allocate);
    const Redirected<decltype(RtlReAllocateHeap)> reallocate(RtlReAllocateHeapSlot, Reallocate);
    const Redirected<decltype(RtlFreeHeap)> free(RtlFreeHeapSlot, Free);
    for (const auto &operation : kOperations)
        RefuseEach(operation.name, operation.copes, operation.run);
    for (const auto &operation : kBufferOperations)
        RefuseEach(operation.name, operation.copes, [&] { return Keep(operation.run); });
    for (const auto &operation : kKeyOperations)
        RefuseEach(operation.name, operation.copes, [&] {
            Key key;
            return operation.run(key);
        });
}
