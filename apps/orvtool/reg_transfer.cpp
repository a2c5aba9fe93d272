// Exports and imports trees of the registry.

#include "reg_transfer.h"

#include "native_status.h"
#include "nt/programs.h"
#include "nt/teb.h"
#include "orv/runtime/heap_object.h"
#include "orv/runtime/result.h"
#include "output_file.h"
#include "reg_file_reader.h"
#include "reg_file_text.h"
#include "reg_file_writer.h"

namespace orvtool
{

namespace
{

typedef OrvBasWinRegistryHandle::Name Name;

/// Reads the bytes of values exactly as stored. The library's own operations would complete strings.
class StoredValue
{
public:
    StoredValue() = default;
    StoredValue(const StoredValue &) = delete;
    StoredValue &operator=(const StoredValue &) = delete;
    ~StoredValue() { Close(); }

    /// From now on reads values of the handle's current key.
    OrvResult Open(OrvBasWinRegistryHandle &key)
    {
        Close();
        return key.CreateHandleInternal(key_, Name(), KEY_QUERY_VALUE);
    }

    OrvResult Read(const Name &name)
    {
        const auto nameSize = static_cast<USHORT>(name.length * sizeof(WCHAR));
        const UNICODE_STRING counted = {nameSize, nameSize, const_cast<WCHAR *>(name.characters)};
        OrvResult result = buffer_.GetCapacity() ? ORV_S_OK : buffer_.ReserveElements(kFirstSize);
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

/// A key that is open while the keys below it are written. Levels are a linked list on the heap, because a
/// tree may be too deep for recursion on the stack.
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
    const uint32_t pathLength; ///< length of the path up to this key
};

/// Writes a tree from the top, each key before the keys below it.
class Exporter
{
public:
    Exporter(const Command &command, Console &console, const RegistryLocation &location, Stream &out)
        : command_(command), console_(console), location_(location), out_(out), writer_(out)
    {
    }
    Exporter(const Exporter &) = delete;
    Exporter &operator=(const Exporter &) = delete;
    ~Exporter()
    {
        while (deepest_)
            Leave();
    }

    /// Writes the tree. Returns 0, or the failure to write it or to read its top key.
    OrvResult Write(OrvBasWinRegistryHandle &top)
    {
        OrvResult result = writer_.WriteHeader();
        if (OrvSucceeded(result))
            result = path_.Append(location_.path.GetCharacters(), location_.path.GetLength());
        if (OrvSucceeded(result))
            result = Enter(top, Name());
        if (OrvFailed(result))
            return result;
        while (deepest_) {
            OrvStringzRefBase<wchar_t> name(nullptr);
            bool found = false;
            result = deepest_->children.Next(name, found);
            if (found)
                result = EnterChild(Name(name.characters, deepest_->children.GetLength()));
            if (IsFatal(result))
                return result;
            if (OrvFailed(result) && result != ORV_E_KEY_NOT_FOUND)
                ReportSkipped(result);
            if (!found)
                Leave();
            else if (OrvFailed(result))
                path_.Resize(deepest_->pathLength); // cannot fail: a shorter text needs no memory
        }
        return out_.Print(L"\r\n");
    }

    /// Whether keys, or parts of them, were left out. Each of them has been reported.
    bool HasSkipped() const { return hasSkipped_; }

private:
    /// No real tree is this deep. Only a link that leads back to a key above it makes a tree seem so deep.
    static constexpr uint32_t kDeepest = 4096;

    bool IsFatal(OrvResult result)
    {
        return result == ORV_E_OUT_OF_MEMORY || result == ORV_E_INVALID_OPERATION || out_.HasFailed();
    }

    void ReportSkipped(OrvResult result)
    {
        OrvUtf16HeapString where;
        OrvBasWinRegistryHandle::CombineRegistryPath(where, location_.root, Path());
        ReportFailure(command_, console_,
                      result == ORV_E_INVALID_NAME ? L"writing a name with a line break" : L"exporting",
                      result, where.GetCharacters());
        hasSkipped_ = true;
    }

    Name Path() const { return {path_.GetValue(), path_.GetInternal().length}; }

    OrvResult EnterChild(const Name &name)
    {
        if (depth_ == kDeepest)
            return ORV_E_INVALID_OPERATION;
        OrvResult result = path_.IsEmpty() ? ORV_S_OK : path_.Append(L'\\');
        if (OrvSucceeded(result))
            result = path_.Append(name.characters, name.length);
        if (OrvFailed(result))
            return result;
        return RegFileWriter::CanWriteKey(name) ? Enter(deepest_->key, name) : ORV_E_INVALID_NAME;
    }

    /// Writes the key and makes it the deepest one. An empty name means the parent itself.
    OrvResult Enter(OrvBasWinRegistryHandle &parent, const Name &name)
    {
        auto *const level = new Level(parent, deepest_, path_.GetInternal().length);
        if (!level)
            return ORV_E_OUT_OF_MEMORY;
        OrvResult result = ORV_S_OK;
        if (name.length)
            result = level->key.OpenKeyIfExists(name, OrvRegistryQueryValue | OrvRegistryEnumerateSubKeys);
        if (OrvSucceeded(result))
            result = level->key.GetChildrenEnumeratorImpl(level->children);
        if (OrvSucceeded(result))
            result = WriteKey(level->key);
        if (OrvFailed(result)) {
            delete level;
            return result;
        }
        deepest_ = level;
        depth_++;
        return ORV_S_OK;
    }

    void Leave()
    {
        Level *const left = deepest_;
        deepest_ = left->above;
        depth_--;
        delete left;
        if (deepest_)
            path_.Resize(deepest_->pathLength);
    }

    OrvResult WriteKey(OrvBasWinRegistryHandle &key)
    {
        OrvBasWinRegistryEnumerator values;
        OrvResult result = value_.Open(key);
        if (OrvSucceeded(result))
            result = key.GetValuesEnumeratorImpl(values);
        if (OrvSucceeded(result))
            result = writer_.WriteKey(location_.root, Path());
        while (OrvSucceeded(result)) {
            OrvStringzRefBase<wchar_t> text(nullptr);
            bool found = false;
            result = values.Next(text, found);
            if (OrvFailed(result) || !found)
                break;
            const Name name(text.characters, values.GetLength());
            result = value_.Read(name);
            if (result == ORV_E_FILE_NOT_FOUND) // deleted meanwhile
                result = 0;
            else if (OrvSucceeded(result))
                result = writer_.WriteValue(name, static_cast<OrvBasWinRegistryValueType>(value_.Get().Type),
                                            value_.Get().Data, value_.Get().DataLength);
        }
        return result;
    }

    const Command &command_;
    Console &console_;
    const RegistryLocation &location_;
    Stream &out_;
    RegFileWriter writer_;
    StoredValue value_;
    OrvUtf16CharHeapBuffer path_;
    Level *deepest_ = nullptr;
    uint32_t depth_ = 0;
    bool hasSkipped_ = false;
};

/// Writes the tree. Clears `isComplete` when a part of it was left out.
OrvResult ExportTo(const Command &command, Console &console, OrvBasWinRegistryHandle &key,
                   const RegistryLocation &location, Stream &out, bool &isComplete)
{
    Exporter exporter(command, console, location, out);
    out.UseUtf16();
    OrvResult result = exporter.Write(key);
    if (OrvSucceeded(result))
        result = out.Flush();
    isComplete = !exporter.HasSkipped();
    return result;
}

/// Reads the input to its end.
OrvResult ReadAll(Input &input, OrvMbCharHeapBuffer &bytes)
{
    constexpr uint32_t kLeast = 4096;
    const uint64_t size = input.Size();
    uint32_t length = 0;
    uint32_t room = size < UINT32_MAX / 2 ? static_cast<uint32_t>(size) + kLeast : UINT32_MAX / 2;
    for (;;) {
        OrvResult result = bytes.Resize(room);
        uint32_t count = 0;
        if (OrvSucceeded(result))
            result = input.Read(bytes.GetBuffer() + length, room - length, count);
        if (OrvFailed(result))
            return result;
        length += count;
        if (length < room)
            return bytes.Resize(length);
        if (room > UINT32_MAX / 2)
            return ORV_E_OUT_OF_MEMORY;
        room *= 2;
    }
}

struct Counts {
    uint32_t keys = 0;
    uint32_t values = 0;
    uint32_t deletions = 0;
};

/// A key or value that was to be deleted may already be missing: that is a success.
OrvResult IgnoreMissing(OrvResult result)
{
    return result == ORV_E_FILE_NOT_FOUND || result == ORV_E_KEY_NOT_FOUND ? ORV_S_OK : result;
}

OrvResult Apply(OrvBasWinRegistryHandle &key, const RegFileEntry &entry, Counts &counts)
{
    OrvResult result = ORV_S_OK;
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

/// Reads all entries, and applies them if `key` is not null.
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
    bool isComplete = false;
    OutputFile output;
    OrvResult result = ORV_S_OK;
    if (!file || Equal(file, L"-")) {
        result = ExportTo(command, console, key, location, console.out, isComplete);
    } else {
        result = output.Create(file);
        if (OrvFailed(result))
            return ReportFailure(command, console, L"making the file", result, file);
        Stream out(output.GetHandle());
        result = ExportTo(command, console, key, location, out, isComplete);
        if (out.HasFailed())
            return ReportFailure(command, console, L"writing", result, file);
        if (OrvSucceeded(result)) {
            result = output.Replace();
            if (OrvFailed(result))
                return ReportFailure(command, console, L"replacing the file", result, file);
        }
    }
    if (console.out.HasFailed())
        return kExitFailed;
    if (OrvFailed(result))
        return ReportFailure(command, console, L"exporting", result);
    return isComplete ? kExitSuccess : kExitFailed;
}

ExitCode ImportTree(const Command &command, Console &console, Input &input, RegistryView view)
{
    OrvMbCharHeapBuffer bytes;
    OrvUtf16CharHeapBuffer text;
    uint32_t line = 0;
    OrvResult result = ReadAll(input, bytes);
    if (OrvSucceeded(result))
        result = DecodeRegFile(bytes.GetValue(), bytes.GetInternal().length, text, line);
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
