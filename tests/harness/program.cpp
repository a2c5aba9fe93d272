// The entry of a test program on the native interface.

#include "harness/program.h"

#include "nt/nt.h"
#include "nt/programs.h"
#include "nt/teb.h"

namespace
{

constexpr uint32_t kMostArguments = 32;
constexpr uint32_t kMostCharacters = 4096;

/// Splits the command line at blanks; the tests' arguments need no quoting.
uint32_t SplitCommandLine(char (&characters)[kMostCharacters], const char *(&arguments)[kMostArguments])
{
    const UNICODE_STRING &line = NtCurrentPeb()->ProcessParameters->CommandLine;
    const WCHAR *next = line.Buffer;
    const WCHAR *const last = next + line.Length / sizeof(WCHAR);
    uint32_t count = 0;
    char *out = characters;
    const char *const end = characters + kMostCharacters - 1;
    while (count < kMostArguments && out < end) {
        while (next < last && *next == ' ')
            next++;
        if (next == last)
            break;
        bool quoted = false;
        arguments[count++] = out;
        for (; next < last && out < end && (quoted || *next != ' '); next++) {
            if (*next == '"')
                quoted = !quoted;
            else
                *out++ = static_cast<char>(*next);
        }
        *out++ = 0;
    }
    return count;
}

LONG NTAPI ReportCrash(EXCEPTION_POINTERS *exception)
{
    const ULONG code = exception->ExceptionRecord->ExceptionCode;
    if (code >> 30 != 3)
        return 0;
    char text[] = "crashed with status 0x00000000 in ";
    for (uint32_t i = 0; i < 8; i++)
        text[29 - i] = "0123456789ABCDEF"[code >> 4 * i & 15];
    program::Print(text);
    program::Print(program::CurrentWork());
    program::Print("\n");
    NtTerminateProcess(NtCurrentProcess(), static_cast<NTSTATUS>(code));
    return 0;
}

} // namespace

void program::Print(const char *text)
{
    ULONG length = 0;
    while (text[length])
        length++;
    IO_STATUS_BLOCK status;
    NtWriteFile(NtCurrentPeb()->ProcessParameters->StandardOutput, nullptr, nullptr, nullptr, &status, text,
                length, nullptr, nullptr);
}

extern "C" void OrvTestEntry()
{
    char characters[kMostCharacters];
    const char *arguments[kMostArguments];
    RtlAddVectoredExceptionHandler(1, ReportCrash);
    const uint32_t count = SplitCommandLine(characters, arguments);
    NtTerminateProcess(NtCurrentProcess(), program::Main(count ? count - 1 : 0, arguments + 1));
}
