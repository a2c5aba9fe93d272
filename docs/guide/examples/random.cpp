#include "orv/orv.h"

int OrvMain(int, wchar_t **)
{
    // Every process gets the same numbers: good for tests that can be repeated, useless for secrets.
    const uint32_t first = OrvGenerateRandomDWord();
    const uint32_t second = OrvGenerateRandomDWord();
    OrvPrint(L"%u %u\n", first, second);

    // Weights are compared with a number below 0.5: an event that follows a sum of 0.5 never comes.
    const double weights[] = {0.1, 0.2, 0.2};
    uint32_t counts[4] = {};
    for (uint32_t i = 0; i < 1000; i++)
        counts[OrvChooseRandomEvent(3, weights)]++;
    OrvPrint(L"%u + %u + %u = 1000\n", counts[0], counts[1], counts[2]);

    // An identifier that differs from every other one, of any process.
    _OrvGuid a;
    _OrvGuid b;
    OrvResult result = OrvGuidUtils::CreateGuid(a);
    if (OrvSucceeded(result))
        result = OrvGuidUtils::CreateGuid(b);
    if (OrvFailed(result))
        return 1;
    bool different = false;
    for (uint32_t i = 0; i < 16; i++)
        different = different || a.bytes[i] != b.bytes[i];
    OrvPrint(L"two GUIDs differ: %s\n", different ? L"yes" : L"no");

    // Text and back. The text has 36 characters and needs room for a terminator.
    wchar_t characters[37];
    _ORV_UTF16CHAR_STR text = {0, 37, characters};
    result = OrvGuidUtils::GetString(a, text);
    if (OrvSucceeded(result))
        result = OrvGuidUtils::Parse(b, OrvStringRefBase<wchar_t>(text.characters, text.length));
    OrvPrint(L"%u characters, %08X\n", text.length, result);
    return OrvFailed(result) ? 1 : 0;
}
