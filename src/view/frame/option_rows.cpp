#include "view/frame/option_rows.h"

#include <algorithm>
#include <cassert>

namespace vldv::view {

SPMVar declared_option(const option_row& row)
{
    SPMVar variable;
    variable.Init(row.declaration);
    [[maybe_unused]] const bool accepted = variable.from_string(row.defaultText);
    assert((accepted || !*row.defaultText) && "a default that its declaration accepts");
    return variable;
}

void list_options(std::span<const option_row> own, unsigned before, SPMVar* vars, unsigned* count)
{
    const unsigned all = before + static_cast<unsigned>(own.size());
    if (!vars) {
        *count = all;
        return;
    }
    for (unsigned i = before; i < std::min(all, *count); ++i) vars[i] = declared_option(own[i - before]);
}

} // namespace vldv::view
