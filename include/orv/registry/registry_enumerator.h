// The names of a key's children or values, one after another.

#pragma once

#include "orv/text/heap_buffer.h"
#include "orv/text/interfaces.h"
#include "orv/text/string_ref.h"

/// An OrvBasWinRegistryHandle starts the enumeration; its key must stay open meanwhile. Each name takes one
/// native call and is stored in one buffer, which grows to the longest. Names that are created or deleted
/// during the enumeration may be missed, or come twice.
class OrvBasWinRegistryEnumerator final : public IOrvEnumerator<OrvStringzRefBase<wchar_t>>
{
public:
    OrvBasWinRegistryEnumerator() = default;
    OrvBasWinRegistryEnumerator(const OrvBasWinRegistryEnumerator &) = delete;
    OrvBasWinRegistryEnumerator &operator=(const OrvBasWinRegistryEnumerator &) = delete;

    /// The next name, terminated; it is valid until the next call. After the last name, and when no
    /// enumeration was started, `found` is false.
    ///
    /// Returns 0; ORV_E_OUT_OF_MEMORY; or the converted status. After a failure the next call tries the same
    /// name again.
    ORV_API OrvResult Next(OrvStringzRefBase<wchar_t> &name, bool &found) override;

    /// The length of the name that Next gave last, for names with zeros in them.
    uint32_t GetLength() const { return length_; }

private:
    friend class OrvBasWinRegistryHandle;

    void *key_ = nullptr; ///< not owned
    bool ofValues_ = false;
    uint32_t index_ = 0;
    uint32_t length_ = 0;
    OrvMbCharHeapBuffer buffer_; ///< the platform's structure, the name at its end
};
