// What the waits for one object and for several share: where a chain of forwards ends, and the platform's
// time limit.

#pragma once

#include "nt/nt.h"
#include "orv/sync/waitable.h"

namespace detail
{

/// The waitable at the end of the chain that starts with `waitable`; null when a forward leads nowhere, or
/// the first is null.
inline OrvBasWaitable *FollowForwards(OrvBasWaitable *waitable)
{
    while (waitable && waitable->GetResourceType() == OrvBasWaitableForward)
        waitable = waitable->GetForward();
    return waitable;
}

/// A number of milliseconds from now on, read as unsigned, as the platform takes it; -1 is for ever.
class TimeLimit
{
public:
    explicit TimeLimit(int timeoutMs)
        : interval_(-(kIntervalsPerMs * static_cast<uint32_t>(timeoutMs))), isForEver_(timeoutMs == kForEver)
    {
    }

    const LONGLONG *GetNative() const { return isForEver_ ? nullptr : &interval_; }

private:
    static constexpr int kForEver = -1;
    static constexpr LONGLONG kIntervalsPerMs = 10000;

    LONGLONG interval_; ///< takes up to 46 bits; negative means from now on
    bool isForEver_;
};

} // namespace detail
