// The least that a program without a C runtime needs: arguments, output, an exit code, and a message if it
// crashes.

#pragma once

#include <stdint.h>

namespace program
{

/// Implemented by the runner: the arguments without the program's name, and the exit code.
int Main(uint32_t count, const char *const *arguments);

/// Implemented by the runner: what a crash report names.
const char *CurrentWork();

/// Writes terminated text to standard output.
void Print(const char *text);

} // namespace program
