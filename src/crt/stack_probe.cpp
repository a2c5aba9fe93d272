// Microsoft's compiler calls these functions to allocate aligned memory on the stack (_alloca). eax is the
// size. It is increased so that the new top of the stack is aligned; then ntdll.dll's own probe touches every
// page on the way and moves the stack pointer. If the increase overflows 32 bits, the size becomes the
// largest one, for which no stack has room.

extern "C" {

void __cdecl _chkstk();

__declspec(naked) void __cdecl _alloca_probe_16()
{
    __asm {
        push ecx
        lea ecx, [esp + 8] // the caller's stack pointer
        sub ecx, eax
        and ecx, 15
        add eax, ecx
        sbb ecx, ecx
        or eax, ecx
        pop ecx
        jmp _chkstk
    }
}

__declspec(naked) void __cdecl _alloca_probe_8()
{
    __asm {
        push ecx
        lea ecx, [esp + 8]
        sub ecx, eax
        and ecx, 7
        add eax, ecx
        sbb ecx, ecx
        or eax, ecx
        pop ecx
        jmp _chkstk
    }
}

} // extern "C"
