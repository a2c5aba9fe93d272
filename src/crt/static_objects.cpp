// Runs the constructors and destructors of static objects.
//
// The compilers put a pointer to each constructor into a section whose name begins with .CRT$X. The linker
// sorts these sections by the rest of the name, so that the marks below enclose all of the pointers. A
// constructor registers the object's destructor with atexit.

#include "crt/static_objects.h"

#include "nt/nt.h"
#include "runtime/heap.h"

namespace
{

using Function = void(__cdecl *)();
using FallibleFunction = int(__cdecl *)();

#pragma section(".CRT$XIA", long, read)
#pragma section(".CRT$XIZ", long, read)
#pragma section(".CRT$XCA", long, read)
#pragma section(".CRT$XCZ", long, read)
__declspec(allocate(".CRT$XIA")) const FallibleFunction kFirstOfC = nullptr;
__declspec(allocate(".CRT$XIZ")) const FallibleFunction kLastOfC = nullptr;
__declspec(allocate(".CRT$XCA")) const Function kFirstOfCpp = nullptr;
__declspec(allocate(".CRT$XCZ")) const Function kLastOfCpp = nullptr;

/// Calls each pointer between two marks. The compiler takes the marks for unrelated objects; the asm hides
/// from it where they come from. The linker may leave gaps of zeros between the pointers.
template <typename T, typename Call>
void ForEach(const T *first, const T *last, Call call)
{
    asm volatile("" : "+r"(first), "+r"(last));
    for (; first < last; first++) {
        if (*first)
            call(*first);
    }
}

/// The functions registered with atexit. Several threads may register at once (for local static objects), so
/// the lock of the process block protects the list: that lock needs no initialisation.
struct ExitFunctions {
    Function *functions;
    uint32_t count;
    uint32_t capacity;
};
ExitFunctions exitFunctions;

Function TakeLast()
{
    RtlAcquirePebLock();
    const Function function = exitFunctions.count ? exitFunctions.functions[--exitFunctions.count] : nullptr;
    RtlReleasePebLock();
    return function;
}

} // namespace

extern "C" int __cdecl atexit(Function function)
{
    constexpr uint32_t kFirstCapacity = 32;
    RtlAcquirePebLock();
    if (exitFunctions.count == exitFunctions.capacity) {
        const uint32_t capacity = exitFunctions.capacity ? exitFunctions.capacity * 2 : kFirstCapacity;
        void *const grown = detail::ReallocateBytes(exitFunctions.functions, capacity * sizeof(Function));
        if (grown) {
            exitFunctions.functions = static_cast<Function *>(grown);
            exitFunctions.capacity = capacity;
        }
    }
    const bool fits = exitFunctions.count < exitFunctions.capacity;
    if (fits)
        exitFunctions.functions[exitFunctions.count++] = function;
    RtlReleasePebLock();
    return fits ? 0 : -1;
}

void detail::ConstructStaticObjects()
{
    ForEach(&kFirstOfC, &kLastOfC, [](FallibleFunction function) { function(); });
    ForEach(&kFirstOfCpp, &kLastOfCpp, [](Function function) { function(); });
}

void detail::DestroyStaticObjects()
{
    while (const Function function = TakeLast())
        function();
}
