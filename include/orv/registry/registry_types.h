// The vocabulary of the registry: roots, views, rights, types.

#pragma once

#include "orv/base.h"
#include "orv/flags.h"

/// The predefined keys, with the values of the platform's constants.
enum OrvBasWinRegistryRootType : int32_t {
    OrvRegistryNoRoot = 0, ///< the parent is another handle
    OrvRegistryClassesRoot = static_cast<int32_t>(0x80000000),
    OrvRegistryCurrentUser = static_cast<int32_t>(0x80000001),
    OrvRegistryLocalMachine = static_cast<int32_t>(0x80000002),
    OrvRegistryUsers = static_cast<int32_t>(0x80000003),
    OrvRegistryPerformanceData = static_cast<int32_t>(0x80000004), ///< cannot be opened
    OrvRegistryPerformanceText = static_cast<int32_t>(0x80000050),
    OrvRegistryPerformanceNlsText = static_cast<int32_t>(0x80000060), ///< cannot be opened
    OrvRegistryCurrentConfig = static_cast<int32_t>(0x80000005),
    OrvRegistryDynData = static_cast<int32_t>(0x80000006), ///< cannot be opened
};

/// The views of a 64-bit system. The low four bits select a view; the other bits are only stored.
enum OrvBasWinRegistryViewModeValues : uint32_t {
    OrvRegistryViewDefault = 0,
    OrvRegistryView64 = 1,   ///< the 64-bit view: the platform's access bit 0x100
    OrvRegistryView32 = 2,   ///< the 32-bit view: the platform's access bit 0x200
    OrvRegistryViewNode = 4, ///< the 32-bit view, by a path part "Wow6432Node"
};

/// Native access rights to a key; they combine.
enum OrvWinRegistryRights : uint32_t {
    OrvRegistryQueryValue = 0x1,
    OrvRegistrySetValue = 0x2,
    OrvRegistryCreateSubKey = 0x4,
    OrvRegistryEnumerateSubKeys = 0x8,
    OrvRegistryNotify = 0x10,
    OrvRegistryDelete = 0x10000,
    OrvRegistryRead = 0x20019,  ///< query, enumerate, notify
    OrvRegistryWrite = 0x20006, ///< set values, create keys
    OrvRegistryAllAccess = 0xF003F,
};

/// Both sets of rights together.
ORV_COMBINABLE_FLAGS(OrvWinRegistryRights)

/// The privileges that an account needs for hives.
enum OrvBasWinRegistryPrivilege : uint32_t {
    OrvRegistryBackupPrivilege = 1,  ///< to save keys
    OrvRegistryRestorePrivilege = 2, ///< to load and to restore them
};

/// The platform's value types. The registry may hold any other number, too.
enum OrvBasWinRegistryValueType : uint32_t {
    OrvRegistryNone = 0,
    OrvRegistryString = 1,
    OrvRegistryExpandString = 2, ///< with "%NAME%" for variables of the environment
    OrvRegistryBinary = 3,
    OrvRegistryDWord = 4,
    OrvRegistryDWordBigEndian = 5,
    OrvRegistryLink = 6,
    OrvRegistryMultiString = 7,
    OrvRegistryQWord = 11,
};

/// The platform's facts about a key.
struct OrvBasWinRegistryKeyInfo {
    uint64_t lastWriteTime;     ///< an OrvTime: 100 ns since 1601
    uint32_t subKeyCount;       ///< the keys right below it
    uint32_t longestSubKeyName; ///< in characters
    uint32_t valueCount;        ///< the default value included, when it is set
    uint32_t longestValueName;  ///< in characters
    uint32_t largestValue;      ///< in bytes
};
