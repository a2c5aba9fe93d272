// Benchmarks: an operation of ours beside a peer that does the same job, timed in the same process.
//
//     BENCHMARK(MeasureText)
//     {
//         bench::Compare({"measure UTF-16 text", 8, "wcslen"},
//                        [] { bench::Use(OrvGetStringSizeInElements(L"12345678")); },
//                        [] { bench::Use(wcslen(L"12345678")); });
//     }
//
// The two run in turn, many times, and the medians are printed: what disturbs the machine disturbs both. A
// result is shown, never judged. A program runs all benchmarks, or those whose names contain one of its
// arguments.

#pragma once

#include <stdint.h>

namespace bench
{

struct Benchmark {
    const char *name;
    const char *file; ///< its rows stand under the name of that
    void (*run)();
};

/// What a row says about itself.
struct Row {
    const char *what;
    uint32_t size;             ///< shown behind it; 0 when it has none
    const char *peer;          ///< one that begins with "no peer" is shown in the table alone
    const char *how = nullptr; ///< tells the row from another one of the same operation
};

/// Keeps the compiler from dropping the work that a value came from.
template <typename T>
void Use(const T &value)
{
    __asm__ volatile("" : : "r"(&value) : "memory");
}

/// Something to time: calls `work` as often as it is told.
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
