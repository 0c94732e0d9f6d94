#pragma once
#include "base/SPMVarList.h"

/// What the module of the tests exports, by name.
struct test_module_face {
    /// Sets a variable of "global_options"; the number of holders of that list while it does.
    unsigned (*setGlobal)(const char* name, const char* value);
    /// Changes a variable of a list of the program.
    void (*change)(SPMVarList& list, const char* name, const char* value);
    /// An array that the program deletes; the classes of the library bring their heap along.
    SPMVar* (*makeVariables)(unsigned count);
    /// A text that the program releases with `vlutl_free`.
    char* (*makeText)(const wchar_t* text);
    /// A type of exception of the library, thrown from the module.
    void (*fail)();
    /// Where the module finds the one place that hands out memory.
    const void* (*heap)();
};
