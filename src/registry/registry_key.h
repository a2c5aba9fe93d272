// What the parts of the registry handle share: its working state, counted names, and handles for one
// operation.

#pragma once

#include "nt/counted_string.h"
#include "nt/nt.h"
#include "orv/registry/registry_handle.h"
#include "text/length.h"

namespace detail
{

/// What a handle needs once it opens or watches a key.
struct RegistryState {
    HANDLE key; ///< null: none is open

    /// The handles that changes are watched through, without and with what is below the key. The platform
    /// takes what to watch from a handle's first watch, so each kind needs one of its own.
    HANDLE watchKeys[2];
};

/// A name as the platform takes it.
class CountedName
{
public:
    /// False when it is too long to be counted.
    bool Set(const OrvStringRefBase<wchar_t> &name)
    {
        return CountText(name.characters, ResolveLength(name.characters, name.length), counted_);
    }

    const UNICODE_STRING *Get() const { return &counted_; }

private:
    UNICODE_STRING counted_;
};

/// A handle for one operation: to a key, a file, a token.
class ScopedHandle
{
public:
    ScopedHandle() = default;
    ScopedHandle(const ScopedHandle &) = delete;
    ScopedHandle &operator=(const ScopedHandle &) = delete;
    ~ScopedHandle()
    {
        if (handle)
            ZwClose(handle);
    }

    HANDLE handle = nullptr;
};

} // namespace detail
