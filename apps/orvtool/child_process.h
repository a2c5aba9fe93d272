// Runs another program with the input, output and environment of this one.

#pragma once

#include "orv/text/heap_buffer.h"

namespace orvtool
{

/// Appends an argument to a command line. The argument is quoted where needed: a program that splits its
/// command line by the usual rules of Windows reads it unchanged. Returns 0 or ORV_E_OUT_OF_MEMORY.
OrvResult AppendArgument(OrvUtf16CharHeapBuffer &line, const wchar_t *argument);

/// Runs the command line and waits for the program's end. May change the characters of `line`. Returns 0 and
/// the program's exit code; ORV_E_NOT_SUPPORTED in a process without kernel32.dll; otherwise the failure to
/// start.
OrvResult RunProcess(OrvUtf16CharHeapBuffer &line, int &exitCode);

} // namespace orvtool
