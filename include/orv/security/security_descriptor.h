// The security descriptor that operations take when they create objects.

#pragma once

#include "orv/base.h"

/// Refers to the caller's native descriptor, absolute or self-relative.
class OrvWinSecurityDescriptor
{
public:
    /// The native descriptor must outlive this object; null means none.
    explicit OrvWinSecurityDescriptor(void *native = nullptr) : native_(native) {}

    /// The native descriptor, or null.
    void *GetNative() const { return native_; }

private:
    void *native_;
};
