// The types of registry values by name, and their data as text.

#pragma once

#include "command.h"

#include "orv/registry/registry_handle.h"
#include "orv/text/heap_buffer.h"

namespace orvtool
{

/// Reads "sz", "multi_sz" and the like, or a number for any type.
bool ParseTypeName(const wchar_t *text, OrvBasWinRegistryValueType &type);

/// Prints a type in the form that ParseTypeName reads, in at least `width` characters.
void PrintTypeName(Stream &out, OrvBasWinRegistryValueType type, int width);

/// Prints the data of a value: a text up to its terminator, the texts of a multi-string with `separator`
/// between them, a number of the right size as 0x and all its digits, and everything else as hexadecimal
/// digits. The bytes are as OrvBasWinRegistryHandle::QueryValue gives them: terminated if they are text.
void PrintData(Stream &out, OrvBasWinRegistryValueType type, const uint8_t *bytes, uint32_t size,
               const wchar_t *separator);

/// Data as the command line gives it: texts, each with its terminator.
struct DataArguments {
    OrvUtf16CharHeapBuffer texts;
    uint32_t count = 0;

    /// Adds one text. Returns 0 or ORV_E_OUT_OF_MEMORY.
    OrvResult Add(const wchar_t *text);
};

/// Converts arguments to the bytes of a value of the type. A multi-string takes any number of arguments, none
/// of them empty. Every other type takes one.
///
/// Returns 0; ORV_E_INVALID_ARGUMENT when the arguments are not data of the type; ORV_E_OUT_OF_MEMORY.
OrvResult ParseData(OrvMbCharHeapBuffer &bytes, OrvBasWinRegistryValueType type, const DataArguments &data);

} // namespace orvtool
