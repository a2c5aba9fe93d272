// orvtool hash: prints digests of files, and checks lists of digests.
//
// Lists have the format of the sum tools of other systems: hexadecimal digits, a blank, a blank or an
// asterisk, a name. In a line that starts with a backslash, the name has \\ for each backslash, and \n and \r
// for line ends. Such lines are read but never written, because no name on this platform contains a line end.

#include "command.h"
#include "digest.h"
#include "input.h"

#include "orv/runtime/result.h"

namespace orvtool
{

namespace
{

constexpr uint32_t kNoDigit = 16;

uint32_t DigitValue(wchar_t character)
{
    if (character >= L'0' && character <= L'9')
        return character - L'0';
    if (character >= L'a' && character <= L'f')
        return character - L'a' + 10;
    if (character >= L'A' && character <= L'F')
        return character - L'A' + 10;
    return kNoDigit;
}

/// A line of a list, parsed in place.
struct ListedFile {
    uint8_t digest[kLongestDigest];
    uint32_t digestSize;
    const wchar_t *name;
};

/// Replaces the escapes of a name by their characters. False when there is an unknown escape.
bool Unescape(wchar_t *name)
{
    wchar_t *out = name;
    for (; *name; name++) {
        if (*name == L'\\') {
            name++;
            if (*name != L'\\' && *name != L'n' && *name != L'r')
                return false;
            *out++ = *name == L'n' ? L'\n' : *name == L'r' ? L'\r' : L'\\';
        } else {
            *out++ = *name;
        }
    }
    *out = 0;
    return true;
}

/// Parses a line of a list. False when it is not such a line.
bool ParseLine(wchar_t *line, ListedFile &listed)
{
    const bool isEscaped = *line == L'\\';
    if (isEscaped)
        line++;
    uint32_t digits = 0;
    for (; DigitValue(*line) != kNoDigit; line++, digits++) {
        if (digits == 2 * kLongestDigest)
            return false;
        uint8_t &byte = listed.digest[digits / 2];
        byte = static_cast<uint8_t>(byte << 4 | DigitValue(*line));
    }
    if (digits == 0 || digits % 2 || line[0] != L' ' || (line[1] != L' ' && line[1] != L'*') || !line[2])
        return false;
    listed.digestSize = digits / 2;
    listed.name = line + 2;
    return !isEscaped || Unescape(line + 2);
}

class HashRun
{
public:
    /// Without an algorithm, new digests are made with SHA-256, and the length of a listed digest selects the
    /// algorithm that checks it.
    HashRun(const Command &command, Console &console, const Algorithm *algorithm)
        : command_(command), console_(console), algorithm_(algorithm)
    {
    }

    /// Prints the digest of a file. On failure reports it and returns false.
    bool Print(const wchar_t *name)
    {
        uint8_t digest[kLongestDigest];
        const Algorithm &algorithm = algorithm_ ? *algorithm_ : *FindAlgorithm(L"sha256");
        if (!Digest(algorithm, name, digest))
            return false;
        for (uint32_t i = 0; i < algorithm.digestSize; i++)
            console_.out.Print(L"%02x", digest[i]);
        console_.out.Print(L"  %s\n", name);
        return true;
    }

    /// Checks the files of a list. False when a digest differs, a file cannot be read, or nothing was
    /// checked.
    bool Check(const wchar_t *list)
    {
        Input input;
        OrvResult result = input.Open(list);
        LineReader reader(input);
        OrvUtf16CharHeapBuffer line;
        Counts counts;
        for (bool found = true; found && OrvSucceeded(result) && !console_.out.HasFailed();) {
            result = reader.Take(line, found);
            if (OrvSucceeded(result) && found)
                CheckLine(line, counts);
        }
        if (OrvFailed(result)) {
            ReportFailure(command_, console_, L"reading", result, list);
            return false;
        }
        if (counts.checked == 0)
            console_.error.Print(L"orvtool hash: '%s' lists no file with a digest that can be checked\n",
                                 list);
        else
            Warn(counts.misformed, L"1 line lists no digest", L"%u lines list no digest");
        Warn(counts.unreadable, L"1 listed file cannot be read", L"%u listed files cannot be read");
        Warn(counts.different, L"1 digest does not match", L"%u digests do not match");
        return counts.checked && !counts.unreadable && !counts.different;
    }

private:
    struct Counts {
        uint32_t checked = 0;
        uint32_t misformed = 0;
        uint32_t unreadable = 0;
        uint32_t different = 0;
    };

    bool Digest(const Algorithm &algorithm, const wchar_t *name, uint8_t (&digest)[kLongestDigest])
    {
        Input input;
        OrvResult result = input.Open(name);
        if (OrvSucceeded(result))
            result = digester_.Digest(algorithm, console_.error, input, digest);
        if (result == ORV_E_BAD_LENGTH)
            console_.error.Print(
                L"orvtool hash: '%s' is too long for %s, which is for less than %s: take %s\n", name,
                algorithm.name, algorithm.limit.below, algorithm.limit.takeInstead);
        else if (OrvFailed(result))
            ReportFailure(command_, console_, L"reading", result, name);
        return OrvSucceeded(result);
    }

    void CheckLine(OrvUtf16CharHeapBuffer &line, Counts &counts)
    {
        ListedFile listed = {};
        const bool isListed = !line.IsEmpty() && ParseLine(line.GetBuffer(), listed);
        const Algorithm *const algorithm = algorithm_ ? algorithm_ : FindAlgorithm(listed.digestSize);
        if (!isListed || !algorithm || algorithm->digestSize != listed.digestSize) {
            counts.misformed++;
            return;
        }
        counts.checked++;
        uint8_t digest[kLongestDigest];
        const wchar_t *outcome = L"OK";
        if (!Digest(*algorithm, listed.name, digest)) {
            counts.unreadable++;
            outcome = L"FAILED open or read";
        } else {
            for (uint32_t i = 0; i < listed.digestSize; i++) {
                if (digest[i] != listed.digest[i])
                    outcome = L"FAILED";
            }
            counts.different += *outcome == L'F';
        }
        console_.out.Print(L"%s: %s\n", listed.name, outcome);
    }

    void Warn(uint32_t count, const wchar_t *one, const wchar_t *several)
    {
        if (count == 0)
            return;
        console_.error.Print(L"orvtool hash: ");
        console_.error.Print(count == 1 ? one : several, count);
        console_.error.Print(L"\n");
    }

    const Command &command_;
    Console &console_;
    const Algorithm *algorithm_;
    Digester digester_;
};

ExitCode Run(const Command &command, Console &console, ArgumentReader &arguments)
{
    bool checks = false;
    const Algorithm *algorithm = nullptr;
    while (arguments.IsAtOption()) {
        const wchar_t *name = L"";
        if (arguments.TakeOption(L"-c", L"--check")) {
            checks = true;
            continue;
        }
        if (!arguments.TakeValueOption(L"-a", name) && !arguments.TakeValueOption(L"--algorithm", name))
            return UnwantedArgument(command, console, arguments);
        algorithm = name ? FindAlgorithm(name) : nullptr;
        if (!algorithm)
            return UsageError(command, console, L"there is no algorithm", name ? name : L"");
    }
    if (arguments.IsAtEnd())
        return UsageError(command, console, L"a file is missing, or '-' for standard input", nullptr);
    HashRun run(command, console, algorithm);
    ExitCode code = kExitSuccess;
    while (!arguments.IsAtEnd() && !console.out.HasFailed()) {
        if (arguments.IsAtOption())
            return UsageError(command, console, L"options stand before the files:", arguments.Peek());
        const wchar_t *const name = arguments.Take();
        if (name && !(checks ? run.Check(name) : run.Print(name)))
            code = kExitFailed;
    }
    return code;
}

} // namespace

const Command kHashCommand = {
    L"hash",
    L"prints digests of files, and checks lists of them",
    L"Usage: orvtool hash [-a ALGORITHM] FILE...\n"
    L"       orvtool hash -c [-a ALGORITHM] LIST...\n"
    L"\n"
    L"Prints the digest of each FILE and its name, as sha256sum does; '-' is standard input. With -c it "
    L"reads\n"
    L"such lists instead, from any system, and prints for each file whether its digest matches. Exit code 1\n"
    L"when a digest does not match, or a file cannot be read.\n"
    L"\n"
    L"  -a, --algorithm ALGORITHM   crc32, crc32c, md4, md5, sha1, sha256 (which is assumed), sha512 or\n"
    L"                              superfast; with -c crc32, md5, sha1, sha256 or sha512 is assumed, by "
    L"the\n"
    L"                              length of the digest\n"
    L"  -c, --check                 checks\n"
    L"\n"
    L"A list is UTF-8 or, after a byte order mark, UTF-16. The library's sha1 and sha256 are for less than\n"
    L"512 MiB, and its sha512 for less than 4 GiB: a longer file is refused. The others take any length.\n",
    Run,
};

} // namespace orvtool
