// The entry of a native process: the parameters come with offsets in place of pointers, and perhaps without a
// command line. Here entries of the test's own bring that about before they call the one of orvstart.lib.

#include "orv/orv.h"

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

void BareEntry()
{
    auto *const process = reinterpret_cast<uint8_t *>(static_cast<uintptr_t>(__readfsdword(0x30)));
    *reinterpret_cast<uint16_t *>(*reinterpret_cast<uint8_t **>(process + 0x10) + 0x40) = 0; // its length
    NtProcessStartup(process);
}

} // extern "C"

#pragma intrinsic(__readfsdword)

int OrvMain(int argc, wchar_t **argv)
{
    bool byImage = false; // whose folder has blanks in its name
    OrvBasMatchWildcardsNoCase(byImage, L"*\\a user *\\first.exe", argv[0]);
    if (argc == 1 && byImage)
        OrvPrint(L"[by the image]");
    else
        OrvPrint(L"[%s]", argc == 2 ? argv[1] : argv[0]);
    return argc;
}
