#pragma once
#include "base/SPMVarList.h"

namespace vldv::entry {

/// Settings common to all views, "global_options": declared with their defaults, read from the profile, and written
/// back whenever one changes, for the lifetime of this object.
class global_options final : private SPMVarListHandler {
public:
    global_options();
    global_options(const global_options&) = delete;
    global_options& operator=(const global_options&) = delete;
    ~global_options();

    SPMVarList& list() noexcept { return *options; }

private:
    void OnFireVariableChange(int index, const SPMVarList* list) override;

    VLGlobalVarList* options;
};

} // namespace vldv::entry
