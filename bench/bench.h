// Benchmarks: an operation of ours and a peer that does the same job, timed in the same process.
//
//     BENCHMARK(MeasureText)
//     {
//         bench::Compare({"measure UTF-16 text", 8, "wcslen"},
//                        [] { bench::Use(OrvGetStringSizeInElements(L"12345678")); },
//                        [] { bench::Use(wcslen(L"12345678")); });
//     }
//
// The two run in turn, many times, and the medians are printed, since a disturbance of the machine affects both. A
// result is only printed; it never makes anything fail. A program runs all benchmarks, or those whose names contain
// one of its arguments.

#pragma once

#include <stdint.h>

namespace bench
{

struct Benchmark {
    const char *name;
    const char *file; ///< its name is the heading of the rows
    void (*run)();
};

/// The description of a row.
struct Row {
    const char *what;
    uint32_t size;             ///< shown after the name; 0 if there is none
    const char *peer;          ///< a row whose peer begins with "no peer" is only in the table
    const char *how = nullptr; ///< distinguishes rows of the same operation
};

/// Keeps the compiler from removing the work that computes a value.
template <typename T>
void Use(const T &value)
{
    __asm__ volatile("" : : "r"(&value) : "memory");
}

/// Something to time: calls `work` a given number of times.
struct Timed {
    void (*repeat)(const void *work, uint32_t times);
    const void *work;
};

template <typename Work>
Timed MakeTimed(const Work &work)
{
    return {[](const void *opaque, uint32_t times) {
                for (const Work &repeated = *static_cast<const Work *>(opaque); times; times--)
                    repeated();
            },
            &work};
}

/// Times both and prints a row.
void Compare(const Row &row, const Timed &ours, const Timed &peer);

template <typename Ours, typename Peer>
void Compare(const Row &row, const Ours &ours, const Peer &peer)
{
    Compare(row, MakeTimed(ours), MakeTimed(peer));
}

} // namespace bench

// A section of pointers between two markers, as for the tests.
#pragma section(".orvb$m", read)

#define BENCHMARK(name)                                                                                      \
    static void name();                                                                                      \
    static const bench::Benchmark name##Benchmark = {#name, __FILE__, name};                                 \
    __declspec(allocate(".orvb$m")) __attribute__((used)) static const bench::Benchmark *const name##Entry = \
        &name##Benchmark;                                                                                    \
    static void name()
