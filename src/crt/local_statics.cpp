// Static objects of functions that are made when the function is first called, once, whichever threads call
// it; and the module's thread-local storage, in which the compilers keep how far each thread has looked.
//
// An object's guard is 0 before it is made, -1 while a thread makes it, and then the number of the object,
// counted up from the lowest number there is. A thread remembers the highest number that it has seen; a guard
// that is not above that costs it one comparison. The names and that arrangement are the compilers'.

#include "nt/nt.h"

namespace
{

constexpr LONG kNotMade = 0;
constexpr LONG kBeingMade = -1;
constexpr LONG kNoObject = INT32_MIN;

volatile LONG objectCount = kNoObject;

} // namespace

extern "C" {

// The block of each thread is a copy of what the linker puts between these two.
#pragma section(".tls", long, read, write)
#pragma section(".tls$ZZZ", long, read, write)
__declspec(allocate(".tls")) extern char _tls_start;
__declspec(allocate(".tls")) char _tls_start = 0;
__declspec(allocate(".tls$ZZZ")) extern char _tls_end;
__declspec(allocate(".tls$ZZZ")) char _tls_end = 0;

/// Which block of the thread's is this module's. The loader says.
ULONG _tls_index = 0;

__declspec(thread) LONG _Init_thread_epoch = kNoObject;

/// IMAGE_TLS_DIRECTORY32. The linker finds it by its name, and is told that it is used.
#pragma comment(linker, "/include:__tls_used")
struct ThreadStorage {
    char *StartAddressOfRawData;
    char *EndAddressOfRawData;
    ULONG *AddressOfIndex;
    PVOID *AddressOfCallBacks;
    ULONG SizeOfZeroFill;
    ULONG Characteristics;
};
extern const ThreadStorage _tls_used;
const ThreadStorage _tls_used = {&_tls_start, &_tls_end, &_tls_index, nullptr, 0, 0};

// Where in the thread's block the array of those blocks is: a number by the name of a symbol.
asm(".globl __tls_array\n"
    "__tls_array = 0x2C");

/// The guard stood above what the thread has seen. When this returns, the guard is -1 if the caller is to
/// make the object. Otherwise the object is there; waiting for the thread that makes it is so rare that it
/// polls.
void __cdecl _Init_thread_header(LONG *guard)
{
    for (;;) {
        const LONG found = __sync_val_compare_and_swap(guard, kNotMade, kBeingMade);
        if (found == kNotMade)
            return;
        if (found != kBeingMade)
            break;
        const LONGLONG oneMillisecond = -10000;
        ZwDelayExecution(false, &oneMillisecond);
    }
    _Init_thread_epoch = objectCount;
}

/// The object is made.
void __cdecl _Init_thread_footer(LONG *guard)
{
    const LONG number = __sync_add_and_fetch(&objectCount, 1);
    __atomic_store_n(guard, number, __ATOMIC_RELEASE);
    _Init_thread_epoch = number;
}

} // extern "C"
