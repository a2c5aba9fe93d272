// Growable strings: exact capacities, the buffer's own text as an argument, and what a refusing heap leaves.

#include "orv/text/heap_buffer.h"

#include "harness/memory.h"
#include "harness/test.h"
#include "orv/runtime/result.h"
#include "orv/text/heap_string.h"
#include "orv/text/string.h"
#include "text/texts.h"

using test::Ascii;
using test::ForBothWidths;

TEST_CASE(CapacitiesAreExact)
{
    ForBothWidths([](auto unit) {
        typedef decltype(unit) T;
        typedef OrvCharHeapBuffer<T> Buffer;
        struct {
            OrvResult (*change)(Buffer &);
            uint32_t capacity;
            const char *text;
        } const cases[] = {
            {[](Buffer &) -> OrvResult { return ORV_S_OK; }, 0, ""},
            {[](Buffer &b) { return b.Append(T('x')); }, 3, "x"},
            {[](Buffer &b) { return b.Append(T('x')) | b.Append(T('y')) | b.Append(T('z')); }, 5, "xyz"},
            {[](Buffer &b) { return b.Append(Ascii<T>("abcde").units, 2); }, 4, "ab"},
            {[](Buffer &b) { return b.Append(Ascii<T>("abcde").units) | b.Append(T('f')); }, 8, "abcdef"},
            {[](Buffer &b) { return b.Append(static_cast<const T *>(nullptr)); }, 2, ""},
            {[](Buffer &b) { return b.Assign(Ascii<T>("abc").units); }, 5, "abc"},
            {[](Buffer &b) { return b.Assign(Buffer()); }, 2, ""},
            {[](Buffer &b) { return b.Assign(Ascii<T>("abc").units) | b.Assign(T('x')); }, 5, "x"},
            {[](Buffer &b) { return b.Assign(Ascii<T>("abc").units) | b.Assign(nullptr, 7); }, 0, ""},
            {[](Buffer &b) { return b.Assign(Ascii<T>("abc").units) | b.Resize(2); }, 5, "ab"},
            {[](Buffer &b) { return b.ReserveElements(9) | b.ReserveElements(3); }, 10, ""},
            {[](Buffer &b) { return b.Assign(Ascii<T>("abc").units) | b.ReserveElements(9); }, 10, "abc"},
            {[](Buffer &b) { return b.Assign(Ascii<T>("abcdef").units) | b.Erase(2, OrvTerminated); }, 8,
             "ab"},
            {[](Buffer &b) { return b.Assign(Ascii<T>("abcdef").units) | b.Erase(1, 2); }, 8, "adef"},
        };
        for (const auto &c : cases) {
            test::Note("case", &c - cases);
            Buffer buffer;
            CHECK_EQUAL(c.change(buffer), ORV_S_OK);
            CHECK_EQUAL(buffer.GetCapacity(), c.capacity);
            CHECK_TEXT(buffer.GetValue(), Ascii<T>(c.text).units);
            CHECK_EQUAL(buffer.IsEmpty(), c.text[0] == 0);
            CHECK_EQUAL(buffer.GetBuffer() != nullptr, c.capacity != 0);
            if (buffer.GetBuffer())
                CHECK_EQUAL(buffer[buffer.GetInternal().length], T(0));
        }
    });
}

TEST_CASE(LengthIsTakenFromTheTerminator)
{
    ForBothWidths([](auto unit) {
        typedef decltype(unit) T;
        OrvCharHeapBuffer<T> buffer;
        CHECK_EQUAL(buffer.Resize(OrvTerminated), ORV_E_INVALID_DATA);
        CHECK_EQUAL(buffer.ReserveElements(4), ORV_S_OK);
        buffer.Element(0) = 'o';
        buffer.Element(1) = 'k';
        buffer.Element(2) = 0;
        CHECK_EQUAL(buffer.Resize(OrvTerminated), ORV_S_OK);
        CHECK_TEXT(buffer.GetValue(), Ascii<T>("ok").units);
        CHECK_EQUAL(buffer.GetInternal().length, 2u);
        for (uint32_t i = 0; i < 5; i++)
            buffer[i] = 'x';
        CHECK_EQUAL(buffer.Resize(OrvTerminated), ORV_E_INVALID_DATA);
        CHECK_EQUAL(buffer.GetInternal().length, 2u);
    });
}

TEST_CASE(OwnTextCanBeGiven)
{
    ForBothWidths([](auto unit) {
        typedef decltype(unit) T;
        typedef OrvCharHeapBuffer<T> Buffer;
        struct {
            OrvResult (*change)(Buffer &);
            const char *text;
        } const cases[] = {
            {[](Buffer &b) { return b.Append(b); }, "abcdefabcdef"},
            {[](Buffer &b) { return b.Append(b.GetInternal()); }, "abcdefabcdef"},
            {[](Buffer &b) { return b.Append(b.GetBuffer() + 1, 3); }, "abcdefbcd"},
            {[](Buffer &b) { return b.Append(b[5]); }, "abcdeff"},
            {[](Buffer &b) { return b.Assign(b); }, "abcdef"},
            {[](Buffer &b) { return b.Assign(b.GetInternal()); }, "abcdef"},
            {[](Buffer &b) { return b.Assign(b.GetBuffer() + 2, 3); }, "cde"},
            {[](Buffer &b) { return b.Assign(b[3]); }, "d"},
        };
        const uint32_t reserves[] = {6, 40}; // the array is replaced, or it is not
        for (const auto &c : cases) {
            for (const uint32_t reserved : reserves) {
                test::Note("case", &c - cases);
                Buffer buffer;
                CHECK_EQUAL(buffer.ReserveElements(reserved), ORV_S_OK);
                OrvCopyString(buffer.GetBuffer(), buffer.GetCapacity(), Ascii<T>("abcdef").units);
                CHECK_EQUAL(buffer.Resize(OrvTerminated) | c.change(buffer), ORV_S_OK);
                CHECK_TEXT(buffer.GetValue(), Ascii<T>(c.text).units);
            }
        }
    });
}

TEST_CASE(FailureLeavesTheText)
{
    ForBothWidths([](auto unit) {
        typedef decltype(unit) T;
        typedef OrvCharHeapBuffer<T> Buffer;
        Buffer buffer;
        CHECK_EQUAL(buffer.Assign(Ascii<T>("abc").units), ORV_S_OK);
        T *const array = buffer.GetBuffer();
        static const Ascii<T> longText("abcdefgh");
        // More than 32 bits count, or than the heap can give: never a small array by a sum that wrapped.
        OrvResult (*const endless[])(Buffer &) = {
            [](Buffer &b) { return b.Resize(0xFFFFFFFE); },
            [](Buffer &b) { return b.Resize(0xFFFFFFFD); },
            [](Buffer &b) { return b.Resize(0x7FFFFFFF); },
            [](Buffer &b) { return b.ReserveElements(0xFFFFFFFF); },
            [](Buffer &b) { return b.ReserveElements(0xFFFFFFFE); },
            [](Buffer &b) { return b.Append(longText.units, 0xFFFFFFFC); },
            [](Buffer &b) { return b.Append(longText.units, 0xFFFFFFFE); },
            [](Buffer &b) { return b.Assign(longText.units, 0xFFFFFFFE); },
        };
        for (const auto &change : endless) {
            test::Note("case", &change - endless);
            CHECK_EQUAL(change(buffer), ORV_E_OUT_OF_MEMORY);
            CHECK_EQUAL(buffer.GetBuffer(), array);
            CHECK_EQUAL(buffer.GetCapacity(), 5u);
            CHECK_TEXT(buffer.GetValue(), Ascii<T>("abc").units);
        }
        const test::RefusingHeap heap;
        Buffer fresh;
        CHECK_EQUAL(fresh.Erase(0, 0), ORV_E_OUT_OF_MEMORY);
    });
}

TEST_CASE(SwapExchangesEverything)
{
    OrvUtf16CharHeapBuffer a;
    OrvUtf16CharHeapBuffer b;
    CHECK_EQUAL(a.Assign(L"first"), ORV_S_OK);
    wchar_t *const array = a.GetBuffer();
    a.Swap(b);
    CHECK_EQUAL(b.GetBuffer(), array);
    CHECK_TEXT(b.GetValue(), L"first");
    CHECK_EQUAL(a.GetBuffer(), nullptr);
    CHECK_EQUAL(a.GetCapacity() + a.GetInternal().length, 0u);
}

TEST_CASE(ReferenceGrowsItsBuffer)
{
    OrvUtf16CharHeapBuffer buffer;
    CHECK_EQUAL(buffer.ReserveElements(4), ORV_S_OK);
    const OrvMutableStringRefBase2<wchar_t> reference = OrvMakeMutableStringRef(buffer);
    CHECK_EQUAL(reference.operations->kind, 1u);
    CHECK_EQUAL(reference.operations->exchange, nullptr);
    CHECK_EQUAL(reference.view.characters, nullptr); // there is an array, but it holds no characters
    CHECK_EQUAL(reference.view.length, 0u);

    CHECK_EQUAL(reference.operations->resize(reference.view, 9, reference.owner), ORV_S_OK);
    CHECK_EQUAL(reference.view.characters, buffer.GetBuffer());
    CHECK_EQUAL(reference.view.length, 9u);
    CHECK_EQUAL(buffer.GetCapacity(), 11u);
    CHECK_EQUAL(reference.operations->reserve(reference.view.characters, 20, reference.owner), ORV_S_OK);
    CHECK_EQUAL(reference.view.characters, buffer.GetBuffer());
    CHECK_EQUAL(buffer.GetCapacity(), 21u);

    CHECK_EQUAL(OrvMakeMutableStringRef(buffer).view.characters, buffer.GetBuffer());
}

TEST_CASE(ContainersForTheInterfaces)
{
    OrvUtf16HeapString string;
    OrvByteHeapBuffer bytes;
    CHECK_TEXT(string.GetCharacters(), L"");
    CHECK_EQUAL(string.Set(L"text", 3), ORV_S_OK);
    CHECK_EQUAL(bytes.Resize(3), ORV_S_OK);
    bytes.GetElements()[2] = 7;
    CHECK_TEXT(string.GetCharacters(), L"tex");
    CHECK_EQUAL(string.GetLength(), 3u);
    CHECK(bytes.GetSize() == 3 && bytes.GetElements()[2] == 7);
    CHECK_EQUAL(string.Set(nullptr, 0), ORV_S_OK);
    CHECK(string.GetBuffer().IsEmpty());
}
