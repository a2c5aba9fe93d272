// The compilers put a pointer to each constructor of a static object into a section whose name begins with
// .CRT$X; the linker sorts those by what follows, so that the marks here stand around them. A constructor
// hands the object's destructor to atexit.

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

/// A loop from one mark to the other, which the compiler takes for unrelated. The linker may leave gaps of
/// zeros.
template <typename T, typename Call>
void ForEach(const T *first, const T *last, Call call)
{
    asm volatile("" : "+r"(first), "+r"(last));
    for (; first < last; first++) {
        if (*first)
            call(*first);
    }
}

/// What atexit was given. Local static objects of several threads may end up here at once, so it is held
/// under the lock of the process block, which needs no start-up of its own.
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
