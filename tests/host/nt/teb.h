// Stands in for src/nt/teb.h on the host: a process block with a heap handle, and nothing behind it.

#pragma once

#include "nt/nt.h"

extern PEB hostPeb;

inline PEB *NtCurrentPeb()
{
    return &hostPeb;
}
