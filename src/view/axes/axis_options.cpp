#include "view/axes/axis_options.h"

#include "view/frame/option_rows.h"

#include <span>
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

namespace {

using tie = std::pair<std::string_view, const char*>;

void tie_options(std::span<const tie> ties, SPMVar* options, unsigned count)
{
    for (const auto& [name, expression] : ties)
        for (unsigned i = 0; i < count; ++i)
            if (options[i].get_name() == name) options[i].set_options(expression);
}

} // namespace

void tie_margins(SPMVar* options, unsigned count)
{
    constexpr tie ties[] = {
        {"LeftMargin", ",if(#CompactLegend,0,#LeftMarginOpt)"},
        {"RightMargin", ",if(#CompactLegend,0,#RightMarginOpt+if(#ShowZScale,65,0)+if(#ShowParameters || "
                        "#ShowStatistics,#ParametersWidth,0))"},
        {"TopMargin", ",if(#CompactLegend,0,#TopMarginOpt)"},
        // The usual space holds lines of the usual size: labels of the axis, then two of the file.
        {"BottomMargin", ",if(#CompactLegend,0,#BottomMarginOpt+if(#ShowAdditionalLegend,#TextVertSpace-"
                         "4*min(0,13-#text_size),0))"},
    };
    tie_options(ties, options, count);
}

void tie_plain_margins(SPMVar* options, unsigned count)
{
    constexpr tie ties[] = {
        {"LeftMargin", ",#LeftMarginOpt"},
        {"RightMargin", ",#RightMarginOpt"},
        {"TopMargin", ",#TopMarginOpt"},
        {"BottomMargin", ",#BottomMarginOpt"},
    };
    tie_options(ties, options, count);
}

} // namespace vldv::view
