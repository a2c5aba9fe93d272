// What the waits for one object and for several share: finding the end of a chain of forwards, and the
// platform's form of a time limit.

#pragma once

#include "nt/nt.h"
#include "orv/sync/waitable.h"

namespace detail
{

/// The waitable at the end of the chain that starts with `waitable`. Null when `waitable` or a forward in the
/// chain is null.
inline OrvBasWaitable *FollowForwards(OrvBasWaitable *waitable)
{
    while (waitable && waitable->GetResourceType() == OrvBasWaitableForward)
        waitable = waitable->GetForward();
    return waitable;
}

/// A time limit in milliseconds from now, in the platform's form. The number is read as unsigned, except that
/// -1 is for ever.
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

    LONGLONG interval_; ///< takes up to 46 bits; negative means relative to now
    bool isForEver_;
};

} // namespace detail
