#include "orv/orv.h"

int OrvMain(int, wchar_t **)
{
    // Into an array of the caller: nothing is allocated, and a text that does not fit is refused.
    wchar_t characters[16];
    _ORV_UTF16CHAR_STR name = {0, 16, characters};
    OrvResult result = OrvBasPath::GetFilename(name, L"D:\\data/report.txt");
    OrvPrint(L"%08X %s\n", result, characters);
    unsigned int required = 0;
    result = OrvBasPath::CombinePaths(name, L"D:\\data", L"archive\\2024", OrvTerminated, OrvTerminated,
                                      &required);
    OrvPrint(L"%08X, %u characters are required\n", result, required);

    // Into a heap buffer, whose own text may be the source.
    OrvUtf16CharHeapBuffer path;
    result = OrvBasPath::CombinePaths(path, L"D:\\data", L"archive\\2024");
    if (OrvSucceeded(result))
        result = OrvBasPath::AppendPath(path, L"report.txt");
    if (OrvSucceeded(result))
        result = OrvBasPath::ChangeExtension(path, path.GetValue(), L"bak");
    if (OrvFailed(result))
        return 1;
    OrvPrint(L"%s\n", path.GetValue());

    // A reader/writer lock that processes share through a file. The file stays.
    result = OrvBasPath::GetTempDirPath(path);
    if (OrvSucceeded(result))
        result = OrvBasPath::AppendPath(path, L"orv-guide.lock");
    OrvBasWinLockFileResource writer;
    OrvBasWinLockFileResource reader; // this could be in another process
    if (OrvSucceeded(result))
        result = writer.OpenOrCreate(path.GetValue(), nullptr, true);
    if (OrvSucceeded(result))
        result = reader.Open(path.GetValue(), true);
    if (OrvFailed(result))
        return 1;
    writer.AcquireExclusive(-1);
    OrvPrint(L"while it is written: %08X\n", reader.AcquireShared(0));
    writer.Release();
    OrvPrint(L"afterwards: %08X\n", reader.AcquireShared(0));

    // A mutex of the same file, whatever path names the file.
    OrvBasWinLockFile lockFile;
    result = lockFile.Create(path.GetValue(), false);
    const OrvBasWinLockFileHolder holder(&lockFile, -1);
    OrvPrint(L"%08X, held: %s\n", result, holder.IsHeld() ? L"yes" : L"no");
    return OrvFailed(result) ? 1 : 0;
}
