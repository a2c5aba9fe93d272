// Reads files and standard input, without a C runtime.

#include "input.h"

#include "native_status.h"
#include "nt/programs.h"
#include "nt/teb.h"
#include "orv/runtime/kernel32_entry_points.h"
#include "orv/runtime/result.h"
#include "text_bounds.h"

namespace orvtool
{

namespace
{

constexpr wchar_t kReplacement = 0xFFFD;

/// Whether the result means the end of the input. A pipe that its writers have closed has ended too.
bool IsEnd(OrvResult result)
{
    constexpr uint32_t kHandleEof = 38;
    constexpr uint32_t kBrokenPipe = 109;
    uint32_t win32Error = 0;
    return OrvFailed(result) && OrvCreateWin32CodeFromErrorCode(win32Error, result) &&
           (win32Error == kHandleEof || win32Error == kBrokenPipe);
}

} // namespace

Input::~Input()
{
    if (isOwned_)
        ZwClose(handle_);
}

OrvResult Input::Open(const wchar_t *path)
{
    if (!path || Equal(path, L"-")) {
        handle_ = NtCurrentPeb()->ProcessParameters->StandardInput;
        return ORV_S_OK;
    }
    UNICODE_STRING name;
    if (!RtlDosPathNameToNtPathName_U(path, &name, nullptr, nullptr))
        return ORV_E_PATH_NOT_FOUND;
    const OBJECT_ATTRIBUTES attributes = {sizeof attributes,    nullptr, &name,
                                          OBJ_CASE_INSENSITIVE, nullptr, nullptr};
    IO_STATUS_BLOCK status;
    const NTSTATUS outcome =
        NtCreateFile(&handle_, FILE_GENERIC_READ, &attributes, &status, nullptr, 0, FILE_SHARE_ALL, FILE_OPEN,
                     FILE_SYNCHRONOUS_IO_NONALERT | FILE_NON_DIRECTORY_FILE, nullptr, 0);
    RtlFreeUnicodeString(&name);
    isOwned_ = NT_SUCCESS(outcome);
    return ResultOf(outcome);
}

OrvResult Input::Read(void *bytes, uint32_t capacity, uint32_t &count)
{
    count = 0;
    while (count < capacity) {
        uint32_t read = 0;
        const OrvResult result = ReadSome(static_cast<char *>(bytes) + count, capacity - count, read);
        if (OrvFailed(result) || read == 0)
            return result;
        count += read;
    }
    return ORV_S_OK;
}

OrvResult Input::ReadSome(void *bytes, uint32_t capacity, uint32_t &count)
{
    ULONG read = 0;
    OrvResult result = ORV_S_OK;
    if (OrvKernel32IsFnLoaded_ReadFile()) { // it can read consoles on every system
        result = OrvKernel32_ReadFile(handle_, bytes, capacity, &read, nullptr);
    } else {
        IO_STATUS_BLOCK status = {};
        NTSTATUS outcome =
            NtReadFile(handle_, nullptr, nullptr, nullptr, &status, bytes, capacity, nullptr, nullptr);
        if (outcome == STATUS_PENDING && NT_SUCCESS(ZwWaitForSingleObject(handle_, false, nullptr)))
            outcome = status.Status;
        result = ResultOf(outcome);
        read = status.Information;
    }
    count = OrvSucceeded(result) ? read : 0;
    return IsEnd(result) ? ORV_S_OK : result;
}

uint64_t Input::Size() const
{
    IO_STATUS_BLOCK status;
    FILE_FS_DEVICE_INFORMATION device = {};
    FILE_STANDARD_INFORMATION information = {};
    const bool isFile = NT_SUCCESS(NtQueryVolumeInformationFile(handle_, &status, &device, sizeof device,
                                                                FileFsDeviceInformation)) &&
                        device.DeviceType != FILE_DEVICE_NAMED_PIPE &&
                        NT_SUCCESS(NtQueryInformationFile(handle_, &status, &information, sizeof information,
                                                          FileStandardInformation));
    return isFile ? static_cast<uint64_t>(information.EndOfFile) : 0;
}

ExitCode TakePath(const Command &command, Console &console, ArgumentReader &arguments, const wchar_t *&path)
{
    if (arguments.IsAtOption())
        return UnwantedArgument(command, console, arguments);
    const wchar_t *const argument = arguments.Take();
    if (argument && path)
        return UsageError(command, console, L"one argument too many:", argument);
    path = argument ? argument : path;
    return kExitSuccess;
}

ExitCode OpenInput(const Command &command, Console &console, const wchar_t *path, Input &input)
{
    const OrvResult result = input.Open(path);
    return OrvFailed(result) ? ReportFailure(command, console, L"opening", result, path) : kExitSuccess;
}

/// Moves the bytes that have not been taken to the start of the array, and reads more after them.
OrvResult LineReader::Refill()
{
    count_ -= next_;
    memmove(bytes_, bytes_ + next_, count_);
    next_ = 0;
    uint32_t read = 0;
    const OrvResult result = input_.ReadSome(bytes_ + count_, sizeof bytes_ - count_, read);
    count_ += read;
    return result;
}

OrvResult LineReader::TakeByteOrderMark()
{
    static constexpr struct {
        char bytes[4];
        uint32_t length;
        Encoding encoding;
    } kMarks[] = {
        {"\xEF\xBB\xBF", 3, Encoding::kUtf8},
        {"\xFF\xFE", 2, Encoding::kUtf16LittleEndian},
        {"\xFE\xFF", 2, Encoding::kUtf16BigEndian},
    };
    isStarted_ = true;
    OrvResult result = Refill();
    for (const auto &mark : kMarks) {
        // Reads no more than needed to decide: the next bytes may still have to be typed.
        uint32_t equal = 0;
        while (OrvSucceeded(result) && equal < count_ && equal < mark.length &&
               bytes_[equal] == mark.bytes[equal]) {
            if (++equal == count_ && equal < mark.length)
                result = Refill();
        }
        if (equal < mark.length)
            continue;
        encoding_ = mark.encoding;
        next_ = mark.length;
        break;
    }
    return result;
}

bool LineReader::IsAtLineFeed() const
{
    if (encoding_ == Encoding::kUtf8)
        return bytes_[next_] == '\n';
    const bool isLittle = encoding_ == Encoding::kUtf16LittleEndian;
    return bytes_[isLittle ? next_ : next_ + 1] == '\n' && bytes_[isLittle ? next_ + 1 : next_] == 0;
}

OrvResult LineReader::Take(OrvUtf16CharHeapBuffer &line, bool &found)
{
    collected_.Resize(0); // keeps its memory
    found = false;
    OrvResult result = isStarted_ ? ORV_S_OK : TakeByteOrderMark();
    const uint32_t unitSize = UnitSize();
    while (OrvSucceeded(result)) {
        const uint32_t first = next_;
        while (count_ - next_ >= unitSize && !IsAtLineFeed())
            next_ += unitSize;
        result = collected_.Append(bytes_ + first, next_ - first);
        found = found || next_ != first;
        if (OrvSucceeded(result) && count_ - next_ >= unitSize) {
            next_ += unitSize;
            found = true;
            break;
        }
        const uint32_t left = count_ - next_;
        if (OrvSucceeded(result))
            result = Refill();
        if (OrvSucceeded(result) && count_ == left) { // the input has ended
            found = found || left != 0;
            result = collected_.Append(bytes_, left);
            next_ = count_;
            break;
        }
    }
    return OrvFailed(result) ? result : Convert(line);
}

OrvResult LineReader::Convert(OrvUtf16CharHeapBuffer &line)
{
    const uint32_t count = collected_.GetInternal().length;
    const OrvResult result =
        encoding_ == Encoding::kUtf8 ? ConvertUtf8(line, count) : ConvertUtf16(line, count);
    const uint32_t length = line.GetInternal().length;
    return OrvSucceeded(result) && length && line[length - 1] == L'\r' ? line.Resize(length - 1) : result;
}

OrvResult LineReader::ConvertUtf16(OrvUtf16CharHeapBuffer &line, uint32_t length)
{
    const uint32_t units = length / sizeof(wchar_t);
    const OrvResult result = line.Resize(units + length % sizeof(wchar_t));
    if (OrvFailed(result) || length == 0)
        return result;
    const uint32_t high = encoding_ == Encoding::kUtf16LittleEndian ? 1 : 0;
    const char *bytes = collected_.GetBuffer();
    for (uint32_t i = 0; i < units; i++, bytes += sizeof(wchar_t))
        line[i] = static_cast<wchar_t>(static_cast<uint8_t>(bytes[high]) << 8 |
                                       static_cast<uint8_t>(bytes[1 - high]));
    if (length % sizeof(wchar_t))
        line[units] = kReplacement;
    return ORV_S_OK;
}

OrvResult LineReader::ConvertUtf8(OrvUtf16CharHeapBuffer &line, uint32_t length)
{
    // A text never has more UTF-16 units than UTF-8 bytes.
    OrvResult result = line.Resize(length);
    if (length == 0)
        return result;
    uint32_t size = 0;
    const char *next = collected_.GetBuffer();
    for (const char *const last = next + length; OrvSucceeded(result);) {
        const auto left = static_cast<uint32_t>(last - next);
        wchar_t *const target = line.GetBuffer() + size;
        uint32_t units = 0;
        result =
            OrvConvertMb2Utf16String(target, line.GetCapacity() - size, next, OrvCodePageUtf8, &units, left);
        if (result != ORV_E_INVALID_DATA) {
            size += units;
            break;
        }
        const uint32_t valid = FindFault(next, left, OrvCodePageUtf8);
        result =
            OrvConvertMb2Utf16String(target, line.GetCapacity() - size, next, OrvCodePageUtf8, &units, valid);
        line[size + units] = kReplacement;
        size += units + 1;
        next += valid + 1;
    }
    return OrvFailed(result) ? result : line.Resize(size);
}

} // namespace orvtool
