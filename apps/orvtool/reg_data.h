// The types of registry values by name, and their data as people write and read it.

#pragma once

#include "command.h"

#include "orv/registry/registry_handle.h"
#include "orv/text/heap_buffer.h"

namespace orvtool
{

/// Reads "sz", "multi_sz" and the like, or a number for any type.
bool ParseTypeName(const wchar_t *text, OrvBasWinRegistryValueType &type);

/// Prints what ParseTypeName reads, in at least `width` characters.
void PrintTypeName(Stream &out, OrvBasWinRegistryValueType type, int width);

/// Prints the data of a value: a text up to its terminator, the texts of a multi-string with `separator`
/// between them, a number of the right size as 0x and all its digits, and everything else as hexadecimal
/// digits. The bytes are as OrvBasWinRegistryHandle::QueryValue gives them: terminated if they are text.
void PrintData(Stream &out, OrvBasWinRegistryValueType type, const uint8_t *bytes, uint32_t size,
               const wchar_t *separator);

/// Data as it stands on the command line: texts, each with its terminator.
struct DataArguments {
    OrvUtf16CharHeapBuffer texts;
    uint32_t count = 0;

    /// Returns 0 or ORV_E_OUT_OF_MEMORY.
    OrvResult Add(const wchar_t *text);
};

/// The bytes of a value of the type. A multi-string has any number of arguments, none of them empty; every
/// other type has one.
///
/// Returns 0; ORV_E_INVALID_ARGUMENT when the arguments are no data of the type; ORV_E_OUT_OF_MEMORY.
OrvResult ParseData(OrvMbCharHeapBuffer &bytes, OrvBasWinRegistryValueType type, const DataArguments &data);

} // namespace orvtool
