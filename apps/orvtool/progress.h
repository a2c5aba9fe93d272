// The progress of long work: a line on standard error that appears after a second, changes in place and is
// removed at the end. It is shown only on a console.

#pragma once

#include "console.h"

namespace orvtool
{

class Progress
{
public:
    /// `total` is the number of bytes to process; 0 when it is not known.
    Progress(Stream &stream, uint64_t total);
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;
    ~Progress();

    /// Adds the number of bytes that were processed since the last call.
    void Advance(uint32_t bytes);

private:
    void Show();

    Stream &stream_;
    uint64_t total_;
    uint64_t done_ = 0;
    uint64_t nextShow_; ///< in milliseconds since the system started
    bool isShown_ = false;
};

} // namespace orvtool
