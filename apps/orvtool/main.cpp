extern "C" int OrvToolEntry()
{
    return 0;
}
