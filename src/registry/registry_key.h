// What the parts of the registry handle share: its working state, counted names, and the access to the key
// that an operation works on.

#pragma once

#include "nt/counted_string.h"
#include "nt/nt.h"
#include "orv/registry/registry_handle.h"
#include "orv/runtime/heap_object.h"
#include "runtime/native_handle.h"
#include "text/length.h"

namespace detail
{

/// The state that a handle allocates when it first opens or watches a key.
struct RegistryState : OrvHeapObject {
    NativeHandle key; ///< null: no key is open

    /// The handles for watching changes: first of the key alone, then of the key with its subtree. The
    /// platform fixes what to watch with a handle's first watch, so each kind needs its own handle.
    NativeHandle watchKeys[2];
};

/// A name as a counted string, as the platform takes it.
class CountedName
{
public:
    /// False when the name is too long to be counted.
    bool Set(const OrvStringRefBase<wchar_t> &name)
    {
        return CountText(name.characters, ResolveLength(name.characters, name.length), counted_);
    }

    const UNICODE_STRING *Get() const { return &counted_; }

private:
    UNICODE_STRING counted_;
};

} // namespace detail

/// Calls `operation` with the current key. In a transaction it opens another handle to the key within the
/// transaction, with the rights `access`, and closes that afterwards. Returns the failure to get the key, or
/// the result of `operation`.
template <typename Operation>
OrvResult OrvBasWinRegistryHandle::WithKey(uint32_t access, OrvWinTransaction *transaction,
                                           Operation operation) const
{
    HANDLE key = nullptr;
    detail::NativeHandle own;
    OrvResult result = ORV_S_OK;
    if (transaction) {
        result = Open(kFromCurrentKey, Name(), access, transaction, kOpenOnly, *own.Receive());
        key = own.Get();
    } else {
        result = CurrentKey(key);
    }
    return OrvSucceeded(result) ? operation(key) : result;
}
