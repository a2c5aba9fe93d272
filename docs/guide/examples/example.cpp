// The entry of a program without a C runtime, and printing by the native interface alone.

#include "example.h"

extern "C" {

unsigned long __readfsdword(unsigned long offset);
long __stdcall NtWriteFile(void *file, void *event, void *routine, void *context, void *status,
                           const void *bytes, unsigned long size, void *offset, void *key);
long __stdcall NtTerminateProcess(void *process, long exitCode);

} // extern "C"

#pragma intrinsic(__readfsdword)

namespace
{

/// The platform hands a process its standard streams in its parameters: thread block, process block,
/// parameters, standard output.
void *StandardOutput()
{
    const auto process = static_cast<uintptr_t>(__readfsdword(0x30));
    const uintptr_t parameters = *reinterpret_cast<const uintptr_t *>(process + 0x10);
    return *reinterpret_cast<void *const *>(parameters + 0x1C);
}

} // namespace

void Print(const wchar_t *format, ...)
{
    OrvUtf16CharHeapBuffer text;
    va_list arguments;
    va_start(arguments, format);
    OrvResult result = OrvFormatStringV(OrvCodePageUtf8, text, format, arguments);
    va_end(arguments);
    char bytes[1024];
    uint32_t size = 0;
    if (OrvSucceeded(result))
        result = OrvConvertUtf162MbString(bytes, sizeof bytes, text.GetValue(), OrvCodePageUtf8, &size);
    uint32_t status[2];
    if (OrvSucceeded(result))
        NtWriteFile(StandardOutput(), nullptr, nullptr, nullptr, status, bytes, size, nullptr, nullptr);
}

extern "C" void ExampleEntry()
{
    NtTerminateProcess(reinterpret_cast<void *>(-1), Main());
}
