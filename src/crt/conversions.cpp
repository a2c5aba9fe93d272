// Conversions between floating point and 64-bit integers that Microsoft's compiler calls in 32-bit code;
// clang converts inline. They have calling conventions of their own: floating point is passed and returned in
// xmm0 (in st(0) for the two oldest), an integer is passed in edx:ecx and returned in edx:eax. They change no
// register but those of the result. For a number that is out of range the result is unspecified.

// The functions are pure assembly: the compiler adds no prologue and no epilogue.
#define ORV_CONVERSION extern "C" __declspec(naked) void __cdecl

/// Pops st(0) and returns its integral part in edx:eax. The control word is set to round towards zero for it.
ORV_CONVERSION _ftol2()
{
    __asm {
        sub esp, 16
        fnstcw word ptr [esp + 8]
        movzx eax, word ptr [esp + 8]
        or eax, 0x0C00
        mov dword ptr [esp + 12], eax
        fldcw word ptr [esp + 12]
        fistp qword ptr [esp]
        fldcw word ptr [esp + 8]
        mov eax, dword ptr [esp]
        mov edx, dword ptr [esp + 4]
        add esp, 16
        ret
    }
}

/// The same, called when only 32 bits of the result are used.
ORV_CONVERSION _ftol2_sse()
{
    __asm {
        jmp _ftol2
    }
}

/// double to int64_t.
ORV_CONVERSION _dtol3()
{
    __asm {
        sub esp, 8
        movsd qword ptr [esp], xmm0
        fld qword ptr [esp]
        add esp, 8
        jmp _ftol2
    }
}

/// float to int64_t.
ORV_CONVERSION _ftol3()
{
    __asm {
        sub esp, 4
        movss dword ptr [esp], xmm0
        fld dword ptr [esp]
        add esp, 4
        jmp _ftol2
    }
}

/// st(0) to uint64_t. For numbers from 2^63 on: 2^63 is subtracted, the rest converted, and the highest bit
/// set in the result.
ORV_CONVERSION OrvUnsignedFromTop()
{
    __asm {
        push 0x5F000000 // 2^63 as a float
        fld dword ptr [esp]
        add esp, 4
        fucom st(1)
        fnstsw ax
        test ah, 0x41 // neither flag is set: 2^63 is above the number
        jz below
        fsubp st(1), st
        call _ftol2
        xor edx, 0x80000000
        ret
    below:
        fstp st
        jmp _ftol2
    }
}

/// double to uint64_t.
ORV_CONVERSION _dtoul3()
{
    __asm {
        sub esp, 8
        movsd qword ptr [esp], xmm0
        fld qword ptr [esp]
        add esp, 8
        jmp OrvUnsignedFromTop
    }
}

/// float to uint64_t.
ORV_CONVERSION _ftoul3()
{
    __asm {
        sub esp, 4
        movss dword ptr [esp], xmm0
        fld dword ptr [esp]
        add esp, 4
        jmp OrvUnsignedFromTop
    }
}

/// double to uint32_t, which is the low half of int64_t.
ORV_CONVERSION _dtoui3()
{
    __asm {
        jmp _dtol3
    }
}

/// float to uint32_t.
ORV_CONVERSION _ftoui3()
{
    __asm {
        jmp _ftol3
    }
}

/// int64_t to double. Loading is exact, storing rounds.
ORV_CONVERSION _ltod3()
{
    __asm {
        push edx
        push ecx
        fild qword ptr [esp]
        fstp qword ptr [esp]
        movsd xmm0, qword ptr [esp]
        add esp, 8
        ret
    }
}

/// uint64_t to double. Loaded as signed, a number from 2^63 on is too small by 2^64, which is added. The sum
/// is rounded once: by the addition or by the store, depending on the precision that the coprocessor is set
/// to.
ORV_CONVERSION _ultod3()
{
    __asm {
        push edx
        push ecx
        fild qword ptr [esp]
        test edx, edx
        jns store
        mov dword ptr [esp], 0x5F800000 // 2^64 as a float
        fadd dword ptr [esp]
    store:
        fstp qword ptr [esp]
        movsd xmm0, qword ptr [esp]
        add esp, 8
        ret
    }
}
