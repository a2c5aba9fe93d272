// Every class against published vectors and against digests that other implementations gave for the same
// messages, and the life cycle of each.

#include "harness/memory.h"
#include "harness/test.h"
#include "hash/messages.h"
#include "orv/hash/crc32.h"
#include "orv/hash/md4.h"
#include "orv/hash/md5.h"
#include "orv/hash/sha1.h"
#include "orv/hash/sha256.h"
#include "orv/hash/sha512.h"
#include "orv/hash/super_fast_hash.h"
#include "orv/runtime/result.h"
#include "orv/text/string.h"

namespace
{

using test::Hexadecimal;
using test::kMessage;
using test::kMessageBytes;

/// The digest of one message, given in pieces of `piece` bytes. One overload for each shape of class.
template <typename Hash>
typename Hash::HashType DigestOf(const uint8_t *data, uint32_t length, uint32_t piece)
{
    Hash hash;
    typename Hash::HashType digest;
    for (uint32_t i = 0; i < length; i += piece)
        hash.Add(data + i, length - i < piece ? length - i : piece);
    hash.Get(digest);
    return digest;
}

struct Md4 {
    struct HashType {
        uint8_t bytes[16];
    };
    OrvMiniHashMd4 hash;
    void Add(const uint8_t *data, uint32_t length) { hash.Add(data, length); }
    void Get(HashType &digest) { hash.Get(digest.bytes); }
};

/// A checksum's bytes, the lowest first.
template <typename Crc>
struct Checksum {
    struct HashType {
        uint8_t bytes[4];
    };
    Crc crc;
    void Add(const uint8_t *data, uint32_t length) { crc.Add(data, length); }
    void Get(HashType &digest)
    {
        const uint32_t value = crc.Get();
        __builtin_memcpy(digest.bytes, &value, sizeof value);
    }
};

/// The published digest of a text, and the MD5 of the digests of all prefixes of the message, each ending
/// before an unmapped page.
template <typename Hash>
void CheckDigests(const char *text, const char *digestOfText, const char *digestOfDigests)
{
    const auto known =
        DigestOf<Hash>(reinterpret_cast<const uint8_t *>(text), OrvGetStringSizeInElements(text), 9);
    CHECK_TEXT(Hexadecimal<sizeof known>(known.bytes).text, digestOfText);
    OrvMiniHashMd5 all;
    for (uint32_t length = 0; length < kMessageBytes; length++) {
        const uint8_t *const copy = test::GuardedCopy(kMessage.bytes, length);
        const auto digest = DigestOf<Hash>(copy, length, length + 1);
        all.Add(digest.bytes, sizeof digest.bytes);
        // However the message is split, the digest is the same.
        for (uint32_t piece = 1; piece < 140; piece += 23) {
            const auto split = DigestOf<Hash>(copy, length, piece);
            CHECK(__builtin_memcmp(&split, &digest, sizeof digest) == 0);
        }
    }
    CHECK_TEXT(Hexadecimal<16>(all.Get().bytes).text, digestOfDigests);
}

/// Get ends the message, and says the same until Initialize.
template <typename Hash>
void CheckFinalization()
{
    Hash hash;
    const auto digestOf = [&hash](uint32_t count) {
        hash.Add(kMessage.bytes, count);
        return hash.Get();
    };
    const auto first = digestOf(100);
    const auto equalsFirst = [&first](const typename Hash::HashType &digest) {
        return __builtin_memcmp(&digest, &first, sizeof first) == 0;
    };
    CHECK(equalsFirst(digestOf(100)));
    hash.Initialize();
    CHECK(!equalsFirst(digestOf(99)));
    hash.Initialize();
    hash.Add(nullptr, 0);
    CHECK(equalsFirst(digestOf(100)));
}

} // namespace

TEST_CASE(DigestsOfEveryLengthOfAFewBlocks)
{
    CheckDigests<Md4>("abc", "a448017aaf21d8525fc10ae87aa6729d", "34ba5554a2613cd8dc2c1afb12d812fc");
    CheckDigests<OrvMiniHashMd5>("abc", "900150983cd24fb0d6963f7d28e17f72",
                                 "84400bd21d9dc18772d1369842e8b719");
    CheckDigests<OrvMiniHashSha1>("abc", "a9993e364706816aba3e25717850c26c9cd0d89d",
                                  "a514d1b1821aae7b74fa15b56b5690ff");
    CheckDigests<OrvMiniHashSha256>("abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad",
                                    "5df1d556c5e2abe5b9587ebc6f971fa7");
    CheckDigests<OrvMiniHashSha512>("abc",
                                    "ddaf35a193617abacc417349ae20413112e6fa4e89a97ea20a9eeee64b55d39a"
                                    "2192992a274fc1a836ba3c23a3feebbd454d4423643ce80e2a9ac94fa54ca49f",
                                    "aa1be180e1c29667630a574e36232437");
    CheckDigests<Checksum<OrvMiniHashCrc32>>("123456789", "2639f4cb", "73536064dd9819a14116d736ca5c50dc");
    CheckDigests<Checksum<OrvMiniHashCrc32C>>("123456789", "839206e3", "ebba1354543ca8320e805379310cfb81");
}

TEST_CASE(FirstGetEndsTheMessage)
{
    CheckFinalization<OrvMiniHashMd5>();
    CheckFinalization<OrvMiniHashSha1>();
    CheckFinalization<OrvMiniHashSha256>();
    CheckFinalization<OrvMiniHashSha512>();

    OrvMiniHashMd4 md4;
    uint8_t first[16];
    uint8_t second[16];
    md4.Add(kMessage.bytes, 100);
    md4.Get(first);
    md4.Get(second);
    CHECK(__builtin_memcmp(first, second, sizeof first) != 0); // spent
    md4.Reset();
    md4.Add(kMessage.bytes, 100);
    md4.Get(second);
    CHECK(__builtin_memcmp(first, second, sizeof first) == 0);
}

TEST_CASE(ChecksumsGoOn)
{
    OrvMiniHashCrc32 crc;
    CHECK_EQUAL(crc.Get(), 0u);
    crc.Reset(0xCBF43926);
    uint32_t value = 0;
    crc.Get(value);
    CHECK_EQUAL(value, 0xCBF43926u);
    crc.Initialize();
    crc.Add(kMessage.bytes, 200);
    OrvMiniHashCrc32 rest;
    rest.Reset(crc.Get());
    rest.Add(kMessage.bytes + 200, 100);
    crc.Add(kMessage.bytes + 200, 100);
    CHECK_EQUAL(rest.Get(), crc.Get());
}

TEST_CASE(SuperFastHashDoesNotMindTheSplit)
{
    struct {
        const char *text;
        uint32_t length;
        uint32_t seed;
        uint32_t expected;
    } const cases[] = {
        {"", 0, 0, 0},
        {"", 0, 7, 0x82000451},
        {"\x80", 1, 0, 0xd6f4cb32},
        {"ab", 2, 1, 0xbf27be3d},
        {"\xff\xfe\xfd", 3, 2, 0xe39556d3},
        {"abcd", 4, 0, 0x3ab452d8},
        {reinterpret_cast<const char *>(kMessage.bytes), 8, 0, 0xaab1b77f},
        {reinterpret_cast<const char *>(kMessage.bytes), 299, 12345, 0x9b43ec99},
    };
    for (const auto &c : cases) {
        test::Note("length", c.length);
        const uint8_t *const data = test::GuardedCopy(reinterpret_cast<const uint8_t *>(c.text), c.length);
        CHECK_EQUAL(OrvMiniSuperFastHash::Hash(data, data + c.length, c.seed), c.expected);
        for (uint32_t piece = 1; piece < 12; piece++) {
            OrvMiniSuperFastHash hash;
            hash.Reset(c.seed);
            for (uint32_t i = 0; i < c.length; i += piece) {
                hash.Add(data + i, c.length - i < piece ? c.length - i : piece);
                hash.Get(); // changes nothing
            }
            CHECK_EQUAL(static_cast<const OrvMiniSuperFastHash &>(hash).Get(), c.expected);
            hash.Initialize();
            CHECK_EQUAL(hash.Get(), 0u);
        }
    }
}

TEST_CASE(MessagesStayBelowFourGigabytes)
{
    // The length is the first field; nobody waits for four gigabytes here.
    OrvMiniHashSha1 hash;
    auto *const length = reinterpret_cast<uint32_t *>(&hash);
    *length = 0xFFFFFFFF - 64;
    CHECK_EQUAL(hash.Add(kMessage.bytes, 65), ORV_E_INVALID_DATA);
    CHECK_EQUAL(*length, 0xFFFFFFFFu - 64);
    CHECK_EQUAL(hash.Add(kMessage.bytes, 64), ORV_S_OK);
    CHECK_EQUAL(*length, 0xFFFFFFFFu);
    CHECK_EQUAL(hash.Add(kMessage.bytes, 1), ORV_E_INVALID_DATA);
    CHECK_EQUAL(hash.Add(kMessage.bytes, 0), ORV_S_OK);

    // SHA-1 and SHA-256 keep 32 bits of the length in bits: 512 MiB end as 0 bytes do. SHA-512 keeps them
    // all.
    const auto endsAsEmpty = [](auto longHash, auto emptyHash) {
        *reinterpret_cast<uint32_t *>(&longHash) = 0x20000000;
        const auto digest = longHash.Get();
        const auto empty = emptyHash.Get();
        return __builtin_memcmp(&digest, &empty, sizeof empty) == 0;
    };
    CHECK(endsAsEmpty(OrvMiniHashSha1(), OrvMiniHashSha1()));
    CHECK(endsAsEmpty(OrvMiniHashSha256(), OrvMiniHashSha256()));
    CHECK(!endsAsEmpty(OrvMiniHashSha512(), OrvMiniHashSha512()));
}

TEST_CASE(LengthInBitsCarriesIntoItsHighWord)
{
    // Both words of the length stand behind the chaining values. One object passes 2^32 bits by adding a
    // block, the other is told so.
    constexpr uint32_t kLowWord = 4;
    OrvMiniHashMd5 passing;
    auto *const words = reinterpret_cast<uint32_t *>(&passing);
    words[kLowWord] = 0u - 512;
    passing.Add(kMessage.bytes, 64);
    CHECK_EQUAL(words[kLowWord], 0u);
    CHECK_EQUAL(words[kLowWord + 1], 1u);
    OrvMiniHashMd5 told;
    told.Add(kMessage.bytes, 64);
    reinterpret_cast<uint32_t *>(&told)[kLowWord] = 0;
    reinterpret_cast<uint32_t *>(&told)[kLowWord + 1] = 1;
    CHECK(__builtin_memcmp(&passing.Get(), &told.Get(), sizeof(OrvMiniHashMd5::HashType)) == 0);
}
