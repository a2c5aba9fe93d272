// Keys and values in the text format of the system's registry editor, version 5.00.
//
// What is written can be read back exactly, bytes and types alike: whatever a notation cannot say, such as a
// string without its terminator, goes out as bytes. Lines of bytes are continued at 80 columns.

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

    /// What is written next are values of this key.
    OrvResult WriteKey(OrvBasWinRegistryRootType root, const Name &path);

    OrvResult WriteValue(const Name &name, OrvBasWinRegistryValueType type, const uint8_t *bytes,
                         uint32_t size);

    /// Whether the format has a place for a key of this name: it has none for line breaks.
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
