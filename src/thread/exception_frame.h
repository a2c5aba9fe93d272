// A structured exception frame without a C runtime: a record on the stack in the chain of the thread's block.
//
// The dispatcher calls a handler only if the image lists it. Each handler is therefore a function with C
// linkage and is named to the assembler by ".safeseh" in the file that defines it.

#pragma once

#include "nt/nt.h"
#include "nt/teb.h"

namespace detail
{

/// Until the scope ends, the handler is the first in the thread's chain of handlers.
class ExceptionFrame
{
public:
    explicit ExceptionFrame(decltype(EXCEPTION_REGISTRATION_RECORD::Handler) handler)
        : record_{NtCurrentTeb()->ExceptionList, handler}
    {
        NtCurrentTeb()->ExceptionList = &record_;
    }
    ExceptionFrame(const ExceptionFrame &) = delete;
    ExceptionFrame &operator=(const ExceptionFrame &) = delete;
    ~ExceptionFrame() { NtCurrentTeb()->ExceptionList = record_.Next; }

private:
    EXCEPTION_REGISTRATION_RECORD record_;
};

} // namespace detail
