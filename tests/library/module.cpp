// A module as others build it: it sees contract headers alone.
#include "module.h"

#include "base/text.h"
#include "platform/files/Exceptions.h"

namespace {

unsigned set_global(const char* name, const char* value)
{
    VLGlobalVarList* const list = VLGlobalVarList::GetVarList("global_options");
    const unsigned holders = list->references();
    list->set_var(name, value);
    list->ReleaseList();
    return holders;
}

const void* heap()
{
    void* (*const allocate)(std::size_t) = &VLAllocator::operator new;
    return reinterpret_cast<const void*>(allocate);
}

} // namespace

extern "C" VLDV_API const test_module_face test_module = {
    set_global,
    [](SPMVarList& list, const char* name, const char* value) { list.set_var(name, value); },
    [](unsigned count) { return new SPMVar[count]; },
    [](const wchar_t* text) { return wchar2utf8(text); },
    [] { throw CMemoryException(); },
    heap,
};
