// What the load-time entry left behind, read from the loaded DLL as a debugger would.

#include "harness/test.h"
#include "nt/programs.h"

namespace
{

uint32_t At(const uint8_t *module, uint32_t offset)
{
    return *reinterpret_cast<const uint32_t *>(module + offset);
}

} // namespace

TEST_CASE(StackCookieIsDrawnAtLoad)
{
    UNICODE_STRING name;
    RtlInitUnicodeString(&name, L"orvsys.dll");
    PVOID module = nullptr;
    CHECK_EQUAL(LdrGetDllHandle(nullptr, nullptr, &name, &module), 0);
    const auto *const base = static_cast<const uint8_t *>(module);
    constexpr uint32_t kHeadersField = 0x3C;
    constexpr uint32_t kLoadConfigurationField = 0x18 + 0x60 + 10 * 8; // the tenth data directory
    constexpr uint32_t kCookieField = 0x3C;
    const uint32_t configuration = At(base, At(base, kHeadersField) + kLoadConfigurationField);
    CHECK(configuration != 0);
    const uint32_t cookie = *reinterpret_cast<const uint32_t *>(At(base, configuration + kCookieField));
    CHECK(cookie != 0 && cookie != 0xBB40E64E);
}
