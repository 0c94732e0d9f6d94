#include "view/axes/axis_options.h"

#include "view/frame/option_rows.h"

#include <string>
#include <string_view>
#include <utility>

namespace vldv::view {

SPMVar axis_choice(const char* declaration, char letter, const VLAxesContainer& axes)
{
    std::string text = declaration;
    for (unsigned i = 0; i < axes.get_axes_number(); ++i)
        text += std::string(",") + letter + std::to_string(i) + "(" + axes.get_axis(i).get_units() + ")";
    return declared_option({text.c_str(), axes.get_axes_number() ? axes.get_axis(0).get_units() : ""});
}

void tie_margins(SPMVar* options, unsigned count)
{
    constexpr std::pair<std::string_view, const char*> ties[] = {
        {"LeftMargin", ",if(#CompactLegend,0,#LeftMarginOpt)"},
        {"RightMargin", ",if(#CompactLegend,0,#RightMarginOpt+if(#ShowZScale,65,0)+if(#ShowParameters || "
                        "#ShowStatistics,#ParametersWidth,0))"},
        {"TopMargin", ",if(#CompactLegend,0,#TopMarginOpt)"},
        // The usual space holds lines of the usual size: labels of the axis, then two of the file.
        {"BottomMargin", ",if(#CompactLegend,0,#BottomMarginOpt+if(#ShowAdditionalLegend,#TextVertSpace-"
                         "4*min(0,13-#text_size),0))"},
    };
    for (const auto& [name, expression] : ties)
        for (unsigned i = 0; i < count; ++i)
            if (options[i].get_name() == name) options[i].set_options(expression);
}

} // namespace vldv::view
