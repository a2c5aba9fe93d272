// The runner of the benchmarks: pairs of runs, their medians, and the table.

#include "bench.h"

#include "harness/program.h"
#include "nt/programs.h"

namespace
{

#pragma section(".orvb$a", read)
#pragma section(".orvb$z", read)
__declspec(allocate(".orvb$a")) const bench::Benchmark *const kBefore = nullptr;
__declspec(allocate(".orvb$z")) const bench::Benchmark *const kAfter = nullptr;

constexpr uint32_t kPairs = 41;
constexpr uint64_t kSampleTicks =
    150000; // far more than reading the counter takes, far less than a time slice
constexpr uint32_t kColumns[] = {48, 12, 12, 10};

const bench::Benchmark *current;
uint64_t ticksPerMicrosecond;

uint64_t Ticks()
{
    return __builtin_ia32_rdtsc();
}

/// Compares the time-stamp counter with the system's clock for a fiftieth of a second.
uint64_t MeasureTicksPerMicrosecond()
{
    LONGLONG start = 0;
    LONGLONG now = 0;
    LONGLONG frequency = 1;
    NtQueryPerformanceCounter(&start, &frequency);
    const uint64_t ticks = Ticks();
    do
        NtQueryPerformanceCounter(&now, nullptr);
    while (now - start < frequency / 50);
    return (Ticks() - ticks) * static_cast<uint64_t>(frequency) / static_cast<uint64_t>(now - start) /
           1000000;
}

uint64_t TicksOf(const bench::Timed &timed, uint32_t times)
{
    const uint64_t start = Ticks();
    timed.repeat(timed.work, times);
    return Ticks() - start;
}

/// How many times to repeat the work so that one sample is long enough.
uint32_t TimesForASample(const bench::Timed &timed)
{
    uint32_t times = 1;
    while (TicksOf(timed, times) < kSampleTicks && times < 1u << 30)
        times *= 2;
    return times;
}

uint64_t Median(uint64_t (&values)[kPairs])
{
    for (uint32_t i = 1; i < kPairs; i++) {
        const uint64_t value = values[i];
        uint32_t at = i;
        for (; at > 0 && values[at - 1] > value; at--)
            values[at] = values[at - 1];
        values[at] = value;
    }
    return values[kPairs / 2];
}

/// Builds a line of text.
class Line
{
public:
    void Put(const char *text)
    {
        while (*text && length_ < sizeof text_ - 2)
            text_[length_++] = *text++;
    }

    void PutNumber(uint64_t number)
    {
        char digits[24];
        char *first = digits + sizeof digits;
        *--first = 0;
        do
            *--first = static_cast<char>('0' + number % 10);
        while (number /= 10);
        Put(first);
    }

    /// `hundredths` with one decimal, or with two below ten.
    void PutHundredths(uint64_t hundredths)
    {
        const bool fine = hundredths < 1000;
        if (!fine)
            hundredths = (hundredths + 5) / 10 * 10;
        PutNumber(hundredths / 100);
        Put(".");
        PutNumber(hundredths / 10 % 10);
        if (fine)
            PutNumber(hundredths % 10);
    }

    void EndColumn(uint32_t column)
    {
        columnEnd_ += kColumns[column];
        while (length_ < columnEnd_)
            Put(" ");
    }

    void Print()
    {
        text_[length_] = '\n';
        text_[length_ + 1] = 0;
        program::Print(text_);
    }

private:
    char text_[160];
    uint32_t length_ = 0;
    uint32_t columnEnd_ = 0;
};

void PrintHeading()
{
    Line line;
    const char *const titles[] = {"what", "ours, ns", "peer, ns", "peer/ours"};
    for (uint32_t i = 0; i < 4; i++) {
        line.Put(titles[i]);
        line.EndColumn(i);
    }
    line.Put("peer");
    line.Print();
}

/// The heading of a file's rows: its bare name, without "_bench.cpp".
void PrintGroup(const char *file)
{
    constexpr char kEnding[] = "_bench.cpp";
    const char *name = file;
    const char *last = file;
    for (; *last; last++) {
        if (*last == '/' || *last == '\\')
            name = last + 1;
    }
    last -= sizeof kEnding - 1;
    Line line;
    line.Put("\n");
    for (char character[2] = {}; name < last; name++) {
        character[0] = *name == '_' ? ' ' : *name;
        line.Put(character);
    }
    line.Print();
}

bool Selected(const char *name, uint32_t count, const char *const *parts)
{
    for (uint32_t i = 0; i < count; i++) {
        for (const char *at = name; *at; at++) {
            uint32_t same = 0;
            while (parts[i][same] && at[same] == parts[i][same])
                same++;
            if (!parts[i][same])
                return true;
        }
    }
    return count == 0;
}

} // namespace

void bench::Compare(const Row &row, const Timed &ours, const Timed &peer)
{
    const uint32_t ourTimes = TimesForASample(ours);
    const uint32_t peerTimes = TimesForASample(peer);
    uint64_t our[kPairs];
    uint64_t theirs[kPairs];
    uint64_t ratios[kPairs];
    for (uint32_t i = 0; i < kPairs; i++) {
        const auto timeOurs = [&] { our[i] = TicksOf(ours, ourTimes); };
        if (i % 2 == 0)
            timeOurs();
        theirs[i] = TicksOf(peer, peerTimes);
        if (i % 2 != 0)
            timeOurs();
        ratios[i] = theirs[i] * ourTimes * 100 / (our[i] * peerTimes);
    }

    Line line;
    line.Put(row.what);
    if (row.how) {
        line.Put(", ");
        line.Put(row.how);
    }
    if (row.size) {
        line.Put(", ");
        line.PutNumber(row.size);
    }
    line.EndColumn(0);
    line.PutHundredths(Median(our) * 100000 / ourTimes / ticksPerMicrosecond);
    line.EndColumn(1);
    line.PutHundredths(Median(theirs) * 100000 / peerTimes / ticksPerMicrosecond);
    line.EndColumn(2);
    line.PutHundredths(Median(ratios));
    line.EndColumn(3);
    line.Put(row.peer);
    line.Print();
}

const char *program::CurrentWork()
{
    return current ? current->name : "start-up";
}

int program::Main(uint32_t count, const char *const *arguments)
{
    ticksPerMicrosecond = MeasureTicksPerMicrosecond();
    PrintHeading();
    for (const bench::Benchmark *const *entry = &kBefore; entry != &kAfter; entry++) {
        if (!*entry || !Selected((*entry)->name, count, arguments)) // a linker may pad the section
            continue;
        if (!current || current->file != (*entry)->file)
            PrintGroup((*entry)->file);
        current = *entry;
        current->run();
    }
    return 0;
}
