// What the fuzz targets share.

#pragma once

#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>

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
    ExactArray(const ExactArray &) = delete;
    ExactArray &operator=(const ExactArray &) = delete;
    ~ExactArray() { free(elements_); }

    operator T *() { return elements_; }

private:
    T *elements_;
};

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);
