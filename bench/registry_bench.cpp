// The registry, compared with the bare native calls.

#include "bench.h"

#include "nt/programs.h"
#include "orv/orv.h"

namespace
{

constexpr wchar_t kKey[] = L"Software\\OrvRegistryBench";
constexpr uint32_t kValues = 10000;

HANDLE nativeKey;

/// Enumerates with one call for each value, into a buffer that is large enough for all.
void EnumerateNatively()
{
    uint8_t bytes[600];
    ULONG needed = 0;
    ULONG index = 0;
    while (ZwEnumerateValueKey(nativeKey, index, KeyValueBasicInformation, bytes, sizeof bytes, &needed) >= 0)
        index++;
    bench::Use(index);
}

} // namespace

BENCHMARK(RegistryValues)
{
    OrvBasWinRegistryHandle key(OrvRegistryCurrentUser);
    if (OrvFailed(key.OpenOrCreateKey(kKey)) ||
        OrvFailed(key.CreateHandleInternal(nativeKey, OrvBasWinRegistryHandle::Name(), OrvRegistryRead)))
        return;
    key.SetDWordValue(1, L"number");
    bench::Compare(
        {"registry: query a number", 4, "ZwQueryValueKey"},
        [&] {
            uint32_t value = 0;
            bench::Use(key.GetDWordValue(value, L"number"));
        },
        [&] {
            UNICODE_STRING name;
            RtlInitUnicodeString(&name, L"number");
            uint8_t bytes[64];
            ULONG needed = 0;
            bench::Use(
                ZwQueryValueKey(nativeKey, &name, KeyValuePartialInformation, bytes, sizeof bytes, &needed));
        });
    key.DeleteValue(L"number");

    OrvUtf16CharHeapBuffer name;
    for (uint32_t i = 0; i < kValues; i++) {
        OrvFormatString(OrvMakeMutableStringRef(name), L"value %u", i);
        key.SetDWordValue(i, name.GetValue());
    }
    bench::Compare(
        {"registry: list values", kValues, "ZwEnumerateValueKey"},
        [&] {
            OrvBasWinRegistryEnumerator values;
            key.GetValuesEnumeratorImpl(values);
            OrvStringzRefBase<wchar_t> found(nullptr);
            bool more = true;
            while (more)
                bench::Use(values.Next(found, more));
        },
        [] { EnumerateNatively(); });
    ZwClose(nativeKey);
    key.DeleteKey(L"", true);
}
