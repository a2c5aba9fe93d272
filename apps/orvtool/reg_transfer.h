// Exports trees of the registry to the text format of the system's registry editor, and imports them.

#pragma once

#include "input.h"
#include "reg_location.h"

namespace orvtool
{

typedef OrvBasWinRegistryHandle::ViewMode RegistryView;

/// Writes the key and all below it to the file, or with null or "-" to standard output. A key below it that
/// cannot be read is reported and left out, and the result is then a failure. A key or value that another
/// process deletes meanwhile is left out too. A file that cannot be written completely is removed. Reports
/// all failures.
ExitCode ExportTree(const Command &command, Console &console, OrvBasWinRegistryHandle &key,
                    const RegistryLocation &location, const wchar_t *file);

/// Reads the whole input, and if it has no fault applies its entries from top to bottom. At the first failure
/// the entries above have been applied. Prints how many that were. Reports all failures.
ExitCode ImportTree(const Command &command, Console &console, Input &input, RegistryView view);

} // namespace orvtool
