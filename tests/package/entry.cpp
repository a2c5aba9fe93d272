
// A program without a C runtime: what its entry returns is its exit code.
extern "C" int Entry()
{
    return CreateOrJoin(L"OrvPackageTest");
}
