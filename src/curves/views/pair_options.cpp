#include "curves/views/pair_options.h"

#include "view/axes/axis_options.h"
#include "view/frame/option_rows.h"

#include <string_view>
#include <utility>

namespace vldv::curves {

namespace {

constexpr view::option_row rows[] = {
    {"RightMarginOpt(Right Margin),int,25,1000", "25"},
    {"TopMarginOpt(Top Margin),int,10,1000", "10"},
    {"BottomMarginOpt(Bottom Margin),int,45,1000", "45"},
    {"ShowParametricCurveStats(Show Statistics),boolean", "false"},
    {"ShowMarks(Show Marks), boolean", "true"},
    {"marks_mode(Marks Mode),enum,Vertical Lines,Crosses,Crossbar", "Vertical Lines"},
    {"line1color(Odd Line Color),int,0,(1<<25)-1,hex(##)", "0x008000"},
    {"show_only(Show),enum,All lines,Active line,Active trace-retrace", "All lines"},
    {"line2color(Even Line Color),int,0,(1<<25)-1,hex(##)", "0x0000ff"},
    {"LeftMarginOpt(Left Margin),int,50,1000", "50"},
    {"slant_threshold(Slant noise level),double,0.0", "1.0"},
    {"zero_threshold(Zero noise level),double,0.0", "1.0"},
    {"start_level(Start level),double,0.0,1.0", "1.0"},
};

} // namespace

std::vector<SPMVar> pair_options(const VLAxesContainer* x, const VLAxesContainer* y)
{
    static const VLAxesContainer none;
    std::vector<SPMVar> options;
    for (const view::option_row& row : rows) options.push_back(view::declared_option(row));
    options.push_back(view::axis_choice("AxisX(Axis X),enum", 'x', x ? *x : none));
    options.push_back(view::axis_choice("AxisZ(Axis Y),enum", 'y', y ? *y : none));
    return options;
}

void tie_pair_margins(SPMVar* options, unsigned count)
{
    constexpr std::pair<std::string_view, const char*> ties[] = {
        {"LeftMargin", ",#LeftMarginOpt"},
        {"RightMargin", ",#RightMarginOpt"},
        {"TopMargin", ",#TopMarginOpt"},
        // Figures of the active curve stand in a second line.
        {"BottomMargin", ",#BottomMarginOpt+if(#ShowParametricCurveStats,#text_size+3,0)"},
    };
    for (const auto& [name, expression] : ties)
        for (unsigned i = 0; i < count; ++i)
            if (options[i].get_name() == name) options[i].set_options(expression);
}

} // namespace vldv::curves
