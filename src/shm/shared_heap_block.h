// The storage of shared memory within one process: a block of the heap that counts its holders.

#pragma once

#include "orv/base.h"
#include "orv/sync/interlocked.h"
#include "runtime/heap.h"

namespace detail
{

/// The header, which precedes the storage in the block. The release by the last holder frees the block.
struct SharedHeapBlock {
    volatile long holders;
    uint32_t padding; ///< aligns the storage as the heap aligns its blocks

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
