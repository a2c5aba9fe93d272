// Trees of the registry to the text format of the system's registry editor, and back.

#pragma once

#include "input.h"
#include "reg_location.h"

namespace orvtool
{

typedef OrvBasWinRegistryHandle::ViewMode RegistryView;

/// Writes the key and all below it to the file, or with null or "-" to standard output. A key below it that
/// cannot be read is reported and left out, which makes it a failure at the end; what others delete meanwhile
/// is left out too. A file that cannot be written to its end is removed. Failures have been reported.
ExitCode ExportTree(const Command &command, Console &console, OrvBasWinRegistryHandle &key,
                    const RegistryLocation &location, const wchar_t *file);

/// Reads all of the input, and when it has no fault does what it says, from top to bottom: at the first
/// failure what stands above has been done. Prints how much that was. Failures have been reported.
ExitCode ImportTree(const Command &command, Console &console, Input &input, RegistryView view);

} // namespace orvtool
