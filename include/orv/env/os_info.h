// The operating system: its version, edition and processor.
//
// Start-up records the facts once, so a query is a plain read. Until then every fact is 0 and the version
// text is empty.

#pragma once

#include "orv/base.h"

namespace OrvEnvironment
{

/// The processor that the system runs on. It may have 64 bits although this process has 32.
enum ProcessorArchitecture : uint32_t {
    ProcessorX86 = 1, ///< also when the system does not tell
    ProcessorX64 = 2,
    ProcessorItanium = 3,
};

/// The kind of product that the system is.
enum ProductType : uint32_t {
    ProductWorkstation = 1,
    ProductDomainController = 2,
    ProductServer = 3,
};

/// The facts about the operating system.
struct OsFacts {
    uint32_t majorVersion;                       ///< 6 of 6.1
    uint32_t minorVersion;                       ///< 1 of 6.1
    uint32_t buildNumber;                        ///< 7601 of 6.1.7601
    uint32_t servicePackMajor;                   ///< 0 when there is no service pack
    uint32_t servicePackMinor;                   ///< mostly 0
    uint32_t suiteMask;                          ///< the platform's VER_SUITE bits
    ProductType productType;                     ///< workstation or server
    ProcessorArchitecture processorArchitecture; ///< of the system, not of this process
};

/// Holds the facts.
class OsInfo
{
public:
    OsInfo() = delete;

    /// Records the facts and a copy of their text, which is cut after 127 characters. Only start-up calls
    /// this: it must not race with queries.
    static void Initialize(const OsFacts &facts, const wchar_t *versionString);

    /// The facts; the reference is valid as long as the library is loaded.
    ORV_API static const OsFacts &GetFacts();

    /// The version as text, such as "Windows 6.1.7601 Service Pack 1.0, server, x64"; terminated, valid as
    /// long as the library is loaded.
    ORV_API static const wchar_t *GetVersionString();

    /// Whether the system's version is this one or a later one.
    ORV_API static bool IsAtLeast(uint32_t majorVersion, uint32_t minorVersion);
};

} // namespace OrvEnvironment
