// The recorded facts about the operating system, and their text.

#include "orv/env/os_info.h"

#include "env/win_version.h"
#include "orv/text/format.h"

namespace OrvEnvironment
{

namespace
{

struct {
    OsFacts facts;
    wchar_t versionString[detail::kWinVersionCapacity];
} recorded;

const wchar_t *NameOf(ProductType type)
{
    switch (type) {
    case ProductWorkstation:
        return L"workstation";
    case ProductDomainController:
        return L"domain controller";
    case ProductServer:
        return L"server";
    }
    return L"unknown product";
}

const wchar_t *NameOf(ProcessorArchitecture architecture)
{
    switch (architecture) {
    case ProcessorX86:
        return L"x86";
    case ProcessorX64:
        return L"x64";
    case ProcessorItanium:
        return L"Itanium";
    }
    return L"unknown processor";
}

} // namespace

OrvResult detail::GetWinVersionString(const OsFacts &facts, wchar_t *text, uint32_t capacity)
{
    const wchar_t *const product = NameOf(facts.productType);
    const wchar_t *const processor = NameOf(facts.processorArchitecture);
    if (!facts.servicePackMajor && !facts.servicePackMinor)
        return OrvFormatString(OrvCodePageDefault, text, capacity, nullptr, L"Windows %u.%u.%u, %s, %s",
                               facts.majorVersion, facts.minorVersion, facts.buildNumber, product, processor);
    return OrvFormatString(OrvCodePageDefault, text, capacity, nullptr,
                           L"Windows %u.%u.%u Service Pack %u.%u, %s, %s", facts.majorVersion,
                           facts.minorVersion, facts.buildNumber, facts.servicePackMajor,
                           facts.servicePackMinor, product, processor);
}

void OsInfo::Initialize(const OsFacts &facts, const wchar_t *versionString)
{
    recorded.facts = facts;
    uint32_t length = 0;
    for (; versionString[length] && length + 1 < detail::kWinVersionCapacity; length++)
        recorded.versionString[length] = versionString[length];
    recorded.versionString[length] = 0;
}

const OsFacts &OsInfo::GetFacts()
{
    return recorded.facts;
}

const wchar_t *OsInfo::GetVersionString()
{
    return recorded.versionString;
}

bool OsInfo::IsAtLeast(uint32_t majorVersion, uint32_t minorVersion)
{
    const OsFacts &facts = recorded.facts;
    return facts.majorVersion != majorVersion ? facts.majorVersion > majorVersion
                                              : facts.minorVersion >= minorVersion;
}

} // namespace OrvEnvironment
