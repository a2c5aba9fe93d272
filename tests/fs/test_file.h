// Files that tests make and delete.

#pragma once

#include "harness/test.h"
#include "nt/programs.h"

constexpr wchar_t kTestFolder[] = L"C:\\windows\\temp\\";

/// The native name of a file, of which a full DOS path is given.
class TestFileName
{
public:
    explicit TestFileName(const wchar_t *path)
    {
        CHECK(RtlDosPathNameToNtPathName_U(path, &name_, nullptr, nullptr));
    }
    TestFileName(const TestFileName &) = delete;
    TestFileName &operator=(const TestFileName &) = delete;
    ~TestFileName() { RtlFreeUnicodeString(&name_); }

    NTSTATUS Delete() const { return NtDeleteFile(&attributes_); }

protected:
    UNICODE_STRING name_ = {};
    OBJECT_ATTRIBUTES attributes_ = {sizeof(OBJECT_ATTRIBUTES), nullptr, &name_,
                                     OBJ_CASE_INSENSITIVE,      nullptr, nullptr};
};

/// A file that exists while a test runs.
class TestFile : public TestFileName
{
public:
    explicit TestFile(const wchar_t *path) : TestFileName(path)
    {
        HANDLE handle = nullptr;
        IO_STATUS_BLOCK status = {};
        CHECK_EQUAL(NtCreateFile(&handle, FILE_GENERIC_READ, &attributes_, &status, nullptr, 0,
                                 FILE_SHARE_ALL, FILE_OPEN_IF, FILE_SYNCHRONOUS_IO_NONALERT, nullptr, 0),
                    0);
        ZwClose(handle);
    }
    ~TestFile() { CHECK_EQUAL(Delete(), 0); }
};
