// A file that exists while a test runs.

#pragma once

#include "harness/test.h"
#include "nt/programs.h"

constexpr wchar_t kTestFolder[] = L"C:\\windows\\temp\\";

class TestFile
{
public:
    /// `path` is a full DOS path.
    explicit TestFile(const wchar_t *path)
    {
        CHECK(RtlDosPathNameToNtPathName_U(path, &name_, nullptr, nullptr));
        HANDLE handle = nullptr;
        IO_STATUS_BLOCK status = {};
        CHECK_EQUAL(NtCreateFile(&handle, FILE_GENERIC_READ, &attributes_, &status, nullptr, 0,
                                 FILE_SHARE_ALL, FILE_OPEN_IF, FILE_SYNCHRONOUS_IO_NONALERT, nullptr, 0),
                    0);
        ZwClose(handle);
    }
    TestFile(const TestFile &) = delete;
    TestFile &operator=(const TestFile &) = delete;
    ~TestFile()
    {
        CHECK_EQUAL(NtDeleteFile(&attributes_), 0);
        RtlFreeUnicodeString(&name_);
    }

private:
    UNICODE_STRING name_ = {};
    OBJECT_ATTRIBUTES attributes_ = {sizeof(OBJECT_ATTRIBUTES), nullptr, &name_,
                                     OBJ_CASE_INSENSITIVE,      nullptr, nullptr};
};
