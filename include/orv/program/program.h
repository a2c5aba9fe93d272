// A program without a C runtime. orvstart.lib contains its entry, under the names that linkers use by default
// (mainCRTStartup, WinMainCRTStartup, and NtProcessStartup for a native process), and the functions that
// compilers call. The program links orvstart.lib, orvsys.lib and ntdll.lib, with /nodefaultlib. A program
// with a C runtime does not need it.
//
// The entry makes the process's parameters readable in a native process, draws the stack cookie, runs the
// constructors of static objects, calls OrvMain, and runs the destructors, the last object's first. Then it
// ends the process, which notifies the DLLs; the exit code is the one that OrvMain returned. When there is no
// memory for the arguments, the process ends with STATUS_NO_MEMORY (0xC0000017) before any of that.

#pragma once

#include "orv/base.h"

/// The start of the program, which the program defines. `argv` has `argc` texts, the program's name first,
/// and ends with a null pointer; the texts are valid until the process ends. The command line is split as
/// CommandLineToArgvW splits it: blanks and tabs separate arguments, except between quotation marks; 2n
/// backslashes and a mark are n backslashes and a mark that opens or closes; 2n + 1 backslashes and a mark
/// are n backslashes and a literal mark. A process without a command line has its image's path as its name.
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
