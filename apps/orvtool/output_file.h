// A file that a command writes completely or not at all.

#pragma once

#include "command.h"

#include "nt/nt.h"
#include "nt/programs.h"
#include "orv/text/heap_buffer.h"
#include "runtime/heap.h"

namespace orvtool
{

/// A command writes to a temporary file in the folder of the target. When that is complete, it replaces the
/// target. Until then the target is unchanged, or does not exist. Without a call of Replace, or when the
/// program is terminated, the temporary file is removed.
///
/// A target that is a link stays a link: the file that it leads to is replaced. The new file has the
/// attributes, the time of creation and the access rights of the old one. Wine converts the rights to a Unix
/// mode and back, and may give the group the owner's rights. A device, such as NUL, is written to directly.
class OutputFile
{
public:
    OutputFile() = default;
    OutputFile(const OutputFile &) = delete;
    OutputFile &operator=(const OutputFile &) = delete;
    ~OutputFile();

    /// Creates the temporary file. Returns 0; otherwise the failure: the target cannot be written, or no file
    /// can be created in its folder.
    OrvResult Create(const wchar_t *path);

    /// The handle for a stream, which must end before this object does.
    HANDLE GetHandle() const { return handle_; }

    /// Flushes the temporary file to the disk and replaces the target by it. Call it once, when everything is
    /// written. Returns 0 or the failure; the target is then unchanged.
    OrvResult Replace();

private:
    /// What happens to a file when its last handle is closed.
    enum class Fate : BOOLEAN { kStays, kIsDeleted };

    /// Reads the facts about the target, or opens it if it is a device.
    OrvResult FindTarget(UNICODE_STRING &name);
    OrvResult ReadTarget(HANDLE target, bool isNew);
    OrvResult CreateTemporary();
    OrvResult CopyAttributes();
    OrvResult Rename();
    OrvResult SetFate(HANDLE file, Fate fate);

    HANDLE handle_ = nullptr;
    OrvUtf16CharHeapBuffer target_;          ///< the native name; empty when the output is a device
    FILE_BASIC_INFORMATION attributes_ = {}; ///< of the target; all zeros when there is none
    detail::HeapArray<uint8_t> rights_;      ///< the access rights of the target, as a security descriptor
    uint32_t rightsSize_ = 0;                ///< 0 when there are none
};

} // namespace orvtool
