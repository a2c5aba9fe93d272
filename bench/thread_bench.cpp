// A thread from start to end, compared with the bare native calls, and loading the DLL, compared with a DLL that
// does nothing.

#include "bench.h"

#include "harness/replace.h"
#include "nt/programs.h"
#include "orv/orv.h"

namespace
{

struct Idle : OrvBasThread {
    int Run() override { return 0; }
};

ULONG NTAPI EndAtOnce(PVOID)
{
    RtlExitUserThread(0);
    return 0;
}

/// Loads and unloads the module, which nothing else uses.
void LoadAndUnload(const WCHAR *name)
{
    UNICODE_STRING counted;
    PVOID module = nullptr;
    RtlInitUnicodeString(&counted, name);
    if (LdrLoadDll(nullptr, nullptr, &counted, &module) < 0)
        __builtin_trap();
    LdrUnloadDll(module);
}

} // namespace

BENCHMARK(ThreadStartToEnd)
{
    Idle thread;
    const auto ours = [&thread] {
        thread.StartThread(OrvPriorityNormal, nullptr, {}, nullptr);
        thread.WaitForThreadToStop(-1);
    };
    const auto peer = [] {
        HANDLE handle = nullptr;
        RtlCreateUserThread(NtCurrentProcess(), nullptr, false, 0, 0x100000, 0x1000, EndAtOnce, nullptr,
                            &handle, nullptr);
        ZwWaitForSingleObject(handle, false, nullptr);
        ZwClose(handle);
    };
    bench::Compare({"thread, start to end", 0, "RtlCreateUserThread"}, ours, peer);
}

BENCHMARK(ThreadLocalValue)
{
    OrvTls key;
    key.Create();
    const auto platform =
        reinterpret_cast<PVOID(NTAPI *)(ULONG)>(test::FindFunction(L"kernel32.dll", "TlsGetValue"));
    bench::Compare(
        {"thread-local value", 0, "TlsGetValue"}, [&key] { bench::Use(key.GetValue()); },
        [&key, platform] { bench::Use(platform(key.GetIndex())); });
}

BENCHMARK(LoadOfTheDll)
{
    bench::Compare(
        {"load and unload the DLL", 0, "a DLL that does nothing"}, [] { LoadAndUnload(L"orvsys_copy.dll"); },
        [] { LoadAndUnload(L"idle.dll"); });
}
