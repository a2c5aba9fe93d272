#include "reg_transfer.h"

#include "native_status.h"
#include "nt/programs.h"
#include "nt/teb.h"
#include "orv/runtime/heap_object.h"
#include "output_file.h"
#include "reg_file_reader.h"
#include "reg_file_writer.h"

namespace orvtool
{

namespace
{

typedef OrvBasWinRegistryHandle::Name Name;

/// The bytes of values as they are stored: the library's own reading completes strings.
class StoredValue
{
public:
    StoredValue() = default;
    StoredValue(const StoredValue &) = delete;
    StoredValue &operator=(const StoredValue &) = delete;
    ~StoredValue() { Close(); }

    /// Values of the handle's current key are read from now on.
    OrvResult Open(OrvBasWinRegistryHandle &key)
    {
        Close();
        return key.CreateHandleInternal(key_, Name(), KEY_QUERY_VALUE);
    }

    OrvResult Read(const Name &name)
    {
        const auto nameSize = static_cast<USHORT>(name.length * sizeof(WCHAR));
        const UNICODE_STRING counted = {nameSize, nameSize, const_cast<WCHAR *>(name.characters)};
        OrvResult result = buffer_.GetCapacity() ? 0 : buffer_.ReserveElements(kFirstSize);
        while (OrvSucceeded(result)) {
            const ULONG room = buffer_.GetCapacity();
            ULONG needed = 0;
            const NTSTATUS status = ZwQueryValueKey(key_, &counted, KeyValuePartialInformation,
                                                    buffer_.GetBuffer(), room, &needed);
            if (NT_SUCCESS(status) || needed <= room)
                return ResultOf(status);
            result = buffer_.ReserveElements(needed);
        }
        return result;
    }

    const KEY_VALUE_PARTIAL_INFORMATION &Get()
    {
        return *reinterpret_cast<KEY_VALUE_PARTIAL_INFORMATION *>(buffer_.GetBuffer());
    }

private:
    static constexpr uint32_t kFirstSize = 4096;

    void Close()
    {
        if (key_)
            ZwClose(key_);
        key_ = nullptr;
    }

    HANDLE key_ = nullptr;
    OrvMbCharHeapBuffer buffer_;
};

/// A key that is open while those below it are written. Levels are linked on the heap, because a tree may be
/// deeper than a stack.
class Level final : public OrvHeapObject
{
public:
    Level(OrvBasWinRegistryHandle &parent, Level *above, uint32_t pathLength)
        : key(parent), above(above), pathLength(pathLength)
    {
    }

    OrvBasWinRegistryHandle key;
    OrvBasWinRegistryEnumerator children;
    Level *const above;
    const uint32_t pathLength; ///< of the path up to this key
};

/// Walks a tree from the top, each key before those below it.
class Exporter
{
public:
    Exporter(const RegistryLocation &location, Stream &out) : location_(location), writer_(out) {}
    Exporter(const Exporter &) = delete;
    Exporter &operator=(const Exporter &) = delete;
    ~Exporter()
    {
        while (deepest_)
            Leave();
    }

    OrvResult Write(OrvBasWinRegistryHandle &top)
    {
        OrvResult result = writer_.WriteHeader();
        if (OrvSucceeded(result))
            result = path_.Append(location_.path.GetCharacters(), location_.path.GetLength());
        if (OrvSucceeded(result))
            result = Enter(top, Name());
        while (OrvSucceeded(result) && deepest_) {
            OrvStringzRefBase<wchar_t> name(nullptr);
            bool found = false;
            result = deepest_->children.Next(name, found);
            if (OrvFailed(result))
                break;
            if (!found) {
                Leave();
                continue;
            }
            result = EnterChild(Name(name.characters, deepest_->children.GetLength()));
        }
        return result;
    }

    /// The path below the root, where a failure came up.
    const OrvUtf16CharHeapBuffer &GetPath() const { return path_; }

private:
    /// Deeper than any tree is. Only a link that leads back to a key above it looks so.
    static constexpr uint32_t kDeepest = 4096;

    OrvResult EnterChild(const Name &name)
    {
        OrvResult result = path_.IsEmpty() ? 0 : path_.Append(L'\\');
        if (OrvSucceeded(result))
            result = path_.Append(name.characters, name.length);
        if (OrvFailed(result))
            return result;
        if (!RegFileWriter::CanWriteKey(name))
            return ORV_E_INVALID_NAME;
        if (depth_ == kDeepest)
            return ORV_E_INVALID_OPERATION;
        result = Enter(deepest_->key, name);
        return result == ORV_E_KEY_NOT_FOUND ? path_.Resize(deepest_->pathLength) : result;
    }

    /// An empty name is the parent itself.
    OrvResult Enter(OrvBasWinRegistryHandle &parent, const Name &name)
    {
        auto *const level = new Level(parent, deepest_, path_.GetInternal().length);
        if (!level)
            return ORV_E_OUT_OF_MEMORY;
        OrvResult result =
            name.length
                ? level->key.OpenKeyIfExists(name, OrvRegistryQueryValue | OrvRegistryEnumerateSubKeys)
                : 0;
        if (OrvFailed(result)) {
            delete level;
            return result;
        }
        deepest_ = level;
        depth_++;
        result = WriteValues();
        return OrvSucceeded(result) ? level->key.GetChildrenEnumeratorImpl(level->children) : result;
    }

    void Leave()
    {
        Level *const left = deepest_;
        deepest_ = left->above;
        depth_--;
        delete left;
        if (deepest_)
            path_.Resize(deepest_->pathLength); // a shorter text needs no memory
    }

    OrvResult WriteValues()
    {
        OrvBasWinRegistryHandle &key = deepest_->key;
        OrvBasWinRegistryEnumerator values;
        OrvResult result =
            writer_.WriteKey(location_.root, Name(path_.GetValue(), path_.GetInternal().length));
        if (OrvSucceeded(result))
            result = value_.Open(key);
        if (OrvSucceeded(result))
            result = key.GetValuesEnumeratorImpl(values);
        while (OrvSucceeded(result)) {
            OrvStringzRefBase<wchar_t> text(nullptr);
            bool found = false;
            result = values.Next(text, found);
            if (OrvFailed(result) || !found)
                break;
            const Name name(text.characters, values.GetLength());
            result = value_.Read(name);
            if (result == ORV_E_FILE_NOT_FOUND)
                result = 0;
            else if (OrvSucceeded(result))
                result = writer_.WriteValue(name, static_cast<OrvBasWinRegistryValueType>(value_.Get().Type),
                                            value_.Get().Data, value_.Get().DataLength);
        }
        return result;
    }

    const RegistryLocation &location_;
    RegFileWriter writer_;
    StoredValue value_;
    OrvUtf16CharHeapBuffer path_;
    Level *deepest_ = nullptr;
    uint32_t depth_ = 0;
};

ExitCode ExportTo(const Command &command, Console &console, OrvBasWinRegistryHandle &key,
                  const RegistryLocation &location, Stream &out)
{
    Exporter exporter(location, out);
    out.UseUtf16();
    OrvResult result = exporter.Write(key);
    if (OrvSucceeded(result))
        result = out.Print(L"\r\n");
    if (OrvSucceeded(result))
        result = out.Flush();
    if (OrvSucceeded(result))
        return kExitSuccess;
    const wchar_t *const action = result == ORV_E_INVALID_NAME        ? L"writing a name with a line break"
                                  : result == ORV_E_INVALID_OPERATION ? L"following links in a circle"
                                                                      : L"exporting";
    OrvUtf16HeapString where;
    OrvBasWinRegistryHandle::CombineRegistryPath(
        where, location.root, Name(exporter.GetPath().GetValue(), exporter.GetPath().GetInternal().length));
    return ReportFailure(command, console, action, result, where.GetCharacters());
}

struct Counts {
    uint32_t keys = 0;
    uint32_t values = 0;
    uint32_t deletions = 0;
};

/// What is deleted may have gone already.
OrvResult IgnoreMissing(OrvResult result)
{
    return result == ORV_E_FILE_NOT_FOUND || result == ORV_E_KEY_NOT_FOUND ? 0 : result;
}

OrvResult Apply(OrvBasWinRegistryHandle &key, const RegFileEntry &entry, Counts &counts)
{
    OrvResult result = 0;
    switch (entry.kind) {
    case RegFileEntry::kKey:
        counts.keys++;
        result = key.SetParent(entry.root);
        return OrvSucceeded(result) ? key.OpenOrCreateKey(entry.path, OrvRegistryWrite) : result;
    case RegFileEntry::kDeletedKey:
        counts.deletions++;
        result = key.SetParent(entry.root);
        return OrvSucceeded(result) ? IgnoreMissing(key.DeleteKey(entry.path, true)) : result;
    case RegFileEntry::kValue:
        counts.values++;
        return key.SetValue(entry.type, entry.bytes, entry.size, entry.name);
    case RegFileEntry::kDeletedValue:
        counts.deletions++;
        return IgnoreMissing(key.DeleteValue(entry.name));
    }
    return ORV_E_INVALID_ARGUMENT;
}

ExitCode ReportFault(const Command &command, Console &console, uint32_t line, const wchar_t *problem)
{
    console.error.Print(L"orvtool %s: line %u: %s\n", command.name, line, problem);
    return kExitFailed;
}

/// Reads all entries, and applies them when there is a key to do it with.
ExitCode ReadEntries(const Command &command, Console &console, const OrvUtf16CharHeapBuffer &text,
                     OrvBasWinRegistryHandle *key, Counts &counts)
{
    RegFileReader reader(text.GetValue(), text.GetInternal().length);
    for (;;) {
        RegFileEntry entry;
        bool found = false;
        OrvResult result = reader.Next(entry, found);
        if (result == ORV_E_INVALID_DATA)
            return ReportFault(command, console, reader.GetLine(), reader.GetProblem());
        if (OrvSucceeded(result) && !found)
            return kExitSuccess;
        if (OrvSucceeded(result) && key)
            result = Apply(*key, entry, counts);
        if (OrvSucceeded(result))
            continue;
        wchar_t action[32];
        OrvFormatString(OrvCodePageDefault, action, sizeof action / sizeof *action, nullptr,
                        L"line %u: importing", entry.line);
        return ReportFailure(command, console, action, result);
    }
}

} // namespace

ExitCode ExportTree(const Command &command, Console &console, OrvBasWinRegistryHandle &key,
                    const RegistryLocation &location, const wchar_t *file)
{
    if (!file || Equal(file, L"-"))
        return ExportTo(command, console, key, location, console.out);
    OutputFile output;
    const OrvResult result = output.Create(file);
    if (OrvFailed(result))
        return ReportFailure(command, console, L"making the file", result, file);
    Stream out(output.GetHandle());
    const ExitCode code = ExportTo(command, console, key, location, out);
    if (code == kExitSuccess)
        output.Keep();
    return code;
}

ExitCode ImportTree(const Command &command, Console &console, Input &input, RegistryView view)
{
    OrvUtf16CharHeapBuffer text;
    uint32_t line = 0;
    OrvResult result = ReadRegFileText(input, text, line);
    if (result == ORV_E_INVALID_DATA)
        return ReportFault(command, console, line,
                           L"this is neither UTF-16 behind a byte order mark nor UTF-8");
    if (OrvFailed(result))
        return ReportFailure(command, console, L"reading", result);

    OrvBasWinRegistryHandle key(OrvRegistryCurrentUser);
    result = key.SetViewMode(view);
    if (OrvFailed(result))
        return ReportFailure(command, console, L"selecting the view", result);
    Counts counts;
    ExitCode code = ReadEntries(command, console, text, nullptr, counts);
    if (code == kExitSuccess)
        code = ReadEntries(command, console, text, &key, counts);
    if (code != kExitSuccess)
        return code;
    console.out.Print(L"%u keys, %u values, %u deletions\n", counts.keys, counts.values, counts.deletions);
    return kExitSuccess;
}

} // namespace orvtool
