// Native statuses become result codes in one function.

#include "runtime/status.h"

#include "harness/test.h"
#include "orv/runtime/result.h"

TEST_CASE(StatusesBecomeResults)
{
    struct {
        uint32_t status;
        uint32_t result;
    } const cases[] = {
        {0, 0},
        {0x80000005, 0xE0010044}, // the one warning that is a failure to produce the text
        {0xC0000022, 0xE0010058}, // access denied
        {0xC0000017, 0xC0070008}, // no memory: carried, not the library's own
        {0x80000006, 0xA0010046}, // no more files: a warning stays a warning
        {0x00000103, 0x400703E5}, // pending: a success status that was not accepted becomes informational
    };
    for (const auto &c : test::Rows(cases)) {
        CHECK_EQUAL(static_cast<uint32_t>(detail::ResultFromStatus(static_cast<NTSTATUS>(c.status))),
                    c.result);
    }
    CHECK_EQUAL(detail::ResultFromCall(STATUS_PENDING), ORV_S_OK);
    CHECK_EQUAL(detail::ResultFromCall(STATUS_INVALID_HANDLE), ORV_E_INVALID_HANDLE);
}
