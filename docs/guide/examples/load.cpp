// Loads orvsys.dll at run time with the native loader: this program does not import the DLL.

#include "orv/program/program.h"

extern "C" {

struct CountedText {
    uint16_t length; // both in bytes
    uint16_t capacity;
    const void *characters;
};

long __stdcall LdrLoadDll(const wchar_t *searchPath, unsigned long *flags, const CountedText *name,
                          void **module);
long __stdcall LdrGetProcedureAddress(void *module, const CountedText *name, unsigned long ordinal,
                                      void **address);
long __stdcall LdrUnloadDll(void *module);

} // extern "C"

int OrvMain(int, wchar_t **)
{
    // The loader searches for a name without a path as for any module: first in the program's folder.
    const wchar_t dll[] = L"orvsys.dll";
    const CountedText dllName = {sizeof dll - sizeof *dll, sizeof dll, dll};
    // The decorated name: unsigned int OrvGetStringSizeInElements(const wchar_t *).
    const char function[] = "?OrvGetStringSizeInElements@@YAIPB_W@Z";
    const CountedText functionName = {sizeof function - 1, sizeof function, function};

    int exitCode = 1;
    void *module = nullptr;
    void *address = nullptr;
    if (LdrLoadDll(nullptr, nullptr, &dllName, &module) >= 0) { // start-up has run when this returns
        if (LdrGetProcedureAddress(module, &functionName, 0, &address) >= 0) {
            const auto measure = reinterpret_cast<unsigned int(__cdecl *)(const wchar_t *)>(address);
            exitCode = measure(dll) == 10 ? 0 : 2;
        }
        LdrUnloadDll(module);
    }
    return exitCode;
}
