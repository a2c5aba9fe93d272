// What the compression commands share: they pass the input through a context of the library to standard
// output, with two buffers of a fixed size.

#pragma once

#include "input.h"
#include "progress.h"

#include "orv/runtime/result.h"

namespace orvtool
{

/// Takes an option from "-1" to "-9" and returns its level; 0 when the next argument is not such an option.
inline int TakeLevel(ArgumentReader &arguments)
{
    const wchar_t *const option = arguments.Peek();
    if (!arguments.IsAtOption() || option[1] < L'1' || option[1] > L'9' || option[2])
        return 0;
    arguments.Take();
    return option[1] - L'0';
}

/// Whether a compressed input may have several streams, one after another, which become one output.
enum class Streams { kOne, kSeveral };

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
        return RunAndExplain([this](Progress &progress) { return CompressAll(progress); });
    }

    ExitCode Decompress(Streams streams)
    {
        return RunAndExplain(
            [this, streams](Progress &progress) { return DecompressAll(progress, streams); });
    }

private:
    static constexpr uint32_t kBufferSize = 64 * 1024;

    /// The result of a step: whether the work can go on, and what stopped it.
    struct Outcome {
        OrvResult result = ORV_S_OK;      ///< ORV_S_END_OF_DATA when a stream is complete
        const wchar_t *action = nullptr;  ///< the action that returned the result
        const wchar_t *problem = nullptr; ///< what is wrong with the input; null when nothing is wrong
        uint64_t offset = 0;              ///< of the problem

        bool IsGood() const { return OrvSucceeded(result) && !problem; }
        bool IsStreamEnd() const { return result == ORV_S_END_OF_DATA; }
    };

    template <typename Work>
    ExitCode RunAndExplain(Work work)
    {
        Outcome outcome;
        {
            Progress progress(console_.error, input_.Size());
            outcome = work(progress);
            Write(); // after a fault too: the output before it is good
        }
        if (console_.out.HasFailed())
            return kExitFailed;
        if (OrvFailed(outcome.result))
            return ReportFailure(command_, console_, outcome.action, outcome.result);
        if (!outcome.problem)
            return kExitSuccess;
        console_.error.Print(L"orvtool %s: ", command_.name);
        console_.error.Print(outcome.problem, outcome.offset);
        console_.error.Print(L"\n");
        return kExitFailed;
    }

    Outcome CompressAll(Progress &progress)
    {
        Outcome outcome = Start();
        if (outcome.IsGood())
            outcome = Read(progress);
        while (outcome.IsGood() && !IsInputEmpty()) {
            outcome = Step(L"compressing", &Context::Compress);
            if (outcome.IsGood() && IsInputEmpty())
                outcome = Read(progress);
        }
        while (outcome.IsGood() && !outcome.IsStreamEnd())
            outcome = Step(L"compressing", &Context::CompressFinish);
        return outcome;
    }

    Outcome DecompressAll(Progress &progress, Streams streams)
    {
        Outcome outcome = DecompressStream(progress);
        while (outcome.IsGood()) {
            if (IsInputEmpty())
                outcome = Read(progress);
            if (!outcome.IsGood() || IsInputEmpty())
                break;
            const uint64_t end = Offset();
            if (streams == Streams::kOne)
                return OtherDataAt(end);
            outcome = DecompressStream(progress);
            // Bytes that do not even have a stream's signature are other data.
            constexpr uint32_t kSignature = 4;
            if (outcome.problem && outcome.offset - end <= kSignature)
                return OtherDataAt(end);
        }
        return outcome;
    }

    Outcome DecompressStream(Progress &progress)
    {
        const unsigned char *const next = context_.GetNextIn();
        const unsigned left = context_.GetAvailIn();
        Outcome outcome = Start();
        context_.SetNextIn(next);
        context_.SetAvailIn(left);
        while (outcome.IsGood() && !outcome.IsStreamEnd()) {
            // A step without input may still have output to give.
            if (IsInputEmpty())
                outcome = Read(progress);
            if (!outcome.IsGood())
                break;
            const bool isAtEnd = IsInputEmpty();
            const uint64_t given = Given();
            outcome = Step(L"decompressing", &Context::Decompress);
            const bool isStuck = outcome.result == ORV_S_OK && isAtEnd && Given() == given;
            if (outcome.result == ORV_E_NOT_PRODUCED || isStuck)
                return {ORV_S_OK, nullptr,
                        isAtEnd ? L"the data ends at offset %I64u, before its stream does"
                                : L"the data is corrupt at offset %I64u",
                        Offset()};
        }
        return outcome;
    }

    static Outcome OtherDataAt(uint64_t offset)
    {
        return {ORV_S_OK, nullptr, L"other data follows the stream, at offset %I64u", offset};
    }

    /// Begins a stream. First writes what the previous stream left in the buffer.
    Outcome Start()
    {
        OrvResult result = Write();
        if (OrvSucceeded(result))
            result = context_.Destroy();
        if (OrvSucceeded(result))
            result = begin_(context_, kBufferSize);
        ResetOutput();
        return {result, L"starting"};
    }

    /// Makes a step, and writes the buffer if it is full. Returns the step's result, unless writing fails.
    Outcome Step(const wchar_t *action, OrvResult (Context::*step)())
    {
        const OrvResult result = (context_.*step)();
        if (OrvFailed(result) || context_.GetAvailOut() != 0)
            return {result, action};
        const OrvResult written = Write();
        return {OrvFailed(written) ? written : result, action};
    }

    Outcome Read(Progress &progress)
    {
        uint32_t count = 0;
        const OrvResult result = input_.Read(bytes_, kBufferSize, count);
        context_.SetNextIn(bytes_);
        context_.SetAvailIn(count);
        read_ += count;
        progress.Advance(count);
        return {result, L"reading"};
    }

    OrvResult Write()
    {
        if (!context_.GetNextOut()) // no stream has begun
            return ORV_S_OK;
        const uint32_t count = BufferedOutput();
        written_ += count;
        ResetOutput();
        return console_.out.WriteBytes(context_.GetBuffer(), count);
    }

    void ResetOutput()
    {
        context_.SetNextOut(context_.GetBuffer());
        context_.SetAvailOut(context_.GetBufferSize());
    }

    bool IsInputEmpty() const { return context_.GetAvailIn() == 0; }
    uint32_t BufferedOutput() const { return context_.GetBufferSize() - context_.GetAvailOut(); }

    /// The number of bytes that the context has read.
    uint64_t Offset() const { return read_ - context_.GetAvailIn(); }

    /// The number of bytes of output so far, of all streams.
    uint64_t Given() const { return written_ + BufferedOutput(); }

    const Command &command_;
    Console &console_;
    Input &input_;
    Begin begin_;
    Context context_;
    uint64_t read_ = 0;
    uint64_t written_ = 0;
    uint8_t bytes_[kBufferSize];
};

} // namespace orvtool
