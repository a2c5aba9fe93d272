// A program of a user's: everything that a compiler calls behind the programmer's back, and what orvstart.lib
// runs before OrvMain and after it. It is built as a user builds it, with the compiler's defaults, with and
// without optimisation. It prints a line for each fault, and a last one when static objects are destroyed in
// order.

#include "orv/orv.h"

// Conversions. clang makes them in place; Microsoft's compiler calls these, by registers that vectorcall has,
// too.

extern "C" {

int64_t __vectorcall DoubleToInt64(double value) asm("__dtol3");
uint64_t __vectorcall DoubleToUint64(double value) asm("__dtoul3");
uint32_t __vectorcall DoubleToUint32(double value) asm("__dtoui3");
int64_t __vectorcall FloatToInt64(float value) asm("__ftol3");
uint64_t __vectorcall FloatToUint64(float value) asm("__ftoul3");
uint32_t __vectorcall FloatToUint32(float value) asm("__ftoui3");
double __vectorcall Int64ToDouble(uint32_t low, uint32_t high) asm("__ltod3");
double __vectorcall Uint64ToDouble(uint32_t low, uint32_t high) asm("__ultod3");

} // extern "C"

namespace
{

int faults = 0;

void Check(bool holds, int line)
{
    if (holds)
        return;
    faults++;
    OrvPrint(L"line %d: does not hold\n", line);
}

#define CHECK(condition) Check(condition, __LINE__)

// A value that the compiler cannot foresee.
template <typename T>
T Opaque(T value)
{
    volatile T copy = value;
    return copy;
}

// Static objects: made in the order of the file before OrvMain, ended in the opposite one after it.

wchar_t lifetimes[16];
int lifetimeCount = 0;

class Tracked
{
public:
    explicit Tracked(wchar_t name) : name_(name) { lifetimes[lifetimeCount++] = name; }
    ~Tracked()
    {
        lifetimes[lifetimeCount++] = static_cast<wchar_t>(name_ - L'a' + L'A');
        if (name_ == L'a')
            OrvPrint(L"%s, %d faults\n", lifetimes, faults);
    }

private:
    wchar_t name_;
};

Tracked first(L'a');
Tracked second(L'b');

Tracked &Local()
{
    static Tracked object(L'c');
    return object;
}

// A local static value, which several threads want at once.

long volatile madeCount;

int MakeSlowly()
{
    _InterlockedIncrement(&madeCount);
    OrvBasEvent never;
    never.Create(OrvBasEvent::ManualReset, false);
    never.Wait(50);
    return 7;
}

int SlowValue()
{
    static const int value = MakeSlowly();
    return value;
}

class Reader final : public OrvBasThread
{
protected:
    int Run() override { return SlowValue(); }
};

void CheckLocalStatics()
{
    CHECK(&Local() == &Local());
    Reader readers[3];
    for (Reader &reader : readers)
        CHECK(OrvSucceeded(reader.StartThread(OrvPriorityNormal, nullptr, {}, nullptr)));
    for (Reader &reader : readers) {
        int exitCode = 0;
        CHECK(OrvSucceeded(reader.WaitForThreadToStop(10000)) &&
              OrvSucceeded(reader.GetThreadExitCode(exitCode)));
        CHECK(exitCode == 7);
    }
    CHECK(SlowValue() == 7 && madeCount == 1);
}

thread_local int perThread = 5;

// 64-bit arithmetic.

void CheckIntegers()
{
    const int64_t a = Opaque<int64_t>(-1234567890123456789);
    const int64_t b = Opaque<int64_t>(987654321);
    const uint64_t u = Opaque<uint64_t>(0xFEDCBA9876543210);
    CHECK(a / b == -1249999988 && a % b == -725308641);
    CHECK(u / static_cast<uint64_t>(b) == 18594318026u && u % static_cast<uint64_t>(b) == 65974374u);
    CHECK(b * Opaque<int64_t>(-3) == -2962962963);
    CHECK(a << Opaque(2) == -4938271560493827156 && a >> Opaque(40) == -1122833 && u >> Opaque(60) == 15);
}

/// Converts what the coprocessor holds.
int64_t TopToInt64(double value)
{
    int64_t result;
    asm("fldl %1\n\tcall __ftol2" : "=A"(result) : "m"(value) : "ecx", "cc");
    return result;
}

void CheckConversions()
{
    const double doubles[] = {0, 0.75, -0.75, 2147483648.5, -9007199254740993.0, 9223372036854774784.0};
    for (const double value : doubles) {
        const auto converted = static_cast<int64_t>(Opaque(value));
        CHECK(DoubleToInt64(value) == converted && TopToInt64(value) == converted);
        CHECK(value < 0 || DoubleToUint64(value) == static_cast<uint64_t>(converted));
        const auto narrow = static_cast<float>(value);
        if (value < 1e18)
            CHECK(FloatToInt64(narrow) == static_cast<int64_t>(Opaque(narrow)));
    }
    CHECK(DoubleToUint64(9223372036854775808.0) == 0x8000000000000000);
    CHECK(DoubleToUint64(18446744073709549568.0) == 0xFFFFFFFFFFFFF800);
    CHECK(FloatToUint64(9223373136366403584.0f) == 0x8000010000000000);
    CHECK(DoubleToUint32(4294967295.9) == 0xFFFFFFFF && FloatToUint32(4294967040.0f) == 0xFFFFFF00);

    const uint64_t integers[] = {1, 0x7FFFFFFFFFFFFFFF, 0x8000000000000401, 0xFFFFFFFFFFFFFBFF};
    for (const uint64_t value : integers) {
        const auto low = static_cast<uint32_t>(value);
        const auto high = static_cast<uint32_t>(value >> 32);
        // Rounded once: what is lost is at most half of what the last bit is worth.
        CHECK(Uint64ToDouble(low, high) == static_cast<double>(Opaque(value)));
        CHECK(Int64ToDouble(low, high) == static_cast<double>(static_cast<int64_t>(Opaque(value))));
    }
}

// Frames of more than a page, arrays with a cookie, copies and comparisons of blocks.

struct Block {
    uint8_t bytes[100000];
};

uint32_t SumOfBigFrame(uint32_t seed)
{
    Block block;
    for (uint32_t i = 0; i < sizeof block.bytes; i++)
        block.bytes[i] = static_cast<uint8_t>(Opaque(seed) + i);
    const Block copy = block;
    uint32_t sum = 0;
    for (const uint8_t byte : copy.bytes)
        sum += byte;
    return sum;
}

/// Asks for `size` bytes of stack by a probe, and says how the top of the stack is aligned then.
#define PROBED_ALIGNMENT(probe, size, result)                                                                \
    asm volatile("movl %%esp, %%esi\n\tcall " probe "\n\tmovl %%esp, %0\n\tmovl %%esi, %%esp"                \
                 : "=a"(result)                                                                              \
                 : "a"(size)                                                                                 \
                 : "esi", "ecx", "memory", "cc")

void CheckStack()
{
    CHECK(SumOfBigFrame(1) == 12742480);
    for (uint32_t size = 1; size < 40; size++) {
        uint32_t top = 0;
        PROBED_ALIGNMENT("__alloca_probe_16", size, top);
        CHECK(top % 16 == 0);
        PROBED_ALIGNMENT("__alloca_probe_8", size, top);
        CHECK(top % 8 == 0);
    }
}

// Polymorphic objects on the heap, one and many.

class Shape
{
public:
    virtual ~Shape() { alive--; }
    static int alive;
    int corners[20] = {4};

protected:
    Shape() { alive++; }
};
int Shape::alive = 0;

class Square final : public Shape
{
};

void CheckObjects()
{
    const Shape *const one = new Square;
    const Square *const many = new Square[Opaque(3)];
    CHECK(one->corners[0] == 4 && many[2].corners[0] == 4 && Shape::alive == 4);
    delete one;
    delete[] many;
    CHECK(Shape::alive == 0);
}

} // namespace

int OrvMain(int argc, wchar_t **argv)
{
    CHECK(lifetimeCount == 2);
    CHECK(argc == 4 && !argv[4]);
    CHECK(argc == 4 && OrvCompareString(argv[1], L"two words") == 0);
    CHECK(argc == 4 && OrvCompareString(argv[2], L"") == 0 && OrvCompareString(argv[3], L"\\\"") == 0);
    CHECK(Opaque(perThread) == 5);
    CheckLocalStatics();
    CheckIntegers();
    CheckConversions();
    CheckStack();
    CheckObjects();
    return faults ? 1 : 42;
}
