// The names of the open elements.

#pragma once

#include "orv/text/string_ref.h"

namespace detail
{

/// Copies of names, the innermost last, in one block that grows by doubling: opening an element seldom
/// allocates. Behind each name stands its length.
class NameStack
{
public:
    NameStack() = default;
    NameStack(const NameStack &) = delete;
    NameStack &operator=(const NameStack &) = delete;
    ~NameStack();

    /// Returns 0, or ORV_E_OUT_OF_MEMORY, and the stack is as it was. The length is a count.
    OrvResult Push(const OrvStringRefBase<wchar_t> &name);

    /// The innermost name; the stack must not be empty. It stands until the next Push.
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
