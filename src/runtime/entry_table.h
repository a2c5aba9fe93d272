// How a table of optional entry points is described and filled. The table is a structure: first the module
// handle, then one function pointer for each name, in the order of the names.

#pragma once

#include "nt/nt.h"

namespace detail
{

/// A counted string that refers to a terminated one. A name that is too long to be counted is cut; no
/// exported name is nearly that long.
constexpr ANSI_STRING CountedAnsi(const char *name)
{
    USHORT length = 0;
    while (name[length] && length < 0xFFFE)
        length++;
    return {length, static_cast<USHORT>(length + 1), const_cast<char *>(name)};
}

/// The same at compile time, for the constant tables of names.
consteval ANSI_STRING EntryName(const char *name)
{
    return CountedAnsi(name);
}

/// Looks up `count` names in `module`. The entry of a name that the module does not export becomes null.
void FillEntries(PVOID module, const ANSI_STRING *names, PVOID *entries, uint32_t count);

template <typename Table, uint32_t count>
void FillEntryTable(Table &table, PVOID module, const ANSI_STRING (&names)[count])
{
    static_assert(sizeof(Table) == sizeof(PVOID) * (1 + count), "one entry for each name");
    table.module = module;
    FillEntries(module, names, &table.module + 1, count);
}

} // namespace detail
