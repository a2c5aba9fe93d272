// What the fuzz targets share.

#pragma once

#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

/// Ends the run, with the input that led here, when a property does not hold.
#define REQUIRE(condition)                                                                                   \
    do {                                                                                                     \
        if (!(condition)) {                                                                                  \
            fprintf(stderr, "%s:%d: %s does not hold\n", __FILE__, __LINE__, #condition);                    \
            abort();                                                                                         \
        }                                                                                                    \
    } while (false)

/// An array on the heap, exactly as large as it says, so that the sanitizer sees every step beyond it.
template <typename T>
class ExactArray
{
public:
    explicit ExactArray(size_t count) : elements_(static_cast<T *>(malloc(count ? count * sizeof(T) : 1))) {}
    ExactArray(const T *source, size_t count) : ExactArray(count)
    {
        memcpy(elements_, source, count * sizeof(T));
    }
    ExactArray(const ExactArray &) = delete;
    ExactArray &operator=(const ExactArray &) = delete;
    ~ExactArray() { free(elements_); }

    operator T *() { return elements_; }

private:
    T *elements_;
};

/// Takes an input apart from its start. Behind its end there are zeros.
class Input
{
public:
    Input(const uint8_t *data, size_t size) : next_(data), left_(static_cast<uint32_t>(size)) {}

    uint32_t Left() const { return left_; }

    uint8_t Byte()
    {
        if (left_ == 0)
            return 0;
        left_--;
        return *next_++;
    }

    uint32_t Below(uint32_t limit) { return (Byte() << 8 | Byte()) % limit; }

    const uint8_t *Bytes(uint32_t count)
    {
        const uint8_t *const bytes = next_;
        next_ += count;
        left_ -= count;
        return bytes;
    }

private:
    const uint8_t *next_;
    uint32_t left_;
};

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);
