// A file that a command writes, whole or not at all.

#pragma once

#include "command.h"

#include "nt/nt.h"
#include "nt/programs.h"
#include "orv/text/heap_buffer.h"
#include "runtime/heap.h"

namespace orvtool
{

/// What a command writes becomes a temporary file in the folder of the target, which takes the target's place
/// when it is complete. Until then the target is as it was, or there is none; without Replace, and when the
/// program is ended from outside, the temporary file goes away.
///
/// A target that is a link stays one: the file that it leads to is replaced. The new file has the attributes,
/// the time of creation and the access rights of the one before; Wine, which turns rights into a Unix mode
/// and back, may give the group what the owner has. A device, such as NUL, is written to directly.
class OutputFile
{
public:
    OutputFile() = default;
    OutputFile(const OutputFile &) = delete;
    OutputFile &operator=(const OutputFile &) = delete;
    ~OutputFile();

    /// Returns 0, or why the target cannot be written or nothing can be made beside it.
    OrvResult Create(const wchar_t *path);

    /// For a stream that ends before the file does.
    HANDLE GetHandle() const { return handle_; }

    /// Writes the temporary file through to the disk and puts it in the target's place. To be called once,
    /// when all is written. Returns 0 or why that failed; the target is then as it was.
    OrvResult Replace();

private:
    /// What becomes of a file when its last handle is closed.
    enum class Fate : BOOLEAN { kStays, kIsDeleted };

    /// Learns what there is to know about the target, or opens it when it is a device.
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
