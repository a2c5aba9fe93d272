// The one owner of a native handle. It closes the handle in its destructor, and is the only place besides the
// exported classes' own Close that calls ZwClose.

#pragma once

#include "nt/nt.h"

namespace detail
{

/// Owns a handle of any kind, or nothing (null). Never owns one of the platform's pseudo handles.
class NativeHandle
{
public:
    NativeHandle() = default;
    explicit NativeHandle(HANDLE handle) : handle_(handle) {}
    NativeHandle(NativeHandle &&other) noexcept : handle_(other.Detach()) {}
    NativeHandle(const NativeHandle &) = delete;
    NativeHandle &operator=(const NativeHandle &) = delete;
    ~NativeHandle() { Close(); }

    explicit operator bool() const { return handle_ != nullptr; }
    HANDLE Get() const { return handle_; }

    /// The address at which a native call stores the handle that it opens. Closes the present handle first.
    HANDLE *Receive()
    {
        Close();
        return &handle_;
    }

    /// Closes the present handle and owns another.
    void Reset(HANDLE handle)
    {
        Close();
        handle_ = handle;
    }

    /// Passes the ownership of the handle to the caller.
    HANDLE Detach()
    {
        HANDLE handle = handle_;
        handle_ = nullptr;
        return handle;
    }

    /// Closes the handle if there is one. Owns nothing afterwards, even when the platform refuses.
    NTSTATUS Close()
    {
        HANDLE handle = Detach();
        return handle ? ZwClose(handle) : STATUS_SUCCESS;
    }

private:
    HANDLE handle_ = nullptr;
};

} // namespace detail
