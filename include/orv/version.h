// The version of the library, by semantic versioning (semver.org): below 1.0.0 a new minor version may break
// existing users. This is the only place of the version; the build, the packages and the programs read it
// from here.

#pragma once

#include <stdint.h>

/// The version's three numbers.
constexpr uint32_t OrvVersionMajor = 0;
constexpr uint32_t OrvVersionMinor = 7;
constexpr uint32_t OrvVersionPatch = 0;
