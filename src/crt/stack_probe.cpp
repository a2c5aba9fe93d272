// What Microsoft's compiler calls for memory on the stack (_alloca) that is aligned. eax is the size; it
// grows so that the new top of the stack is aligned, then ntdll.dll's own probe takes it, which touches every
// page on the way and moves the stack. A size that the rest makes too large for 32 bits becomes the largest
// one, which no stack has.

extern "C" {

void __cdecl _chkstk();

__declspec(naked) void __cdecl _alloca_probe_16()
{
    __asm {
        push ecx
        lea ecx, [esp + 8] // the stack as the caller has it
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
