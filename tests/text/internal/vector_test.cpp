// The vector loops beside the plain ones, on generated texts of every size around a vector and a block of
// them.

#include "text/vector.h"

#include "harness/test.h"
#include "text/texts.h"

TEST_CASE(VectorAndPlainLoopsAgree)
{
    test::ForBothWidths([](auto unit) {
        typedef decltype(unit) T;
        namespace plain = detail::plain;
        test::GuardedPage pageA;
        test::GuardedPage pageB;
        test::Generator generator;
        for (uint32_t round = 0; round < 30000; round++) {
            const uint32_t length = generator.Below(300);
            T *const a = pageA.Place<T>(length + 1, generator.Below(17));
            T *const b = pageB.Place<T>(length + 1, generator.Below(17));
            for (uint32_t i = 0; i < length; i++) {
                const auto letter = static_cast<T>(generator.Below(200) ? 'a' : generator.Below(0x10000));
                test::Set(a, i, letter);
                test::Set(b, i, generator.Below(200) ? letter : T('b'));
            }
            test::Set(a, length, T(0));
            test::Set(b, length, T(0));

            const detail::IsTerminator<T> isTerminator;
            const detail::IsUnitOrTerminator<T> isEnd(T('b'));
            const detail::IsUnit<T> isWanted(T('b'));
            const detail::AreEqual<T> areEqual;
            const uint32_t limit = generator.Below(301);
            const uint32_t from = generator.Below(length + 1);
            const uint32_t size = plain::ScanTerminated(a, UINT32_MAX, isTerminator);
            uint32_t stop = plain::FirstDifference(a, b, 0, length, areEqual);
            stop = stop < size ? stop : size;
            stop = stop < limit ? stop : limit;
            test::Note("round", round);
            if (!CHECK_EQUAL(detail::ScanTerminated(a, UINT32_MAX, isTerminator), size) ||
                !CHECK_EQUAL(detail::ScanTerminated(a, limit, isTerminator),
                             plain::ScanTerminated(a, limit, isTerminator)) ||
                !CHECK_EQUAL(detail::ScanTerminated(b, limit, isEnd),
                             plain::ScanTerminated(b, limit, isEnd)) ||
                !CHECK_EQUAL(detail::FindFirst(b, length, isWanted), plain::FindFirst(b, length, isWanted)) ||
                !CHECK_EQUAL(detail::FindLast(b, length, isWanted), plain::FindLast(b, length, isWanted)) ||
                !CHECK_EQUAL(detail::FirstDifference(a, b, from, length, areEqual),
                             plain::FirstDifference(a, b, from, length, areEqual)) ||
                !CHECK_EQUAL(detail::FirstDifferenceTerminated(a, b, 0, limit, areEqual), stop))
                break;
        }
    });
}

TEST_CASE(MovedBytesAreAllOfThem)
{
    uint8_t *const from = test::GuardedArray<uint8_t>(300);
    uint8_t *const to = test::GuardedArray<uint8_t>(300);
    for (uint32_t i = 0; i < 300; i++)
        from[i] = static_cast<uint8_t>(i * 7 + 1);
    for (uint32_t size = 0; size <= 300; size++) {
        uint8_t *const target = to + 300 - size;
        for (uint32_t i = 0; i < 300; i++)
            to[i] = 0;
        detail::MoveBytes(target, from + 300 - size, size);
        uint32_t right = 0;
        while (right < 300 && to[right] == (right < 300 - size ? 0 : from[right]))
            right++;
        test::Note("size", size);
        CHECK_EQUAL(right, 300u);
    }
    detail::MoveBytes(nullptr, nullptr, 0);
}
