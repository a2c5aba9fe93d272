// A program without a C runtime. orvstart.lib has its entry, under the names that linkers take by themselves
// (mainCRTStartup, WinMainCRTStartup, and NtProcessStartup for a native process), and what compilers call: it
// is linked with orvsys.lib and ntdll.lib, and /nodefaultlib. A program with a C runtime has no use for it.
//
// The entry makes the process's parameters readable where the process is a native one, draws the stack
// cookie, runs the constructors of static objects, calls OrvMain, and runs the destructors, the last object's
// first. Then the process ends, DLLs are told so, and the exit code is what OrvMain returned. When there is
// no memory for the arguments, the process ends with STATUS_NO_MEMORY (0xC0000017) before any of that.

#pragma once

#include "orv/base.h"

/// The program's own: where it starts. `argv` has `argc` texts, the program's name first, and ends with a
/// null pointer; they live as long as the process. The command line is split as CommandLineToArgvW splits it:
/// blanks and tabs separate, quotation marks hold together, 2n backslashes and a mark are n backslashes and a
/// mark that opens or closes, 2n + 1 are n backslashes and a mark as a character. A process without a command
/// line has its image's path as its name.
extern "C" int __cdecl OrvMain(int argc, wchar_t **argv);

/// Formats as OrvFormatString does, with UTF-8 for byte strings, and writes the text to the process's
/// standard output in one go: to a console in its OEM page, to a file or a pipe as UTF-8.
///
/// Returns 0; ORV_E_OUT_OF_MEMORY or a failure to convert, and nothing is written; ORV_E_WRITE_FAULT when the
/// stream takes nothing more; otherwise the converted status of writing: ORV_E_INVALID_HANDLE where the
/// process has no such stream. What the stream took before such a failure stays written.
OrvResult OrvPrint(const wchar_t *format, ...);

/// As OrvPrint, to standard error.
OrvResult OrvPrintError(const wchar_t *format, ...);
