// Collects the output of one directive (sign, padding, digits, text), so that the sink gets it in one piece.
// Only an output longer than the collecting array reaches the sink in several pieces.

#pragma once

#include "crt/memory.h"
#include "orv/runtime/result.h"

namespace detail
{

/// After the first failure of the sink nothing more is written; Finish returns that failure.
template <typename Sink>
class FormatField
{
public:
    typedef typename Sink::Character T;

    explicit FormatField(Sink &sink) : sink_(sink) {}
    FormatField(const FormatField &) = delete;
    FormatField &operator=(const FormatField &) = delete;

    void Write(const T *characters, uint32_t count)
    {
        if (count > kRoom - used_) {
            Flush();
            if (OrvSucceeded(result_))
                result_ = sink_.Write(characters, count);
            return;
        }
        memcpy(room_ + used_, characters, count * sizeof(T));
        used_ += count;
    }

    void Fill(char character, uint32_t count)
    {
        if (count > kRoom - used_) {
            Flush();
            if (OrvSucceeded(result_))
                result_ = sink_.Fill(static_cast<T>(character), count);
            return;
        }
        for (uint32_t i = 0; i < count; i++)
            room_[used_++] = static_cast<T>(character);
    }

    /// Writes ASCII text.
    void WriteNarrow(const char *text, uint32_t count)
    {
        for (; count; count--) {
            if (used_ == kRoom)
                Flush();
            room_[used_++] = static_cast<T>(*text++);
        }
    }

    /// Writes the rest to the sink. Returns 0 or the first failure.
    OrvResult Finish()
    {
        Flush();
        return result_;
    }

private:
    static constexpr uint32_t kRoom = 128;

    void Flush()
    {
        if (used_ && OrvSucceeded(result_))
            result_ = sink_.Write(room_, used_);
        used_ = 0;
    }

    Sink &sink_;
    OrvResult result_ = ORV_S_OK;
    uint32_t used_ = 0;
    T room_[kRoom];
};

} // namespace detail
