#include "platform/app/RuntimeClass.h"

#include <map>
#include <string>

namespace vldv {

namespace {

std::map<std::string, const CRuntimeClass*, std::less<>>& classes()
{
    static std::map<std::string, const CRuntimeClass*, std::less<>> entered;
    return entered;
}

} // namespace

void register_runtime_class(const CRuntimeClass& entry) { classes().insert_or_assign(entry.name, &entry); }

const CRuntimeClass* find_runtime_class(std::string_view name) noexcept
{
    const auto found = classes().find(name);
    return found == classes().end() ? nullptr : found->second;
}

} // namespace vldv
