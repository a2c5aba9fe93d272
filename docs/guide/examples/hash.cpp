#include "orv/orv.h"

namespace
{

template <uint32_t size>
void PrintDigest(const wchar_t *what, const uint8_t (&bytes)[size])
{
    OrvUtf16CharHeapBuffer line;
    OrvFormatString(OrvCodePageUtf8, line, L"%s ", what);
    for (const uint8_t byte : bytes) {
        wchar_t digits[3];
        OrvFormatString(OrvCodePageUtf8, digits, 3, nullptr, L"%02x", byte);
        line.Append(digits);
    }
    OrvPrint(L"%s\n", line.GetValue());
}

} // namespace

int OrvMain(int, wchar_t **)
{
    const auto *const message = reinterpret_cast<const uint8_t *>("123456789");

    // Add a message in pieces of any size. The first Get ends it.
    OrvMiniHashSha256 sha256;
    OrvResult result = sha256.Add(message, 4);
    if (OrvSucceeded(result))
        result = sha256.Add(message + 4, 5);
    OrvMiniHashSha256::HashType digest;
    sha256.Get(digest);
    PrintDigest(L"SHA-256", digest.bytes);

    // The same object again: only Initialize starts a new message.
    sha256.Initialize();
    sha256.Get(digest);
    PrintDigest(L"SHA-256 of nothing", digest.bytes);

    // A checksum can continue after Get, and can continue from another one's value.
    OrvMiniHashCrc32 crc;
    crc.Add(message, 4);
    const uint32_t soFar = crc.Get();
    OrvMiniHashCrc32 other;
    other.Reset(soFar);
    other.Add(message + 4, 5);
    OrvPrint(L"CRC-32 %08X\n", other.Get());

    OrvPrint(L"SuperFastHash %08X\n", OrvMiniSuperFastHash::Hash(message, message + 9, 0));
    return OrvFailed(result) ? 1 : 0;
}
