// Heap storage: a counted block of the process heap.

#pragma once

#include "orv/base.h"
#include "orv/sync/interlocked.h"
#include "runtime/heap.h"

namespace detail
{

/// The header in front of the storage. The last holder's release frees the block.
struct SharedHeapBlock {
    volatile long holders;
    uint32_t padding; ///< so that the storage is aligned as a block of the heap is

    static SharedHeapBlock *Allocate(uint32_t size)
    {
        if (size > UINT32_MAX - sizeof(SharedHeapBlock))
            return nullptr;
        const auto block = static_cast<SharedHeapBlock *>(AllocateBytes(sizeof(SharedHeapBlock) + size));
        if (block)
            block->holders = 1;
        return block;
    }

    SharedHeapBlock *Share()
    {
        _InterlockedIncrement(&holders);
        return this;
    }

    void Release()
    {
        if (_InterlockedDecrement(&holders) == 0)
            FreeBytes(this);
    }

    uint8_t *Storage() { return reinterpret_cast<uint8_t *>(this + 1); }
};

} // namespace detail
