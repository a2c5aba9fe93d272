// Outputs that take their target's place: what the shell's tests of the tool cannot bring about.

#include "orvtool/output_file.h"

#include "fs/test_file.h"
#include "harness/replace.h"
#include "harness/usage.h"
#include "runtime/entropy.h"

namespace
{

constexpr wchar_t kTarget[] = L"C:\\windows\\temp\\orv-output-file-test.txt";
constexpr wchar_t kTaken[] = L"C:\\windows\\temp\\orv-0000000000000007.tmp";
constexpr wchar_t kNext[] = L"C:\\windows\\temp\\orv-0000000000000008.tmp";

uint64_t number; ///< in the name of the next temporary file

class OpenFile : public TestFileName
{
public:
    OpenFile(const wchar_t *path, ACCESS_MASK access) : TestFileName(path)
    {
        IO_STATUS_BLOCK status = {};
        outcome = NtCreateFile(&handle, access | SYNCHRONIZE, &attributes_, &status, nullptr, 0,
                               FILE_SHARE_READ | FILE_SHARE_WRITE, FILE_OPEN, FILE_SYNCHRONOUS_IO_NONALERT,
                               nullptr, 0);
    }
    ~OpenFile()
    {
        if (handle)
            ZwClose(handle);
    }

    FILE_BASIC_INFORMATION Attributes() const
    {
        FILE_BASIC_INFORMATION attributes = {};
        IO_STATUS_BLOCK status;
        CHECK_EQUAL(
            NtQueryInformationFile(handle, &status, &attributes, sizeof attributes, FileBasicInformation), 0);
        return attributes;
    }

    HANDLE handle = nullptr;
    NTSTATUS outcome = 0;
};

uint64_t SizeOf(const wchar_t *path)
{
    const OpenFile file(path, FILE_GENERIC_READ);
    FILE_STANDARD_INFORMATION information = {};
    IO_STATUS_BLOCK status;
    CHECK_EQUAL(NtQueryInformationFile(file.handle, &status, &information, sizeof information,
                                       FileStandardInformation),
                0);
    return static_cast<uint64_t>(information.EndOfFile);
}

/// Starts an output of three bytes.
void Start(orvtool::OutputFile &output)
{
    number = 7;
    CHECK_EQUAL(output.Create(kTarget), ORV_S_OK);
    IO_STATUS_BLOCK status;
    CHECK_EQUAL(
        NtWriteFile(output.GetHandle(), nullptr, nullptr, nullptr, &status, "new", 3, nullptr, nullptr), 0);
}

} // namespace

// In place of the random numbers, names that are known.
void detail::FillWithEntropy(void *bytes, uint32_t count)
{
    memmove(bytes, &number, count);
    number++;
}

TEST_CASE(TemporaryFilesTakeNoNameThatIsTaken)
{
    const TestFile target(kTarget);
    const TestFile taken(kTaken);
    {
        orvtool::OutputFile output;
        Start(output);
        CHECK_EQUAL(number, uint64_t{9});
        CHECK_EQUAL(SizeOf(kTarget), uint64_t{0}); // nothing is seen of it yet
        CHECK_EQUAL(output.Replace(), ORV_S_OK);
    }
    CHECK_EQUAL(SizeOf(kTarget), uint64_t{3});
    CHECK_EQUAL(SizeOf(kTaken), uint64_t{0});
    CHECK_EQUAL(OpenFile(kNext, FILE_GENERIC_READ).outcome, STATUS_OBJECT_NAME_NOT_FOUND);
}

TEST_CASE(AttributesOutliveTheReplacement)
{
    const TestFile target(kTarget);
    FILE_BASIC_INFORMATION before = {};
    {
        const OpenFile file(kTarget, FILE_READ_ATTRIBUTES | FILE_WRITE_ATTRIBUTES);
        const FILE_BASIC_INFORMATION wanted = {0, 0, 0, 0, FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM};
        IO_STATUS_BLOCK status;
        CHECK_EQUAL(NtSetInformationFile(file.handle, &status, &wanted, sizeof wanted, FileBasicInformation),
                    0);
        before = file.Attributes();
    }
    {
        orvtool::OutputFile output;
        Start(output);
        CHECK_EQUAL(output.Replace(), ORV_S_OK);
    }
    CHECK(before.FileAttributes & FILE_ATTRIBUTE_HIDDEN);
    CHECK_EQUAL(OpenFile(kTarget, FILE_READ_ATTRIBUTES).Attributes().FileAttributes, before.FileAttributes);
    CHECK_EQUAL(SizeOf(kTarget), uint64_t{3});
}

TEST_CASE(WhatIsRefusedLeavesTheTargetAndNothingBesideIt)
{
    const TestFile target(kTarget);
    const auto refuse = [](const char *name, USHORT argumentBytes) {
        const test::Usage before = test::CountUsage();
        {
            orvtool::OutputFile output;
            Start(output);
            const test::ReplacedFunction refused(L"ntdll.dll", name, static_cast<ULONG>(STATUS_ACCESS_DENIED),
                                                 argumentBytes);
            CHECK_EQUAL(output.Replace(), ORV_E_ACCESS_DENIED);
        }
        CHECK_USAGE(before);
        CHECK_EQUAL(SizeOf(kTarget), uint64_t{0});
        CHECK_EQUAL(OpenFile(kTaken, FILE_GENERIC_READ).outcome, STATUS_OBJECT_NAME_NOT_FOUND);
    };
    refuse("NtFlushBuffersFile", 8);
    refuse("NtSetInformationFile", 20);
    {
        orvtool::OutputFile output;
        Start(output);
        const OpenFile user(kTarget, FILE_GENERIC_READ); // who has opened a file lets no other take its place
        CHECK(OrvFailed(output.Replace()));
    }
    CHECK_EQUAL(SizeOf(kTarget), uint64_t{0});
    CHECK_EQUAL(OpenFile(kTaken, FILE_GENERIC_READ).outcome, STATUS_OBJECT_NAME_NOT_FOUND);
}
