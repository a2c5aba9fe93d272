// What the parts of the registry handle share: its working state, counted names, and the way to the key that
// an operation works on.

#pragma once

#include "nt/counted_string.h"
#include "nt/nt.h"
#include "orv/registry/registry_handle.h"
#include "orv/runtime/heap_object.h"
#include "runtime/native_handle.h"
#include "text/length.h"

namespace detail
{

/// What a handle needs once it opens or watches a key.
struct RegistryState : OrvHeapObject {
    NativeHandle key; ///< null: none is open

    /// The handles that changes are watched through, without and with what is below the key. The platform
    /// takes what to watch from a handle's first watch, so each kind needs one of its own.
    NativeHandle watchKeys[2];
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

} // namespace detail

/// Calls `operation` with the current key, or in a transaction with a handle of the transaction's own to it,
/// which has the rights `access` and is closed afterwards. Returns why there is no such key, or what
/// `operation` returns.
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
