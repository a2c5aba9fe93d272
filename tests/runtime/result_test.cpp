// Result codes: the layout, the order of the mapping table, the way back, and names.

#include "orv/runtime/result_name.h"

#include "harness/test.h"

TEST_CASE(Win32NumbersBecomeResults)
{
    struct {
        uint32_t severity;
        uint32_t win32Error;
        uint32_t result;
    } const cases[] = {
        {2, 5, 0xA0010058},   {0, 2, 0x2001003D},  {3, 0x12345, 0xC0072345}, {3, 0, 0xC0070000},
        {3, 126, 0xE001003E}, {3, 80, 0xE001004F}, {3, 0x10005, 0xC0070005}, {3, 112, 0xE0010097},
    };
    for (const auto &c : test::Rows(cases)) {
        const auto severity = static_cast<_OrvErrorCodeSeverity>(c.severity);
        CHECK_EQUAL(static_cast<uint32_t>(OrvCreateErrorCodeFromWin32(severity, c.win32Error)), c.result);
    }
    CHECK_EQUAL(OrvCreateErrorCodeFromWin32(0), ORV_S_OK);
    CHECK_EQUAL(OrvCreateErrorCodeFromWin32(87), ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(static_cast<uint32_t>(OrvCreateErrorCodeFromWin32(8)), 0xC0070008u);
}

TEST_CASE(ResultsBecomeWin32Numbers)
{
    constexpr uint32_t kNone = 0xFFFFFFFF;
    struct {
        uint32_t result;
        uint32_t win32Error;
    } const cases[] = {
        {0xE0070005, 5},     {0x0007FFFF, 0xFFFF}, {0x6001004F, 183},   {0xE003003E, 3},
        {0xE0010050, kNone}, {0xC001003E, kNone},  {0xE002003E, kNone}, {0xF007003E, 0x3E},
    };
    for (const auto &c : test::Rows(cases)) {
        uint32_t number = kNone;
        CHECK_EQUAL(OrvCreateWin32CodeFromErrorCode(number, static_cast<OrvResult>(c.result)),
                    c.win32Error != kNone);
        CHECK_EQUAL(number, c.win32Error);
    }
}

TEST_CASE(EveryMappedNumberComesBack)
{
    // Only the two repeated own codes come back as another number.
    for (uint32_t number = 1; number < 0x10000; number++) {
        uint32_t back = 0;
        CHECK(OrvCreateWin32CodeFromErrorCode(back, OrvCreateErrorCodeFromWin32(number)));
        const uint32_t expected = number == 126 ? 3 : number == 80 ? 183 : number;
        if (!CHECK_EQUAL(back, expected))
            return;
    }
}

TEST_CASE(ProgramsConvertStatusesWithoutNtdll)
{
    CHECK_EQUAL(OrvCreateErrorCodeFromNtStatus(0), ORV_S_OK);
    CHECK_EQUAL(OrvCreateErrorCodeFromNtStatus(static_cast<int32_t>(0x80000005)), ORV_E_BUFFER_TOO_SMALL);
    CHECK_EQUAL(OrvCreateErrorCodeFromNtStatus(static_cast<int32_t>(0xC0000022)), ORV_E_ACCESS_DENIED);
    CHECK_EQUAL(OrvCreateErrorCodeFromNtStatus(0x103), 0x400703E5);
}

TEST_CASE(ResultsHaveTheNamesOfTheirEnumerators)
{
    CHECK_TEXT(OrvGetResultName(0), L"ORV_S_OK");
    CHECK_TEXT(OrvGetResultName(static_cast<OrvResult>(0xE0010058)), L"ORV_E_ACCESS_DENIED");
    CHECK_TEXT(OrvGetResultName(0x6001018B), L"ORV_S_END_OF_DATA");
    CHECK_EQUAL(OrvGetResultName(static_cast<OrvResult>(0xE0010059)), nullptr);
    CHECK_EQUAL(OrvGetResultName(0x20010058), nullptr); // the same code with another severity
}

TEST_CASE(ErrnoFamilyIsFixed)
{
    int errnoValue = 77;
    CHECK_EQUAL(OrvCreateErrorCodeFromErrno(), ORV_E_NOT_SUPPORTED);
    CHECK_EQUAL(OrvCreateErrorCodeFromErrno(OrvSeverityError), ORV_E_INVALID_ARGUMENT);
    CHECK(!OrvGetErrnoFromErrorCode(errnoValue, ORV_E_ACCESS_DENIED));
    CHECK_EQUAL(errnoValue, 77);
}
