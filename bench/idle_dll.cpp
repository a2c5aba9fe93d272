// A DLL that imports ntdll.dll and does nothing: it shows what loading any DLL costs.

#include "nt/nt.h"

/// Imported, never called.
extern "C" __declspec(dllexport) void *OrvIdleImport()
{
    return reinterpret_cast<void *>(&ZwClose);
}

extern "C" BOOL NTAPI OrvIdleEntry(PVOID, ULONG, PVOID)
{
    return true;
}
