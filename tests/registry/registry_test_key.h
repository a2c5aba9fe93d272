// A key of the calling user that exists, with all that is put below it, while a test runs.

#pragma once

#include "harness/test.h"
#include "nt/programs.h"
#include "orv/registry/registry_handle.h"
#include "orv/runtime/result.h"
#include "orv/text/heap_string.h"

constexpr wchar_t kTestKey[] = L"Software\\OrvRegistryTest";

class TestKey : public OrvBasWinRegistryHandle
{
public:
    TestKey() : OrvBasWinRegistryHandle(OrvRegistryCurrentUser)
    {
        Remove();
        CHECK_EQUAL(OpenOrCreateKey(kTestKey), ORV_S_OK);
    }
    ~TestKey() { Remove(); }

private:
    static void Remove()
    {
        OrvBasWinRegistryHandle user(OrvRegistryCurrentUser);
        if (user.KeyExists(kTestKey))
            CHECK_EQUAL(user.DeleteKey(kTestKey, true), ORV_S_OK);
    }
};

/// Collects names, one behind the other with a "|" behind each; refuses one if it is told to.
class Names final : public OrvBasWinRegistryHandle::NameInserter
{
public:
    OrvResult Insert(const OrvStringRefBase<wchar_t> &item) override
    {
        if (count++ == refusedAt)
            return ORV_E_DISK_FULL;
        text.Append(item.characters, item.length);
        return text.Append(L'|');
    }

    OrvUtf16CharHeapBuffer text;
    uint32_t count = 0;
    uint32_t refusedAt = 0xFFFFFFFF;
};

/// Gives texts that a test has in an array.
class Texts final : public OrvBasWinRegistryHandle::NameEnumerator
{
public:
    Texts(const wchar_t *const *texts, uint32_t count) : texts_(texts), count_(count) {}

    OrvResult Next(OrvStringzRefBase<wchar_t> &item, bool &found) override
    {
        found = count_ != 0;
        if (found) {
            item.characters = *texts_++;
            count_--;
        }
        return 0;
    }

private:
    const wchar_t *const *texts_;
    uint32_t count_;
};
