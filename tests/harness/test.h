// Tests: a case is a function, a check is an expression, and a failure names its file, line and values.
//
//     TEST_CASE(EmptyTextHasNoLength)
//     {
//         CHECK_EQUAL(OrvGetStringSizeInElements(""), 0u);
//     }
//
// A program runs all of its cases, or those whose names contain one of its arguments, goes on after a failed
// check, and ends with the line "N passed, N failed". A number as the first argument makes it run each case
// that many times, or until it fails: "100 UnderLoad" tests the locks for longer. The harness uses nothing of
// the library, so that a broken library cannot hide its own faults.
//
// A case that places arrays at an unmapped page (harness/memory.h) runs twice: first the arrays end at the page,
// then they start there.

#pragma once

#include <stdint.h>

namespace test
{

struct Case {
    const char *name;
    void (*run)();
};

/// One side of a comparison, as it is shown when the check fails.
struct Shown {
    enum Kind { kSigned, kUnsigned, kPointer, kBytes, kWide } kind;
    uint64_t number;
    const void *text;
};

inline Shown Show(const char *text)
{
    return {Shown::kBytes, 0, text};
}
inline Shown Show(const wchar_t *text)
{
    return {Shown::kWide, 0, text};
}
template <typename T>
Shown Show(T *pointer)
{
    return {Shown::kPointer, reinterpret_cast<uintptr_t>(pointer), nullptr};
}
inline Shown Show(decltype(nullptr))
{
    return {Shown::kPointer, 0, nullptr};
}

template <typename T>
Shown Show(T value)
{
    const bool isSigned = static_cast<T>(-1) < static_cast<T>(1) && static_cast<T>(-1) != static_cast<T>(1);
    return {isSigned ? Shown::kSigned : Shown::kUnsigned, static_cast<uint64_t>(value), nullptr};
}

void Report(const char *file, int line, const char *expression);
void Report(const char *file, int line, const char *expression, Shown actual, Shown expected);

/// Names what the checks that follow are about, for loops over many values; it is shown with a failure.
void Note(const char *what, uint64_t value);

/// The rows of a table: `for (const auto &c : Rows(cases))` goes through them, and notes each one's number.
template <typename Row, uint32_t count>
struct Rows {
    explicit Rows(const Row (&table)[count]) : rows(table) {}

    struct Iterator {
        const Row &operator*() const { return Note("row", number), rows[number]; }
        void operator++() { number++; }
        bool operator!=(const Iterator &other) const { return number != other.number; }

        const Row *rows;
        uint32_t number;
    };
    Iterator begin() const { return {rows, 0}; }
    Iterator end() const { return {rows, count}; }

    const Row *rows;
};

template <typename A, typename B>
bool CheckEqual(const char *file, int line, const char *expression, const A &actual, const B &expected)
{
    if (actual == expected)
        return true;
    Report(file, line, expression, Show(actual), Show(expected));
    return false;
}

template <typename T>
bool CheckText(const char *file, int line, const char *expression, const T *actual, const T *expected)
{
    uint32_t i = 0;
    while (actual && actual[i] == expected[i]) {
        if (!actual[i++])
            return true;
    }
    Report(file, line, expression, Show(actual), Show(expected));
    return false;
}

} // namespace test

// A section of pointers between two markers holds the cases, so that no constructor has to run before the
// entry.
#if defined(ORV_HOST)
#define TEST_SECTION __attribute__((section("orv_tests"), used))
#else
#pragma section(".orvt$m", read)
#define TEST_SECTION __declspec(allocate(".orvt$m")) __attribute__((used))
#endif

#define TEST_CASE(name)                                                                                      \
    static void name();                                                                                      \
    static const test::Case name##Case = {#name, name};                                                      \
    TEST_SECTION static const test::Case *const name##Entry = &name##Case;                                   \
    static void name()

/// The expression holds.
#define CHECK(expression) ((expression) ? true : (test::Report(__FILE__, __LINE__, #expression), false))

/// Two numbers or pointers are equal.
#define CHECK_EQUAL(actual, expected) test::CheckEqual(__FILE__, __LINE__, #actual, actual, expected)

/// Two terminated texts of one width are equal.
#define CHECK_TEXT(actual, expected) test::CheckText(__FILE__, __LINE__, #actual, actual, expected)
