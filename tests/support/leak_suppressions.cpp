// What fonts and the desktop toolkit keep until the program ends, each line a function or library of theirs.

extern "C" const char* __lsan_default_suppressions();

extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libfontconfig\n"
           "leak:libQt6\n";
}
