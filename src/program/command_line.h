// A command line, split as the platform's own CommandLineToArgvW splits it.

#pragma once

#include "runtime/heap.h"

namespace detail
{

/// The program's name and the arguments after it. The texts live as long as this object.
class CommandLine
{
public:
    /// Splits `length` characters. An empty line has one argument: the program's name, which is empty.
    CommandLine(const wchar_t *line, uint32_t length);

    /// False when there was no memory for the arguments.
    bool IsValid() const { return count_ != 0; }

    uint32_t Count() const { return count_; }

    /// The array ends with a null pointer.
    wchar_t **Arguments() const { return arguments_.Get(); }

private:
    HeapArray<wchar_t *> arguments_; ///< in one block with the texts
    uint32_t count_ = 0;
};

} // namespace detail
