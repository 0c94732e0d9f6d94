#include "surface/views/QVSurfView.h"

#include "view/frame/option_rows.h"

#include <algorithm>
#include <cstring>

using namespace vldv;

namespace {

constexpr view::option_row added[] = {{"default_width,int,32,2048", "192"}, {"default_height,int,32,2048", "192"}};
/// Of a surface's options, with another default.
constexpr view::option_row changed[] = {{"CompactLegend(Compact View),boolean", "true"},
                                        {"ShowAdditionalLegend(Show file info),boolean", "false"}};

} // namespace

void CQVSurfView::GetOptionsList(SPMVar* vars, unsigned* count)
{
    unsigned before = 0;
    CSurfMathView::GetOptionsList(nullptr, &before);
    if (vars) {
        CSurfMathView::GetOptionsList(vars, count);
        const std::span inherited(vars, std::min(before, *count));
        for (const view::option_row& row : changed) {
            const SPMVar option = view::declared_option(row);
            for (SPMVar& each : inherited)
                if (std::strcmp(each.get_name(), option.get_name()) == 0) each = option;
        }
    }
    view::list_options(added, before, vars, count);
}
