// Pushes, reads and pops the names of the open elements.

#include "xml/name_stack.h"

#include "crt/memory.h"
#include "orv/runtime/result.h"
#include "runtime/growth.h"
#include "runtime/heap.h"

namespace detail
{

NameStack::~NameStack()
{
    FreeBytes(units_);
}

OrvResult NameStack::Push(const OrvStringRefBase<wchar_t> &name)
{
    constexpr uint32_t kFirstCapacity = 128;
    constexpr uint32_t kMostUnits = UINT32_MAX / sizeof(wchar_t);
    if (name.length > kMostUnits - kLengthUnits - used_)
        return ORV_E_OUT_OF_MEMORY;
    const uint32_t needed = used_ + name.length + kLengthUnits;
    if (needed > capacity_) {
        const uint32_t capacity = GrownCapacity(capacity_, needed, kFirstCapacity, kMostUnits);
        auto *const grown = static_cast<wchar_t *>(ReallocateBytes(units_, capacity * sizeof(wchar_t)));
        if (!grown)
            return ORV_E_OUT_OF_MEMORY;
        units_ = grown;
        capacity_ = capacity;
    }
    if (name.length)
        memcpy(units_ + used_, name.characters, name.length * sizeof(wchar_t));
    __builtin_memcpy(units_ + used_ + name.length, &name.length, sizeof name.length);
    used_ = needed;
    depth_++;
    return ORV_S_OK;
}

uint32_t NameStack::TopLength() const
{
    uint32_t length = 0;
    __builtin_memcpy(&length, units_ + used_ - kLengthUnits, sizeof length);
    return length;
}

OrvStringRefBase<wchar_t> NameStack::Top() const
{
    const uint32_t length = TopLength();
    return {units_ + used_ - kLengthUnits - length, length};
}

void NameStack::Pop()
{
    used_ -= TopLength() + kLengthUnits;
    depth_--;
}

} // namespace detail
