// The sources of entropy: the kernel's generator through its device, the processor's instruction, and a mix
// of clocks, counters, ids and addresses.

#include "runtime/entropy.h"

#include "crt/memory.h"
#include "nt/counted_string.h"
#include "nt/nt.h"
#include "nt/teb.h"
#include "runtime/cpu.h"
#include "runtime/native_handle.h"

#include <immintrin.h>

namespace detail
{

namespace
{

/// Stores pieces of 64 bits until the bytes are full.
template <typename Next>
bool Fill(void *bytes, uint32_t count, Next next)
{
    auto *at = static_cast<uint8_t *>(bytes);
    while (count) {
        uint64_t piece = 0;
        if (!next(piece))
            return false;
        const uint32_t size = count < sizeof piece ? count : sizeof piece;
        memcpy(at, &piece, size);
        at += size;
        count -= size;
    }
    return true;
}

/// Spreads every bit over all others, reversibly (the finalizer of SplitMix64).
uint64_t Scramble(uint64_t value)
{
    value = (value ^ value >> 30) * 0xBF58476D1CE4E5B9;
    value = (value ^ value >> 27) * 0x94D049BB133111EB;
    return value ^ value >> 31;
}

constexpr uint64_t kGoldenRatio = 0x9E3779B97F4A7C15;

/// Takes in numbers one after another, then gives out as many as the caller wants.
class Mixer
{
public:
    void Add(uint64_t value) { state_ = Scramble(state_ + kGoldenRatio ^ value); }
    void Add(const volatile void *address) { Add(reinterpret_cast<uintptr_t>(address)); }

    uint64_t Next()
    {
        state_ += kGoldenRatio;
        return Scramble(state_);
    }

private:
    uint64_t state_ = 0;
};

__attribute__((target("rdrnd"))) bool ReadProcessorWord(uint32_t &word)
{
    // The processor's store may be empty for a moment when many threads ask at once.
    for (uint32_t attempts = 10; attempts; attempts--) {
        if (_rdrand32_step(&word))
            return true;
    }
    return false;
}

} // namespace

bool FillFromKernel(void *bytes, uint32_t count)
{
    UNICODE_STRING name = CountedLiteral(L"\\Device\\KsecDD");
    const OBJECT_ATTRIBUTES attributes = {sizeof attributes,    nullptr, &name,
                                          OBJ_CASE_INSENSITIVE, nullptr, nullptr};
    NativeHandle device;
    IO_STATUS_BLOCK status = {};
    if (!NT_SUCCESS(ZwOpenFile(device.Receive(), FILE_READ_DATA | SYNCHRONIZE, &attributes, &status,
                               FILE_SHARE_ALL, FILE_SYNCHRONOUS_IO_NONALERT)))
        return false;
    return NT_SUCCESS(ZwDeviceIoControlFile(device.Get(), nullptr, nullptr, nullptr, &status, IOCTL_KSEC_RNG,
                                            bytes, count, bytes, count));
}

bool FillFromProcessor(void *bytes, uint32_t count)
{
    if (!CpuHas(kCpuRdrand))
        return false;
    uint32_t last = 0;
    return Fill(bytes, count, [&last](uint64_t &piece) {
        uint32_t low = 0;
        uint32_t high = 0;
        // Some faulty processors report success and give the same word for ever.
        if (!ReadProcessorWord(low) || !ReadProcessorWord(high) || low == high || low == last)
            return false;
        last = high;
        piece = uint64_t(high) << 32 | low;
        return true;
    });
}

void FillFromCircumstances(void *bytes, uint32_t count)
{
    static uint32_t calls; // distinguishes two calls within one tick of every clock
    const uint32_t call = __atomic_add_fetch(&calls, 1, __ATOMIC_RELAXED);

    const TEB *const teb = NtCurrentTeb();
    const volatile KUSER_SHARED_DATA &shared = SharedUserData();
    LONGLONG counter = 0;
    ZwQueryPerformanceCounter(&counter, nullptr);
    Mixer mixer;
    mixer.Add(static_cast<uint64_t>(counter));
    mixer.Add(__rdtsc());
    mixer.Add(ReadSharedTime(shared.SystemTime));
    mixer.Add(ReadSharedTime(shared.InterruptTime));
    mixer.Add(teb->ClientId.UniqueProcess);
    mixer.Add(teb->ClientId.UniqueThread);
    mixer.Add(uint64_t(call));
    mixer.Add(teb);
    mixer.Add(teb->ProcessEnvironmentBlock);
    mixer.Add(teb->ProcessEnvironmentBlock->ProcessHeap);
    mixer.Add(&calls);
    mixer.Add(&counter);
    mixer.Add(__rdtsc());
    Fill(bytes, count, [&mixer](uint64_t &piece) {
        piece = mixer.Next();
        return true;
    });
}

void FillWithEntropy(void *bytes, uint32_t count)
{
    if (!FillFromKernel(bytes, count) && !FillFromProcessor(bytes, count))
        FillFromCircumstances(bytes, count);
}

} // namespace detail
