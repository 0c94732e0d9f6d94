#include "spectra/views/histogram_options.h"

#include "view/axes/axis_options.h"
#include "view/frame/option_rows.h"

namespace vldv::spectra {

namespace {

constexpr view::option_row rows[] = {
    {"TextVertSpace(Text Vertical Space),int,20,,,min(##,#BottomMargin)", "20"},
    {"LeftMarginOpt(Left Margin),int,50,1000", "50"},
    {"RightMarginOpt(Right Margin),int,25,1000", "25"},
    {"TopMarginOpt(Top Margin),int,10,1000", "10"},
    {"BottomMarginOpt(Bottom Margin),int,45,1000", "45"},
    {"NBars(Number of Bars),enum,Auto,Manual", "Auto"},
    {"NBars.manual.count(Count),int,2,65536", "10"},
    {"BarColor(Bar Color),int,0,(1<<25)-1,hex(##)", "0x000000"},
};
/// Behind the choice of the axis.
constexpr view::option_row moreRows[] = {
    {"CountScale(Count Axis),enum,Linear,Logarithmic", "Linear"},
    {"ShowCumulative(Show Cumulative Curve),boolean", "false"},
    {"CumulativeColor(Cumulative Color),int,0,(1<<25)-1,hex(##)", "0x008000"},
};

} // namespace

std::vector<SPMVar> histogram_options(const VLAxesContainer* values)
{
    static const VLAxesContainer none;
    std::vector<SPMVar> options;
    for (const view::option_row& row : rows) options.push_back(view::declared_option(row));
    options.push_back(view::axis_choice("AxisZ(Axis X),enum", 'z', values ? *values : none));
    for (const view::option_row& row : moreRows) options.push_back(view::declared_option(row));
    return options;
}

} // namespace vldv::spectra
