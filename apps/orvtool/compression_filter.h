// What the compression commands share: input through a context of the library to standard output, with two
// buffers of a fixed size.

#pragma once

#include "input.h"
#include "progress.h"

#include "orv/runtime/result.h"

namespace orvtool
{

/// The level that an option asks for, "-1" to "-9"; 0 when it is none.
inline int TakeLevel(ArgumentReader &arguments)
{
    const wchar_t *const option = arguments.Peek();
    if (!arguments.IsAtOption() || option[1] < L'1' || option[1] > L'9' || option[2])
        return 0;
    arguments.Take();
    return option[1] - L'0';
}

/// Context is OrvDeflateContext or OrvBZ2Context. Begin, called with the context and the size of its buffer,
/// initializes it.
template <typename Context, typename Begin>
class CompressionFilter
{
public:
    CompressionFilter(const Command &command, Console &console, Input &input, Begin begin)
        : command_(command), console_(console), input_(input), begin_(begin)
    {
    }

    ExitCode Compress()
    {
        work_ = L"compressing";
        return Explain(RunAndWrite([this] { return CompressAll(); }));
    }

    /// `takesSeveral`: streams may follow each other, and become one output.
    ExitCode Decompress(bool takesSeveral)
    {
        work_ = L"decompressing";
        takesSeveral_ = takesSeveral;
        return Explain(RunAndWrite([this] { return DecompressAll(); }));
    }

private:
    static constexpr uint32_t kBufferSize = 64 * 1024;

    /// What is wrong with the input of a decompression.
    enum class Fault { kNone, kCorrupt, kTruncated, kTrailing };

    template <typename Work>
    OrvResult RunAndWrite(Work work)
    {
        Progress progress(console_.error, input_.Size());
        progress_ = &progress;
        const OrvResult result = work();
        // Behind a fault too: what came before it is still good.
        const OrvResult written = Write();
        return OrvFailed(result) ? result : written;
    }

    OrvResult CompressAll()
    {
        OrvResult result = Start();
        if (OrvSucceeded(result))
            result = Read();
        while (OrvSucceeded(result) && context_.GetAvailIn() != 0) {
            result = Step(&Context::Compress);
            if (OrvSucceeded(result) && context_.GetAvailIn() == 0)
                result = Read();
        }
        while (OrvSucceeded(result) && result != ORV_S_END_OF_DATA)
            result = Step(&Context::CompressFinish);
        return result;
    }

    OrvResult DecompressAll()
    {
        OrvResult result = DecompressStream();
        while (OrvSucceeded(result) && fault_ == Fault::kNone) {
            if (context_.GetAvailIn() == 0)
                result = Read();
            if (OrvFailed(result) || context_.GetAvailIn() == 0)
                break;
            if (takesSeveral_)
                result = DecompressStream();
            else
                fault_ = Fault::kTrailing;
        }
        return result;
    }

    OrvResult DecompressStream()
    {
        const uint64_t start = Offset();
        const unsigned char *const next = context_.GetNextIn();
        const unsigned left = context_.GetAvailIn();
        OrvResult result = Start();
        context_.SetNextIn(next);
        context_.SetAvailIn(left);
        while (OrvSucceeded(result) && result != ORV_S_END_OF_DATA) {
            // A step without input may still have output to give.
            if (context_.GetAvailIn() == 0)
                result = Read();
            if (OrvFailed(result))
                return result;
            const bool isAtEnd = context_.GetAvailIn() == 0;
            result = Step(&Context::Decompress);
            const bool isStuck = result == ORV_S_OK && isAtEnd && !gaveOutput_;
            if (result == ORV_E_NOT_PRODUCED || isStuck) {
                fault_ = isAtEnd ? Fault::kTruncated : Fault::kCorrupt;
                break;
            }
        }
        // Bytes that do not even start like a stream are none.
        constexpr uint32_t kSignature = 4;
        if (fault_ != Fault::kNone && start != 0 && Offset() - start <= kSignature) {
            fault_ = Fault::kTrailing;
            faultOffset_ = start;
        } else {
            faultOffset_ = Offset();
        }
        return fault_ == Fault::kNone ? result : ORV_S_OK;
    }

    /// Begins a stream; what the one before it left in the buffer is written.
    OrvResult Start()
    {
        action_ = L"starting";
        OrvResult result = Write();
        if (OrvSucceeded(result))
            result = context_.Destroy();
        if (OrvSucceeded(result))
            result = begin_(context_, kBufferSize);
        ResetOutput();
        return result;
    }

    /// Takes a step, and writes the buffer when it is full. The result is the step's, unless writing failed.
    OrvResult Step(OrvResult (Context::*step)())
    {
        action_ = work_;
        const unsigned room = context_.GetAvailOut();
        const OrvResult result = (context_.*step)();
        gaveOutput_ = context_.GetAvailOut() != room;
        if (OrvFailed(result) || context_.GetAvailOut() != 0)
            return result;
        const OrvResult written = Write();
        return OrvFailed(written) ? written : result;
    }

    OrvResult Read()
    {
        action_ = L"reading";
        uint32_t count = 0;
        const OrvResult result = input_.Read(bytes_, kBufferSize, count);
        context_.SetNextIn(bytes_);
        context_.SetAvailIn(count);
        taken_ += count;
        progress_->Advance(count);
        return result;
    }

    OrvResult Write()
    {
        if (!context_.GetNextOut()) // no stream
            return ORV_S_OK;
        const uint32_t count = context_.GetBufferSize() - context_.GetAvailOut();
        ResetOutput();
        const OrvResult result = console_.out.WriteBytes(context_.GetBuffer(), count);
        if (OrvFailed(result))
            action_ = L"writing";
        return result;
    }

    void ResetOutput()
    {
        context_.SetNextOut(context_.GetBuffer());
        context_.SetAvailOut(context_.GetBufferSize());
    }

    /// How far the context has read.
    uint64_t Offset() const { return taken_ - context_.GetAvailIn(); }

    ExitCode Explain(OrvResult result)
    {
        if (OrvFailed(result))
            return ReportFailure(command_, console_, action_, result);
        const wchar_t *const message =
            fault_ == Fault::kCorrupt ? L"orvtool %s: the data is corrupt at offset %I64u\n"
            : fault_ == Fault::kTruncated
                ? L"orvtool %s: the data ends at offset %I64u, before its stream does\n"
            : fault_ == Fault::kTrailing ? L"orvtool %s: other data follows the stream, at offset %I64u\n"
                                         : nullptr;
        if (!message)
            return kExitSuccess;
        console_.error.Print(message, command_.name, faultOffset_);
        return kExitFailed;
    }

    const Command &command_;
    Console &console_;
    Input &input_;
    Begin begin_;
    Progress *progress_ = nullptr;
    Context context_;
    const wchar_t *work_ = nullptr;
    const wchar_t *action_ = nullptr;
    uint64_t taken_ = 0;
    uint64_t faultOffset_ = 0;
    Fault fault_ = Fault::kNone;
    bool takesSeveral_ = false;
    bool gaveOutput_ = false;
    uint8_t bytes_[kBufferSize];
};

} // namespace orvtool
