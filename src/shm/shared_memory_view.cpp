// Views of shared memory: mapped sections, or the storage of a heap block.

#include "orv/shm/shared_memory_view.h"

#include "nt/nt.h"
#include "orv/runtime/result.h"
#include "runtime/status.h"
#include "shm/shared_heap_block.h"

// offsetof of a class with virtual functions is conditionally supported; all compilers of this interface do.
#pragma clang diagnostic ignored "-Winvalid-offsetof"

OrvSharedMemoryView::OrvSharedMemoryView()
{
    // The 64-bit field sets the alignment of the class to 8, and this interface gives the pointer to the
    // virtual table a whole unit of alignment.
    static_assert(offsetof(OrvSharedMemoryView, memory_) == 8);
    static_assert(offsetof(OrvSharedMemoryView, offset_) == 16);
    static_assert(offsetof(OrvSharedMemoryView, pointer_) == 24);
    static_assert(offsetof(OrvSharedMemoryView, size_) == 28);
    static_assert(offsetof(OrvSharedMemoryView, fromHeap_) == 32);
    static_assert(sizeof(OrvSharedMemoryView) == 40);
}

OrvSharedMemoryView::~OrvSharedMemoryView()
{
    Detach();
}

void OrvSharedMemoryView::Show(OrvSharedMemoryBase &memory, int64_t offset, void *pointer, uint32_t size,
                               bool fromHeap)
{
    Detach();
    memory_ = &memory;
    offset_ = offset;
    pointer_ = pointer;
    size_ = size;
    fromHeap_ = fromHeap;
}

OrvResult OrvSharedMemoryView::AttachHeap(OrvSharedMemoryBase &memory, int64_t offset, uint32_t size)
{
    if (offset < 0 || offset >= memory.heapSize_ || offset + size > memory.heapSize_)
        return ORV_E_END_OF_DATA;
    const auto start = static_cast<uint32_t>(offset);
    Show(memory, offset, memory.heapBlock_->Storage() + start, size != 0 ? size : memory.heapSize_ - start,
         true);
    return ORV_S_OK;
}

OrvResult OrvSharedMemoryView::Attach(OrvSharedMemoryBase &memory, int64_t offset, unsigned int size,
                                      bool readOnly)
{
    if (memory.IsStorageHeap())
        return AttachHeap(memory, offset, size);
    const bool writable = !readOnly && (memory.access_ & OrvAccessWrite);
    void *base = nullptr;
    LONGLONG sectionOffset = offset;
    ULONG viewSize = size;
    const OrvResult result = detail::ResultFromCall(
        ZwMapViewOfSection(memory.section_, NtCurrentProcess(), &base, 0, 0, &sectionOffset, &viewSize,
                           ViewUnmap, 0, writable ? PAGE_READWRITE : PAGE_READONLY));
    if (OrvSucceeded(result))
        Show(memory, offset, base, viewSize, false);
    return result;
}

OrvResult OrvSharedMemoryView::Attach(OrvSharedMemoryBase &memory, int64_t offset, unsigned int size)
{
    return Attach(memory, offset, size, false);
}

OrvResult OrvSharedMemoryView::Detach()
{
    if (!pointer_)
        return ORV_S_OK;
    void *const pointer = pointer_;
    memory_ = nullptr;
    offset_ = 0;
    pointer_ = nullptr;
    if (fromHeap_)
        return ORV_S_OK; // the size is still reported
    size_ = 0;
    return detail::ResultFromCall(ZwUnmapViewOfSection(NtCurrentProcess(), pointer));
}

void *OrvSharedMemoryView::GetPointer() const
{
    return pointer_;
}

OrvResult OrvSharedMemoryView::GetSize(unsigned int &size) const
{
    size = size_;
    return ORV_S_OK;
}
