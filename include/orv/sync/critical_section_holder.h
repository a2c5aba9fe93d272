// The scope guard of critical sections: it is inside at most one, until its scope ends.

#pragma once

#include "orv/base.h"
#include "orv/runtime/result.h"
#include "orv/sync/critical_section.h"

/// The critical section must exist as long as it is held. Only the thread that is inside uses the holder.
class OrvBasCriticalSectionHolder
{
public:
    /// Enters the critical section, waiting as long as necessary. When that fails, or when `section` is null,
    /// the holder holds nothing.
    explicit OrvBasCriticalSectionHolder(OrvBasCriticalSection *section) { Lock(section); }
    OrvBasCriticalSectionHolder(const OrvBasCriticalSectionHolder &) = delete;
    OrvBasCriticalSectionHolder &operator=(const OrvBasCriticalSectionHolder &) = delete;

    /// Release.
    ~OrvBasCriticalSectionHolder() { Release(); }

    /// Enters a critical section as the constructor does, and only then leaves the one that was held before,
    /// even when entering failed. After a failure the holder holds nothing.
    ///
    /// Returns what OrvBasCriticalSection::Acquire returns: ORV_E_INVALID_STATE for one that was not created;
    /// ORV_E_INVALID_ARGUMENT for null.
    OrvResult Lock(OrvBasCriticalSection *section)
    {
        const OrvResult result = section ? section->Acquire() : ORV_E_INVALID_ARGUMENT;
        Release();
        if (OrvSucceeded(result))
            section_ = section;
        return result;
    }

    /// Leaves the critical section that is held, if any.
    void Release()
    {
        if (section_)
            section_->Release();
        section_ = nullptr;
    }

    /// Holds nothing from now on, without leaving: the calling thread must leave the critical section itself.
    void DetachWithoutReleasing() { section_ = nullptr; }

    /// Whether a critical section is held.
    bool IsHeld() const { return section_ != nullptr; }

private:
    OrvBasCriticalSection *section_ = nullptr;
};

static_assert(sizeof(OrvBasCriticalSectionHolder) == 4, "fixed layout");
