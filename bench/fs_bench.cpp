// Paths, compared with the platform's own completion of paths.

#include "bench.h"

#include "nt/programs.h"
#include "orv/fs/path.h"

namespace
{

wchar_t array[300];

constexpr wchar_t kPath[] = L"C:\\Program Files\\Vendor\\Product\\component.dll";

} // namespace

BENCHMARK(PathsAsText)
{
    // The platform has nothing that works on the text alone; its completion of a path is the nearest.
    const auto peer = [] { bench::Use(RtlGetFullPathName_U(kPath, sizeof array, array, nullptr)); };
    bench::Compare(
        {"path: file name", 45, "RtlGetFullPathName_U"},
        [] {
            _ORV_UTF16CHAR_STR out = {0, 300, array};
            bench::Use(OrvBasPath::GetFilename(out, kPath));
        },
        peer);
    bench::Compare(
        {"path: directory", 45, "RtlGetFullPathName_U"},
        [] {
            _ORV_UTF16CHAR_STR out = {0, 300, array};
            bench::Use(OrvBasPath::GetDirectoryPathFromFilenamePath(out, kPath));
        },
        peer);
    bench::Compare(
        {"path: combine", 45, "RtlGetFullPathName_U"},
        [] {
            _ORV_UTF16CHAR_STR out = {0, 300, array};
            bench::Use(OrvBasPath::CombinePaths(out, kPath, L"sub\\file.txt"));
        },
        peer);
    bench::Compare(
        {"path: full", 45, "RtlGetFullPathName_U"},
        [] {
            _ORV_UTF16CHAR_STR out = {0, 300, array};
            bench::Use(OrvBasPath::GetFullPath(out, kPath));
        },
        peer);
}
