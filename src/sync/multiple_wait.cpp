// Waits for several objects: the waitables are resolved to handles on the stack, and one native call waits.

#include "orv/sync/multiple_wait.h"

#include "orv/runtime/result.h"
#include "runtime/status.h"
#include "sync/native_wait.h"

namespace
{

static_assert(OrvMostWaitObjects == MAXIMUM_WAIT_OBJECTS);

/// The handles to wait for, each with the place of its waitable in the caller's array.
class WaitHandles
{
public:
    OrvResult Collect(OrvBasWaitable *const *objects, uint32_t count)
    {
        if (!objects || count == 0)
            return ORV_E_INVALID_ARGUMENT;
        if (count > OrvMostWaitObjects)
            return ORV_E_BAD_LENGTH;
        firstEmpty_ = count;
        for (uint32_t i = 0; i < count; i++) {
            OrvBasWaitable *const last = detail::FollowForwards(objects[i]);
            if (!last)
                return ORV_E_INVALID_ARGUMENT;
            switch (last->GetResourceType()) {
            case OrvBasWaitableHandle:
                places_[count_] = static_cast<uint8_t>(i);
                handles_[count_++] = last->GetHandle();
                break;
            case OrvBasWaitableNone:
                if (firstEmpty_ == count)
                    firstEmpty_ = i;
                break;
            case OrvBasWaitableSelfWaiting:
                return ORV_E_UNSUPPORTED_TYPE;
            default:
                return ORV_E_NOT_PROVIDED;
            }
        }
        hasEmpty_ = firstEmpty_ != count;
        return ORV_S_OK;
    }

    bool HasEmpty() const { return hasEmpty_; }
    uint32_t FirstEmpty() const { return firstEmpty_; }
    uint32_t Count() const { return count_; }
    uint32_t PlaceOf(uint32_t handle) const { return places_[handle]; }

    /// How many handles precede the first empty waitable.
    uint32_t CountBeforeEmpty() const
    {
        uint32_t before = 0;
        while (before < count_ && places_[before] < firstEmpty_)
            before++;
        return before;
    }

    bool HasTwins() const
    {
        for (uint32_t i = 1; i < count_; i++) {
            for (uint32_t j = 0; j < i; j++) {
                if (handles_[i] == handles_[j])
                    return true;
            }
        }
        return false;
    }

    NTSTATUS Wait(uint32_t count, WAIT_TYPE type, int timeoutMs) const
    {
        const detail::TimeLimit limit(timeoutMs);
        return ZwWaitForMultipleObjects(count, handles_, type, false, limit.GetNative());
    }

private:
    HANDLE handles_[OrvMostWaitObjects];
    uint8_t places_[OrvMostWaitObjects];
    uint32_t count_ = 0;
    uint32_t firstEmpty_ = 0;
    bool hasEmpty_ = false;
};

/// Converts the status of a wait for `count` handles. `handle` is the index of the handle that it refers to.
OrvResult ResultFromWait(NTSTATUS status, uint32_t count, uint32_t &handle)
{
    const auto number = static_cast<uint32_t>(status);
    if (number < STATUS_WAIT_0 + count) {
        handle = number - STATUS_WAIT_0;
        return ORV_S_OK;
    }
    if (number >= STATUS_ABANDONED && number < STATUS_ABANDONED + count) {
        handle = number - STATUS_ABANDONED;
        return ORV_S_ABANDONED;
    }
    return status == STATUS_TIMEOUT ? ORV_W_TIMEOUT : detail::ResultFromStatus(status);
}

} // namespace

OrvResult OrvBasWaitForAny(uint32_t &index, OrvBasWaitable *const *objects, uint32_t count, int timeoutMs)
{
    WaitHandles handles;
    OrvResult result = handles.Collect(objects, count);
    if (OrvFailed(result))
        return result;
    // An empty waitable ends the wait at once, unless one before it is signalled.
    const uint32_t waited = handles.CountBeforeEmpty();
    uint32_t handle = 0;
    if (waited) {
        result =
            ResultFromWait(handles.Wait(waited, WaitAny, handles.HasEmpty() ? 0 : timeoutMs), waited, handle);
        if (OrvSucceeded(result)) {
            index = handles.PlaceOf(handle);
            return result;
        }
        if (!handles.HasEmpty() || result != ORV_W_TIMEOUT)
            return result;
    }
    index = handles.FirstEmpty();
    return ORV_S_OK;
}

OrvResult OrvBasWaitForAll(OrvBasWaitable *const *objects, uint32_t count, int timeoutMs)
{
    WaitHandles handles;
    const OrvResult result = handles.Collect(objects, count);
    if (OrvFailed(result) || handles.Count() == 0)
        return result;
    if (handles.HasTwins())
        return ORV_E_INVALID_ARGUMENT;
    uint32_t handle = 0; // without meaning here: the platform names one of the abandoned mutexes, if any
    return ResultFromWait(handles.Wait(handles.Count(), WaitAll, timeoutMs), handles.Count(), handle);
}
