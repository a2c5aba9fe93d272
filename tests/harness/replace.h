// Makes a function of the platform fail, or watches its calls, for all modules of the process at once.

#pragma once

#include "nt/nt.h"

namespace test
{

/// While it lives, an exported function is another one. Not to be used while other threads may call it.
class ReplacedFunction
{
public:
    /// It does nothing but return `result`; its arguments take `argumentBytes`.
    ReplacedFunction(const WCHAR *module, const char *name, ULONG result, USHORT argumentBytes);

    /// It is `replacement`, of the same type.
    template <typename Function>
    ReplacedFunction(const WCHAR *module, const char *name, Function *replacement)
        : ReplacedFunction(module, name)
    {
        JumpTo(reinterpret_cast<uintptr_t>(replacement));
    }

    ReplacedFunction(const ReplacedFunction &) = delete;
    ReplacedFunction &operator=(const ReplacedFunction &) = delete;
    ~ReplacedFunction();

private:
    static constexpr uint32_t kSize = 8;

    ReplacedFunction(const WCHAR *module, const char *name);
    void JumpTo(uintptr_t address);

    uint8_t *code_ = nullptr;
    ULONG protection_ = 0;
    uint8_t original_[kSize];
};

/// The address of an exported function of a module that is loaded.
PVOID FindFunction(const WCHAR *module, const char *name);

} // namespace test
