// Reading files and standard input without a C runtime.

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

/// A pipe whose writers are gone has ended too.
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
    if (OrvKernel32IsFnLoaded_ReadFile()) { // which knows about consoles on every system
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

OrvResult LineReader::Refill()
{
    next_ = 0;
    return input_.ReadSome(bytes_, sizeof bytes_, count_);
}

OrvResult LineReader::Take(OrvUtf16CharHeapBuffer &line, bool &found)
{
    collected_.Resize(0); // keeps its memory
    found = false;
    for (bool isComplete = false; !isComplete;) {
        if (next_ == count_) {
            const OrvResult result = Refill();
            if (OrvFailed(result))
                return result;
            if (count_ == 0)
                break;
        }
        found = true;
        const uint32_t first = next_;
        while (next_ < count_ && bytes_[next_] != '\n')
            next_++;
        const OrvResult result = collected_.Append(bytes_ + first, next_ - first);
        if (OrvFailed(result))
            return result;
        if (next_ < count_) {
            isComplete = true;
            next_++;
        }
    }
    uint32_t length = collected_.GetInternal().length;
    if (length && collected_[length - 1] == '\r')
        length--;
    return Convert(line, length);
}

OrvResult LineReader::Convert(OrvUtf16CharHeapBuffer &line, uint32_t length)
{
    // No text has more UTF-16 units than UTF-8 bytes.
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
        line[size + units] = 0xFFFD;
        size += units + 1;
        next += valid + 1;
    }
    return OrvFailed(result) ? result : line.Resize(size);
}

} // namespace orvtool
