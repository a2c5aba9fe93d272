// Prints the line of progress. The line always has the same width, so that it covers the previous one.

#include "progress.h"

#include "orv/time/clock.h"

namespace orvtool
{

namespace
{

constexpr uint64_t kFirstMs = 1000;
constexpr uint64_t kIntervalMs = 200;
constexpr uint64_t kMegabyte = 1000000;
constexpr uint32_t kWidth = 15;

} // namespace

Progress::Progress(Stream &stream, uint64_t total)
    : stream_(stream), total_(total), nextShow_(OrvGetTimestamp64() + kFirstMs)
{
}

Progress::~Progress()
{
    if (!isShown_)
        return;
    stream_.Print(L"\r%*s\r", kWidth, L"");
    stream_.Flush();
}

void Progress::Advance(uint32_t bytes)
{
    done_ += bytes;
    if (stream_.IsConsole() && OrvGetTimestamp64() >= nextShow_)
        Show();
}

void Progress::Show()
{
    // A file that grows meanwhile never shows more than 100 %.
    const uint64_t percent = done_ < total_ ? done_ * 100 / total_ : 100;
    if (total_)
        stream_.Print(L"\r%3I64u%% %6I64u MB ", percent, done_ / kMegabyte);
    else
        stream_.Print(L"\r     %6I64u MB ", done_ / kMegabyte);
    stream_.Flush();
    isShown_ = true;
    nextShow_ = OrvGetTimestamp64() + kIntervalMs;
}

} // namespace orvtool
