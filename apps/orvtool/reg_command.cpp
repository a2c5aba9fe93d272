// orvtool reg: reads, writes, watches, exports and imports the registry.

#include "reg_data.h"
#include "reg_location.h"
#include "reg_transfer.h"
#include "time_forms.h"

#include "orv/runtime/result.h"
#include "orv/sync/event.h"

namespace orvtool
{

namespace
{

typedef OrvBasWinRegistryHandle Key;

enum class Place { kKey, kValue, kEither, kNone };

struct Job;

struct Option {
    const wchar_t *name;
    bool hasValue;
    bool (*store)(Job &job, const wchar_t *value); ///< false when the value is not valid
};

struct Action {
    const wchar_t *name;
    ExitCode (*run)(Job &job);
    Place place;
    uint32_t mostData;        ///< arguments after the location
    const Option *options[2]; ///< in addition to --view; unused elements are null
};

struct Job {
    Job(const Command &command, Console &console) : command(command), console(console) {}

    const Command &command;
    Console &console;
    const wchar_t *text = nullptr; ///< the location as the user wrote it
    RegistryLocation location;
    Key key = Key(OrvRegistryCurrentUser);
    RegistryView view;
    DataArguments data;
    OrvBasWinRegistryValueType type = OrvRegistryString;
    bool isTypeGiven = false;
    bool recursive = false;
    bool subtree = false;
    int timeoutMs = -1;

    ExitCode Report(const wchar_t *action, OrvResult result) const
    {
        return OrvFailed(result) ? ReportFailure(command, console, action, result, text) : kExitSuccess;
    }

    /// Opens the location's key. Returns kExitSuccess, or reports the failure.
    ExitCode Open(OrvWinRegistryRights rights)
    {
        return Report(L"opening the key of", key.OpenKeyIfExists(location.Path(), rights));
    }
};

void PrintValue(Stream &out, const Key::Name &name, int width, OrvBasWinRegistryValueType type,
                OrvByteHeapBuffer &bytes)
{
    constexpr wchar_t kDefault[] = L"(default)";
    const Key::Name shown = name.length ? name : Key::Name(kDefault, sizeof kDefault / sizeof *kDefault - 1);
    out.Append(shown.characters, shown.characters + shown.length);
    out.Print(L"%*s", width > static_cast<int>(shown.length) ? width - static_cast<int>(shown.length) : 0,
              L"");
    out.Print(L"  ");
    PrintTypeName(out, type, 9);
    out.Print(L"  ");
    PrintData(out, type, bytes.GetElements(), bytes.GetSize(), L"\\0");
    out.Print(L"\n");
}

ExitCode Query(Job &job)
{
    const ExitCode code = job.Open(OrvRegistryRead);
    if (code != kExitSuccess)
        return code;
    Stream &out = job.console.out;
    OrvBasWinRegistryValueType type = OrvRegistryNone;
    OrvByteHeapBuffer bytes;
    if (job.location.hasValue) {
        const OrvResult result = job.key.QueryValue(type, bytes, job.location.ValueName());
        if (OrvSucceeded(result))
            PrintValue(out, job.location.ValueName(), 0, type, bytes);
        return job.Report(L"reading", result);
    }

    OrvBasWinRegistryKeyInfo info = {};
    OrvBasWinRegistryEnumerator values;
    OrvResult result = job.key.GetKeyInfo(info);
    if (OrvSucceeded(result))
        result = job.key.GetValuesEnumeratorImpl(values);
    if (OrvFailed(result))
        return job.Report(L"reading", result);
    out.Print(L"last write  ");
    if (PrintIsoTime(out, info.lastWriteTime, true) != ORV_S_OK)
        out.Print(L"unknown\n");
    out.Print(L"sub-keys    %u\nvalues      %u\n", info.subKeyCount, info.valueCount);
    constexpr uint32_t kWidest = 40;
    constexpr uint32_t kLeast = 9; // the width of "(default)"
    const uint32_t longest = info.longestValueName > kLeast ? info.longestValueName : kLeast;
    const auto width = static_cast<int>(longest < kWidest ? longest : kWidest);
    for (bool isFirst = true;; isFirst = false) {
        OrvStringzRefBase<wchar_t> text(nullptr);
        bool found = false;
        result = values.Next(text, found);
        if (OrvFailed(result) || !found)
            return job.Report(L"reading", result);
        const Key::Name name(text.characters, values.GetLength());
        result = job.key.QueryValue(type, bytes, name);
        if (result == ORV_E_FILE_NOT_FOUND) // deleted meanwhile
            continue;
        if (OrvFailed(result))
            return job.Report(L"reading", result);
        out.Print(isFirst ? L"\n" : L"");
        PrintValue(out, name, width, type, bytes);
    }
}

ExitCode Get(Job &job)
{
    const ExitCode code = job.Open(OrvRegistryRead);
    if (code != kExitSuccess)
        return code;
    OrvBasWinRegistryValueType type = OrvRegistryNone;
    OrvByteHeapBuffer bytes;
    const OrvResult result = job.key.QueryValue(type, bytes, job.location.ValueName());
    if (OrvFailed(result))
        return job.Report(L"reading", result);
    PrintData(job.console.out, type, bytes.GetElements(), bytes.GetSize(), L"\n");
    job.console.out.Print(L"\n");
    return kExitSuccess;
}

ExitCode Set(Job &job)
{
    const bool hasValue = job.location.hasValue;
    if (!hasValue && (job.isTypeGiven || job.data.count))
        return UsageError(job.command, job.console, L"a key has no type and no data:", job.text);
    OrvMbCharHeapBuffer bytes;
    OrvResult result = hasValue ? ParseData(bytes, job.type, job.data) : ORV_S_OK;
    if (result == ORV_E_INVALID_ARGUMENT)
        return UsageError(job.command, job.console, L"the type wants other data than",
                          job.data.texts.GetValue());
    if (OrvSucceeded(result))
        result = job.key.OpenOrCreateKey(job.location.Path(), OrvRegistryWrite);
    if (OrvSucceeded(result) && hasValue)
        result = job.key.SetValue(job.type, bytes.GetValue(), bytes.GetInternal().length,
                                  job.location.ValueName());
    return job.Report(L"setting", result);
}

ExitCode Delete(Job &job)
{
    if (!job.location.hasValue) {
        if (job.location.path.GetLength() == 0)
            return UsageError(job.command, job.console, L"a root cannot be deleted:", job.text);
        const OrvResult result = job.key.DeleteKey(job.location.Path(), job.recursive);
        OrvBasWinRegistryKeyInfo info = {};
        if (result == ORV_E_ACCESS_DENIED && !job.recursive &&
            OrvSucceeded(job.key.OpenKeyIfExists(job.location.Path())) &&
            OrvSucceeded(job.key.GetKeyInfo(info)) && info.subKeyCount) {
            job.console.error.Print(
                L"orvtool %s: '%s' has sub-keys: they are deleted with --recursive only\n", job.command.name,
                job.text);
            return kExitFailed;
        }
        return job.Report(L"deleting", result);
    }
    const ExitCode code = job.Open(OrvRegistrySetValue);
    return code == kExitSuccess ? job.Report(L"deleting", job.key.DeleteValue(job.location.ValueName()))
                                : code;
}

ExitCode List(Job &job)
{
    const ExitCode code = job.Open(OrvRegistryEnumerateSubKeys);
    if (code != kExitSuccess)
        return code;
    OrvBasWinRegistryEnumerator children;
    OrvResult result = job.key.GetChildrenEnumeratorImpl(children);
    for (bool found = true; OrvSucceeded(result) && found;) {
        OrvStringzRefBase<wchar_t> name(nullptr);
        result = children.Next(name, found);
        if (OrvFailed(result) || !found)
            break;
        job.console.out.Append(name.characters, name.characters + children.GetLength());
        job.console.out.Print(L"\n");
    }
    return job.Report(L"reading", result);
}

ExitCode Watch(Job &job)
{
    const ExitCode code = job.Open(OrvRegistryNotify);
    if (code != kExitSuccess)
        return code;
    OrvBasEvent changed;
    OrvResult result = changed.Create(OrvBasEvent::ManualReset, false);
    if (OrvSucceeded(result))
        result = job.key.StartSingleWatchingKeyChange(changed, job.subtree);
    if (OrvFailed(result))
        return job.Report(L"watching", result);
    job.console.out.Print(L"watching\n");
    job.console.out.Flush();
    result = changed.Wait(job.timeoutMs);
    if (OrvSucceeded(result))
        job.console.out.Print(L"changed\n");
    return job.Report(L"waiting for a change of", result);
}

ExitCode Export(Job &job)
{
    const ExitCode code = job.Open(OrvRegistryRead);
    const wchar_t *const file = job.data.count ? job.data.texts.GetValue() : nullptr;
    return code == kExitSuccess ? ExportTree(job.command, job.console, job.key, job.location, file) : code;
}

ExitCode Import(Job &job)
{
    Input input;
    const wchar_t *const file = job.data.count ? job.data.texts.GetValue() : nullptr;
    const ExitCode code = OpenInput(job.command, job.console, file, input);
    return code == kExitSuccess ? ImportTree(job.command, job.console, input, job.view) : code;
}

constexpr Option kView = {L"--view", true, [](Job &job, const wchar_t *value) {
                              uint32_t bits = 0;
                              if (!ParseNumber(value, bits) || (bits != 32 && bits != 64))
                                  return false;
                              job.view = bits == 64 ? OrvRegistryView64 : OrvRegistryView32;
                              return true;
                          }};

constexpr Option kType = {L"--type", true, [](Job &job, const wchar_t *value) {
                              job.isTypeGiven = true;
                              return ParseTypeName(value, job.type);
                          }};

constexpr Option kTimeout = {L"--timeout", true, [](Job &job, const wchar_t *value) {
                                 uint32_t milliseconds = 0;
                                 if (*value == L'-' || !ParseNumber(value, milliseconds) ||
                                     milliseconds > INT32_MAX)
                                     return false;
                                 job.timeoutMs = static_cast<int>(milliseconds);
                                 return true;
                             }};

constexpr Option kRecursive = {L"--recursive", false, [](Job &job, const wchar_t *) {
                                   job.recursive = true;
                                   return true;
                               }};

constexpr Option kSubtree = {L"--subtree", false, [](Job &job, const wchar_t *) {
                                 job.subtree = true;
                                 return true;
                             }};

constexpr Action kActions[] = {
    {L"query", Query, Place::kEither, 0, {}},
    {L"get", Get, Place::kValue, 0, {}},
    {L"set", Set, Place::kEither, UINT32_MAX, {&kType}},
    {L"delete", Delete, Place::kEither, 0, {&kRecursive}},
    {L"list", List, Place::kKey, 0, {}},
    {L"watch", Watch, Place::kKey, 0, {&kSubtree, &kTimeout}},
    {L"export", Export, Place::kKey, 1, {}},
    {L"import", Import, Place::kNone, 1, {}},
};

const Action *FindAction(const wchar_t *name)
{
    for (const Action &each : kActions) {
        if (Equal(each.name, name))
            return &each;
    }
    return nullptr;
}

/// Takes the option if it comes next. `value` is null when its value is missing, and empty when the option
/// takes no value.
bool Take(const Option &option, ArgumentReader &arguments, const wchar_t *&value)
{
    value = L"";
    return option.hasValue ? arguments.TakeValueOption(option.name, value)
                           : arguments.TakeOption(option.name);
}

/// Takes the next option. Returns kExitSuccess, or reports the error.
ExitCode ReadOption(Job &job, const Action &action, ArgumentReader &arguments)
{
    const wchar_t *const shown = arguments.Peek();
    const Option *const known[] = {&kView, action.options[0], action.options[1]};
    for (const Option *const option : known) {
        const wchar_t *value = nullptr;
        if (!option || !Take(*option, arguments, value))
            continue;
        const bool isGood = value && option->store(job, value);
        return isGood ? kExitSuccess : WrongValue(job.command, job.console, shown, value);
    }
    return UsageError(job.command, job.console, L"there is no option", shown);
}

/// Reads the arguments after the action. Returns kExitSuccess, or reports the error.
ExitCode ReadArguments(Job &job, const Action &action, ArgumentReader &arguments)
{
    while (!arguments.IsAtEnd()) {
        if (arguments.IsAtOption()) {
            const ExitCode code = ReadOption(job, action, arguments);
            if (code != kExitSuccess)
                return code;
            continue;
        }
        const wchar_t *const argument = arguments.Take();
        if (!argument)
            break;
        if (!job.text && action.place != Place::kNone) {
            job.text = argument;
            continue;
        }
        if (job.data.count == action.mostData)
            return UsageError(job.command, job.console, L"one argument too many:", argument);
        const OrvResult result = job.data.Add(argument);
        if (OrvFailed(result))
            return ReportFailure(job.command, job.console, L"reading the arguments", result);
    }
    return kExitSuccess;
}

/// Parses the location and sets the key's root and view. Returns kExitSuccess, or reports the error.
ExitCode Locate(Job &job, const Action &action)
{
    if (!job.text)
        return UsageError(job.command, job.console, L"a location is missing behind", action.name);
    OrvResult result = ParseRegistryLocation(job.location, job.text);
    if (result == ORV_E_INVALID_ARGUMENT)
        return UsageError(job.command, job.console, L"this is no location:", job.text);
    if (OrvSucceeded(result) && action.place != Place::kEither &&
        job.location.hasValue != (action.place == Place::kValue))
        return UsageError(job.command, job.console,
                          job.location.hasValue ? L"a key is wanted, not the value"
                                                : L"a value is wanted, not the key",
                          job.text);
    if (OrvSucceeded(result))
        result = job.key.SetParent(job.location.root);
    if (OrvSucceeded(result))
        result = job.key.SetViewMode(job.view);
    return job.Report(L"selecting the view of", result);
}

ExitCode Run(const Command &command, Console &console, ArgumentReader &arguments)
{
    if (arguments.IsAtOption())
        return UnwantedArgument(command, console, arguments);
    const wchar_t *const name = arguments.Take();
    if (!name)
        return UsageError(command, console, L"an action is missing", nullptr);
    const Action *const action = FindAction(name);
    if (!action)
        return UsageError(command, console, L"there is no action", name);
    Job job(command, console);
    ExitCode code = ReadArguments(job, *action, arguments);
    if (code == kExitSuccess && action->place != Place::kNone)
        code = Locate(job, *action);
    return code == kExitSuccess ? action->run(job) : code;
}

} // namespace

const Command kRegCommand = {
    L"reg",
    L"reads, writes, watches, exports and imports the registry",
    L"Usage: orvtool reg query|get|list LOCATION\n"
    L"       orvtool reg set LOCATION [--type TYPE] [DATA...]\n"
    L"       orvtool reg delete LOCATION [--recursive]\n"
    L"       orvtool reg watch LOCATION [--subtree] [--timeout MS]\n"
    L"       orvtool reg export LOCATION [FILE]\n"
    L"       orvtool reg import [FILE]\n"
    L"\n"
    L"LOCATION is a key, such as HKCU\\Software\\Orv or HKEY_CURRENT_USER\\Software\\Orv, or a value of a "
    L"key,\n"
    L"after two backslashes: HKCU\\Software\\Orv\\\\Name; the default value is HKCU\\Software\\Orv\\\\\n"
    L"\n"
    L"  query   prints the facts about a key, and its values; or one value\n"
    L"  get     prints only the data of a value; the strings of a multi_sz line by line\n"
    L"  set     sets a value, and makes its key when it is missing; or makes a key\n"
    L"  delete  deletes a value, or a key; one with sub-keys only with --recursive\n"
    L"  list    prints the names of a key's sub-keys\n"
    L"  watch   waits for one change of a key, with --subtree also below it, at most MS milliseconds\n"
    L"  export  writes a key and all below it as the system's registry editor does (version 5.00,\n"
    L"          UTF-16) to standard output or to FILE, which is replaced when everything is written and\n"
    L"          is unchanged after a failure; keys that cannot be read are named and left out, and then\n"
    L"          the exit code is 1\n"
    L"  import  reads that format, in UTF-16 or UTF-8, and prints how much it changed. A fault in any\n"
    L"          line stops it before it changes anything; when the system refuses a change, the lines\n"
    L"          above it have already been applied\n"
    L"\n"
    L"  --type TYPE   sz (the default), expand_sz, multi_sz, dword, dword_be, qword, binary, none or a\n"
    L"                number. DATA is a text for sz and expand_sz; any number of texts for multi_sz; a\n"
    L"                number for dword, dword_be and qword; hexadecimal digits for all other types\n"
    L"  --view 32|64  which view of a 64-bit system (that of a 32-bit program)\n",
    Run,
};

} // namespace orvtool
