// A file that a command writes, whole or not at all.

#pragma once

#include "command.h"

#include "nt/nt.h"

namespace orvtool
{

/// A file that is made, or emptied, and removed again unless it is kept.
class OutputFile
{
public:
    OutputFile() = default;
    OutputFile(const OutputFile &) = delete;
    OutputFile &operator=(const OutputFile &) = delete;
    ~OutputFile();

    /// Returns 0 or why the file cannot be made.
    OrvResult Create(const wchar_t *path);

    /// For a stream that ends before the file does.
    HANDLE GetHandle() const { return handle_; }

    /// The file is complete.
    void Keep() { isKept_ = true; }

private:
    HANDLE handle_ = nullptr;
    UNICODE_STRING name_ = {};
    bool isKept_ = false;
};

} // namespace orvtool
