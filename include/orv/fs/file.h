// An open file: the native handle and what it was opened for.

#pragma once

#include "orv/base.h"

/// What a file was opened for.
enum OrvFileAccessMode : uint32_t {
    OrvFileNotOpen = 0,
    OrvFileReadOnly = 1,
    OrvFileReadWrite = 3,
};

/// Owns at most one handle.
class OrvWinFile
{
public:
    OrvWinFile() = default;
    OrvWinFile(const OrvWinFile &) = delete;
    OrvWinFile &operator=(const OrvWinFile &) = delete;
    ORV_API ~OrvWinFile();

    /// Whether there is a file.
    bool IsOpen() const { return accessMode_ != OrvFileNotOpen; }

    /// Closes the file that is open and takes ownership of the handle.
    ORV_API void Attach(void *handle, OrvFileAccessMode accessMode);

    /// Closes the file. Returns 0, also when no file is open; or the converted status, and the file is then
    /// still open.
    ORV_API OrvResult Close();

    /// The native handle, or the invalid handle 0xFFFFFFFF.
    void *GetHandle() const { return handle_; }

    /// What the file was opened for.
    OrvFileAccessMode GetAccessMode() const { return accessMode_; }

private:
    void *handle_ = reinterpret_cast<void *>(-1);
    OrvFileAccessMode accessMode_ = OrvFileNotOpen;
};

static_assert(sizeof(OrvWinFile) == 8, "fixed layout");
