#include "base/variables/global_option.h"

#include "base/SPMVarList.h"

namespace vldv::base {

SPMVar global_option(const char* name)
{
    VLGlobalVarList* const list = VLGlobalVarList::GetVarList("global_options");
    SPMVar found = list->get_var(name);
    list->ReleaseList();
    return found;
}

} // namespace vldv::base
