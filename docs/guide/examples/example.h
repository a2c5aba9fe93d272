// What the programs of the guide share: the name of their entry, and a way to print.

#pragma once

#include "orv/orv.h"

/// Each program's own. Its result is the exit code.
int Main();

/// Formats as the library does, and writes the text to standard output as UTF-8.
void Print(const wchar_t *format, ...);
