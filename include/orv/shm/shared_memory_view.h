// A range of shared memory in the address space.

#pragma once

#include "orv/shm/shared_memory.h"

/// Shows at most one range. The memory object must outlive a view of a heap block.
class OrvSharedMemoryView : public OrvHeapObject
{
public:
    ORV_API OrvSharedMemoryView();
    OrvSharedMemoryView(const OrvSharedMemoryView &) = delete;
    OrvSharedMemoryView &operator=(const OrvSharedMemoryView &) = delete;

    /// Detach.
    ORV_API virtual ~OrvSharedMemoryView();

    /// Shows `size` bytes from `offset` on, or all up to the end when the size is 0, in place of the range
    /// that was shown before.
    ///
    /// A heap block shows exactly that range. A section shows whole pages, and the offset must be a multiple
    /// of the allocation granularity (64 KiB); the view may be written to unless `readOnly` is set or the
    /// memory object does not allow it.
    ///
    /// Returns 0; ORV_E_END_OF_DATA when the range does not lie within the heap block, also for a negative
    /// offset; otherwise the converted status: ORV_E_INVALID_HANDLE when the memory object holds nothing,
    /// ORV_E_ACCESS_DENIED, and the status for an offset or a size that the platform does not accept. On
    /// failure the view is as it was.
    ORV_API OrvResult Attach(OrvSharedMemoryBase &memory, int64_t offset, unsigned int size, bool readOnly);

    /// The same with `readOnly` false.
    ORV_API OrvResult Attach(OrvSharedMemoryBase &memory, int64_t offset, unsigned int size);

    /// Ends the view. Returns 0, also when nothing was shown, or the converted status; nothing is shown in
    /// either case.
    ORV_API OrvResult Detach();

    /// The first byte; null when nothing is shown.
    ORV_API void *GetPointer() const;

    /// The size of the range in bytes, rounded up by the system for a section. After a range of a heap block
    /// was detached, its size is still returned. Always returns 0.
    ORV_API OrvResult GetSize(unsigned int &size) const;

private:
    void Show(OrvSharedMemoryBase &memory, int64_t offset, void *pointer, uint32_t size, bool fromHeap);
    OrvResult AttachHeap(OrvSharedMemoryBase &memory, int64_t offset, uint32_t size);

    OrvSharedMemoryBase *memory_ = nullptr;
    int64_t offset_ = 0;
    void *pointer_ = nullptr;
    uint32_t size_ = 0;
    uint32_t fromHeap_ = 0;
};
