// The entry of a native process: the parameters come with offsets in place of pointers. Here an entry of the
// test's own puts them into that state before it calls the one of orvstart.lib.

#include "orv/program/program.h"

extern "C" {

unsigned long __readfsdword(unsigned long offset);
void *__stdcall RtlDeNormalizeProcessParams(void *parameters);
void __stdcall NtProcessStartup(void *process);

void DenormalisedEntry()
{
    auto *const process = reinterpret_cast<uint8_t *>(static_cast<uintptr_t>(__readfsdword(0x30)));
    RtlDeNormalizeProcessParams(*reinterpret_cast<void **>(process + 0x10));
    NtProcessStartup(process);
}

} // extern "C"

#pragma intrinsic(__readfsdword)

int OrvMain(int argc, wchar_t **argv)
{
    OrvPrint(L"[%s]", argc == 2 ? argv[1] : L"");
    return argc;
}
