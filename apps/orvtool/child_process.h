// Running another program, with this one's input, output and environment.

#pragma once

#include "orv/text/heap_buffer.h"

namespace orvtool
{

/// Appends an argument to a command line, quoted where it must be so that a program that splits its line as
/// Windows programs agree on reads it as it is. Returns 0 or ORV_E_OUT_OF_MEMORY.
OrvResult AppendArgument(OrvUtf16CharHeapBuffer &line, const wchar_t *argument);

/// Runs the command line and waits for its end. `line` is used up. Returns 0 and the program's exit code;
/// ORV_E_NOT_SUPPORTED in a process without kernel32.dll; otherwise why it could not be started.
OrvResult RunProcess(OrvUtf16CharHeapBuffer &line, int &exitCode);

} // namespace orvtool
