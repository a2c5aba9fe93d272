// The list of the threads' records, and the thread-local key under which each thread finds its own.

#include "thread/thread_record.h"

#include "nt/nt.h"
#include "nt/teb.h"
#include "orv/runtime/result.h"
#include "orv/thread/tls.h"
#include "runtime/heap.h"
#include "runtime/status.h"

namespace detail
{

namespace
{

struct ThreadRecord {
    LIST_ENTRY links;
    ThreadData data;
};
static_assert(offsetof(ThreadRecord, data) == 8 && offsetof(ThreadData, threadId) == 0);

// No destructor: FreeThreadRecordKey releases the key, or else the end of the process does.
[[clang::no_destroy]] OrvTls key;
RTL_CRITICAL_SECTION lock;
LIST_ENTRY head;

void Link(LIST_ENTRY &links)
{
    RtlEnterCriticalSection(&lock);
    links = {head.Flink, &head};
    head.Flink->Blink = &links;
    head.Flink = &links;
    RtlLeaveCriticalSection(&lock);
}

void Unlink(const LIST_ENTRY &links)
{
    RtlEnterCriticalSection(&lock);
    links.Flink->Blink = links.Blink;
    links.Blink->Flink = links.Flink;
    RtlLeaveCriticalSection(&lock);
}

} // namespace

OrvResult CreateThreadRecordList()
{
    head = {&head, &head};
    return ResultFromCall(RtlInitializeCriticalSection(&lock));
}

void DeleteThreadRecordList()
{
    RtlDeleteCriticalSection(&lock);
    while (head.Flink != &head) {
        LIST_ENTRY *const first = head.Flink;
        head.Flink = first->Flink;
        FreeBytes(first); // the links are the first member of a record
    }
    head.Blink = &head;
}

OrvResult AllocateThreadRecordKey()
{
    return key.Create();
}

void FreeThreadRecordKey()
{
    key.Destroy();
}

ThreadData *GetThreadData()
{
    return static_cast<ThreadData *>(key.GetValue());
}

OrvResult EnsureThreadRecord()
{
    if (!key.IsInitialized())
        return ORV_E_INVALID_STATE;
    if (key.GetValue())
        return ORV_S_OK;
    auto *const record = static_cast<ThreadRecord *>(AllocateBytes(sizeof(ThreadRecord)));
    if (!record)
        return ORV_E_OUT_OF_MEMORY;
    record->data = {CurrentThreadId()};
    const OrvResult result = key.SetValue(&record->data);
    if (OrvFailed(result)) {
        FreeBytes(record);
        return result;
    }
    Link(record->links);
    return ORV_S_OK;
}

void RemoveThreadRecord()
{
    void *const data = key.GetValue();
    if (!data)
        return;
    key.SetValue(nullptr);
    auto *const record =
        reinterpret_cast<ThreadRecord *>(static_cast<uint8_t *>(data) - offsetof(ThreadRecord, data));
    Unlink(record->links);
    FreeBytes(record);
}

} // namespace detail
