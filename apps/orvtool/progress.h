// How far work is that takes its time: a line on standard error that starts after a second, changes in place
// and is gone in the end. Only a console gets to see it.

#pragma once

#include "console.h"

namespace orvtool
{

class Progress
{
public:
    /// `total` is the number of bytes to come; 0 when nobody knows.
    Progress(Stream &stream, uint64_t total);
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;
    ~Progress();

    /// So many bytes more are done.
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
