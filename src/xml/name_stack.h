// The stack of the names of the open elements.

#pragma once

#include "orv/text/string_ref.h"

namespace detail
{

/// Copies of the names, the innermost last, in one block that grows by doubling, so that opening an element
/// seldom allocates. Each name is followed by its length.
class NameStack
{
public:
    NameStack() = default;
    NameStack(const NameStack &) = delete;
    NameStack &operator=(const NameStack &) = delete;
    ~NameStack();

    /// Copies a name whose length is a count. Returns 0, or ORV_E_OUT_OF_MEMORY and leaves the stack
    /// unchanged.
    OrvResult Push(const OrvStringRefBase<wchar_t> &name);

    /// The innermost name, valid until the next Push. The stack must not be empty.
    OrvStringRefBase<wchar_t> Top() const;
    void Pop();

    uint32_t Depth() const { return depth_; }

private:
    static constexpr uint32_t kLengthUnits = sizeof(uint32_t) / sizeof(wchar_t);

    uint32_t TopLength() const;

    wchar_t *units_ = nullptr;
    uint32_t used_ = 0;
    uint32_t capacity_ = 0;
    uint32_t depth_ = 0;
};

} // namespace detail
