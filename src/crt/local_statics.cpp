// Static objects of functions, each constructed once, at the first call of its function, by whichever thread
// calls first; and the module's thread-local storage, in which each thread keeps the number described below.
//
// An object's guard is 0 before construction, -1 while a thread constructs the object, and afterwards the
// object's number, counted up from INT32_MIN. Each thread remembers the highest number that it has seen; a
// guard that is not above it costs the thread one comparison. The compilers prescribe the names and this
// arrangement.

#include "nt/nt.h"

namespace
{

constexpr LONG kNotMade = 0;
constexpr LONG kBeingMade = -1;
constexpr LONG kNoObject = INT32_MIN;

volatile LONG objectCount = kNoObject;

} // namespace

extern "C" {

// Each thread's block is a copy of what the linker places between these two.
#pragma section(".tls", long, read, write)
#pragma section(".tls$ZZZ", long, read, write)
__declspec(allocate(".tls")) extern char _tls_start;
__declspec(allocate(".tls")) char _tls_start = 0;
__declspec(allocate(".tls$ZZZ")) extern char _tls_end;
__declspec(allocate(".tls$ZZZ")) char _tls_end = 0;

/// The index of this module's block among the thread's blocks. The loader sets it.
ULONG _tls_index = 0;

__declspec(thread) LONG _Init_thread_epoch = kNoObject;

/// IMAGE_TLS_DIRECTORY32. The linker finds it by its name; the pragma makes the linker keep it.
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

// The offset, within the thread environment block, of the pointer to the array of these blocks. The compilers
// refer to it as an absolute symbol.
asm(".globl __tls_array\n"
    "__tls_array = 0x2C");

/// Called when the guard is above the highest number that the thread has seen. On return the guard is -1 if
/// the caller must construct the object; otherwise the object is constructed. A thread that waits for another
/// one's construction polls, because that is very rare.
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

/// Called when the object is constructed: publishes its number.
void __cdecl _Init_thread_footer(LONG *guard)
{
    const LONG number = __sync_add_and_fetch(&objectCount, 1);
    __atomic_store_n(guard, number, __ATOMIC_RELEASE);
    _Init_thread_epoch = number;
}

} // extern "C"
