// Writes keys and values in the text format of the system's registry editor, version 5.00.
//
// The output can be read back exactly, both bytes and types: data that has no other notation, such as a
// string without its terminator, is written as bytes. Lines of bytes are continued at 80 columns.

#pragma once

#include "orv/registry/registry_handle.h"

namespace orvtool
{

class RegFileWriter
{
public:
    typedef OrvBasWinRegistryHandle::Name Name;

    /// The stream must outlive the writer, and keep its first failure.
    explicit RegFileWriter(OrvBasAppendable<wchar_t> &out) : out_(out) {}

    // Each returns 0 or the first failure of the stream. Names are counted.

    OrvResult WriteHeader();

    /// Writes a key. The values that are written next belong to it.
    OrvResult WriteKey(OrvBasWinRegistryRootType root, const Name &path);

    OrvResult WriteValue(const Name &name, OrvBasWinRegistryValueType type, const uint8_t *bytes,
                         uint32_t size);

    /// Whether the format can express a key of this name: it cannot express line breaks.
    static bool CanWriteKey(const Name &name);

private:
    OrvResult Put(const wchar_t *text);
    OrvResult PutCharacters(const wchar_t *text, uint32_t length);
    void PutQuoted(const wchar_t *text, uint32_t length);
    void PutBytes(const uint8_t *bytes, uint32_t size);

    OrvBasAppendable<wchar_t> &out_;
    uint32_t column_ = 0;
};

} // namespace orvtool
