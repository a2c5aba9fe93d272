// orvtool xml: checks and formats XML documents.

#include "command.h"
#include "input.h"
#include "orv/runtime/result.h"
#include "progress.h"
#include "xml_formatter.h"

#include "orv/stream/memory_stream.h"

namespace orvtool
{

namespace
{

/// The input as a stream of the library. If `copy` is not null, all bytes are kept there for a second
/// reading.
class InputStream final : public IOrvStream
{
public:
    InputStream(Input &input, Progress &progress, OrvBufferStream *copy)
        : input_(input), progress_(progress), copy_(copy)
    {
    }

    OrvResult Read(void *bytes, uint32_t size, uint32_t &read) override
    {
        const OrvResult result = input_.ReadSome(bytes, size, read);
        if (OrvFailed(result))
            return result;
        if (read == 0)
            return ORV_E_END_OF_DATA;
        progress_.Advance(read);
        uint32_t written = 0;
        return copy_ ? copy_->Write(bytes, read, written) : ORV_S_OK;
    }

private:
    Input &input_;
    Progress &progress_;
    OrvBufferStream *copy_;
};

/// Standard output as a stream of the library.
class OutputStream final : public IOrvStream
{
public:
    explicit OutputStream(Stream &out) : out_(out) {}

    OrvResult Write(const void *bytes, uint32_t size, uint32_t &written) override
    {
        const OrvResult result = out_.WriteBytes(bytes, size);
        written = OrvSucceeded(result) ? size : 0;
        return result;
    }

private:
    Stream &out_;
};

struct Arguments {
    const Command &command;
    Console &console;
    const wchar_t *path;
};

/// Prints what is wrong with a document, and where.
void ReportFault(const Arguments &arguments, const OrvBasXmlSaxError &error)
{
    static const wchar_t *const kReasons[] = {
        L"not well-formed",
        L"exceeds the limit on expansion: its entities stand for over 100 times its size",
        L"exceeds the limit on nesting: over 250,000 elements are open",
        L"exceeds the limit on length: a tag, comment or literal goes on for over 64 MiB",
    };
    arguments.console.error.Print(L"%s: byte %I64u, line %I64u, column %I64u: %s\n", arguments.path,
                                  error.byteOffset, error.line, error.column + 1, kReasons[error.reason]);
}

/// The first reading, which both actions make. Returns kExitSuccess, or reports what is wrong.
ExitCode Read(const Arguments &arguments, OrvBasXmlSaxHandlerBase &handler, OrvBufferStream *copy)
{
    Input input;
    const ExitCode opened = OpenInput(arguments.command, arguments.console, arguments.path, input);
    if (opened != kExitSuccess)
        return opened;
    OrvBasXmlSaxError error = {};
    OrvResult result = ORV_S_OK;
    {
        Progress progress(arguments.console.error, input.Size());
        InputStream stream(input, progress, copy);
        result = OrvBasXmlSaxParse(stream, handler, error);
    }
    if (result == ORV_E_INVALID_DATA) {
        ReportFault(arguments, error);
        return kExitFailed;
    }
    return OrvFailed(result)
               ? ReportFailure(arguments.command, arguments.console, L"reading", result, arguments.path)
               : kExitSuccess;
}

struct NoHandler final : OrvBasXmlSaxHandlerBase {
};

ExitCode Check(const Arguments &arguments)
{
    NoHandler handler;
    return Read(arguments, handler, nullptr);
}

/// Owns a writer of the library.
class Writer
{
public:
    explicit Writer(IOrvStream &stream) : writer_(OrvBasXmlWriter::Impl::New(stream)) {}
    Writer(const Writer &) = delete;
    Writer &operator=(const Writer &) = delete;
    ~Writer() { OrvBasXmlWriter::Impl::Delete(writer_); }

    explicit operator bool() const { return writer_ != nullptr; }
    OrvBasXmlWriter::Impl *operator->() const { return writer_; }
    OrvBasXmlWriter::Impl &operator*() const { return *writer_; }

private:
    OrvBasXmlWriter::Impl *writer_;
};

ExitCode Format(const Arguments &arguments)
{
    XmlOutline outline;
    OrvBufferStream copy;
    const ExitCode read = Read(arguments, outline, &copy);
    if (read != kExitSuccess)
        return read;
    OutputStream out(arguments.console.out);
    const Writer writer(out);
    if (!writer)
        return ReportFailure(arguments.command, arguments.console, L"writing", ORV_E_OUT_OF_MEMORY);
    XmlFormatter formatter(outline, *writer);
    OrvResult result = writer->SetIndent(L"  ", LineEndLf);
    if (OrvSucceeded(result))
        result = writer->WriteXmlDecl(L"1.0");
    if (OrvSucceeded(result))
        result = OrvBasXmlSaxParse(copy, formatter);
    if (OrvSucceeded(result))
        result = formatter.Finish();
    if (arguments.console.out.HasFailed())
        return kExitFailed;
    return OrvFailed(result) ? ReportFailure(arguments.command, arguments.console, L"writing", result)
                             : kExitSuccess;
}

ExitCode Run(const Command &command, Console &console, ArgumentReader &arguments)
{
    if (arguments.IsAtOption())
        return UnwantedArgument(command, console, arguments);
    const wchar_t *const action = arguments.Take();
    if (!action)
        return UsageError(command, console, L"an action is missing: format or check", nullptr);
    if (!Equal(action, L"format") && !Equal(action, L"check"))
        return UsageError(command, console, L"there is no action", action);
    const wchar_t *path = nullptr;
    while (!arguments.IsAtEnd()) {
        const ExitCode usage = TakePath(command, console, arguments, path);
        if (usage != kExitSuccess)
            return usage;
    }
    if (!path)
        return UsageError(command, console, L"a file is missing, or '-' for standard input", nullptr);
    const Arguments wanted = {command, console, path};
    return Equal(action, L"check") ? Check(wanted) : Format(wanted);
}

} // namespace

const Command kXmlCommand = {
    L"xml",
    L"checks and formats XML documents",
    L"Usage: orvtool xml check FILE\n"
    L"       orvtool xml format FILE\n"
    L"\n"
    L"check prints nothing when FILE, '-' for standard input, is well-formed XML. Otherwise it prints the\n"
    L"byte (from 0), line and column (from 1) of the first fault.\n"
    L"\n"
    L"format prints it in UTF-8, each element on its own line, indented by two spaces. White space between\n"
    L"elements is dropped, except in elements that also contain other text or have xml:space=\"preserve\":\n"
    L"their contents are kept unchanged. Comments, processing instructions, the document type and entities\n"
    L"that another document declares are not kept. For a document that is not well-formed, format prints\n"
    L"nothing on standard output.\n",
    Run,
};

} // namespace orvtool
