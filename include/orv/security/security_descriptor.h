// A security descriptor as operations that create objects take it.

#pragma once

#include "orv/base.h"

/// Refers to a native descriptor, absolute or self-relative, of the caller.
class OrvWinSecurityDescriptor
{
public:
    /// The native descriptor must outlive this object; null stands for none.
    explicit OrvWinSecurityDescriptor(void *native = nullptr) : native_(native) {}

    /// The native descriptor, or null.
    void *GetNative() const { return native_; }

private:
    void *native_;
};
