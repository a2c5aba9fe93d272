#include "orv/orv.h"

int OrvMain(int, wchar_t **)
{
    // A handle refers to its root until it opens a key below it. Missing keys on the path are created.
    OrvBasWinRegistryHandle key(OrvRegistryCurrentUser);
    OrvResult result = key.OpenOrCreateKey(L"Software\\OrvGuide\\Settings");
    if (OrvSucceeded(result))
        result = key.SetDWordValue(80, L"Port");
    if (OrvSucceeded(result))
        result = key.SetStringValue(L"%TEMP%\\log", L"Log", true); // the value, then its name
    if (OrvFailed(result))
        return 1;

    // If there is a default, a missing value is not a failure.
    uint32_t port = 0;
    uint32_t limit = 0;
    result = key.GetDWordValue(port, L"port"); // in any letter case
    if (OrvFailed(result))
        return 1;
    const OrvResult defaulted = key.GetDWordValueWithDefault(limit, L"Limit", 10);
    OrvPrint(L"%u, %u (%08X)\n", port, limit, defaulted);
    OrvPrint(L"as a number: %08X\n", key.GetDWordValue(limit, L"Log"));

    // Strings go into the caller's own container. Expanding replaces variables by their values.
    OrvUtf16HeapString log;
    result = key.GetStringValue(log, L"Log");
    OrvPrint(L"%s\n", log.GetCharacters());
    if (OrvSucceeded(result))
        result = key.GetStringValueWithDefault(log, L"Language", L"en");
    OrvPrint(L"%s (%08X)\n", log.GetCharacters(), result);

    // Names one by one.
    OrvBasWinRegistryEnumerator values;
    OrvStringzRefBase<wchar_t> name(L"");
    bool found = true;
    if (OrvSucceeded(result))
        result = key.GetValuesEnumeratorImpl(values);
    uint32_t count = 0;
    while (OrvSucceeded(result) && OrvSucceeded(result = values.Next(name, found)) && found)
        count++;
    OrvPrint(L"%u values\n", count);

    // Opening starts from the parent; every other operation starts from the current key.
    key.CloseKey();
    result = key.DeleteKey(L"Software\\OrvGuide", true);
    OrvPrint(L"deleted: %08X, then %08X\n", result, key.OpenKeyIfExists(L"Software\\OrvGuide"));
    return OrvFailed(result) ? 1 : 0;
}
