#include "curves/views/section_options.h"

#include "base/SPMDataStream.h"
#include "view/axes/axis_options.h"

#include <string_view>
#include <utility>

namespace vldv::curves {

namespace {

// What sizes drawing ends where no screen would show it: a file of options may hold any number.
constexpr view::option_row rows[] = {
    {"marks(Marks)", ""},
    {"marks_mode(Mode),enum,Vertical Lines,Crossbar,None", "Vertical Lines"},
    {"Values(Values),enum,Absolute,Relative", "Relative"},
    {"TextVertSpace(Text Vertical Space),int,20,,,min(##,#BottomMargin)", "20"},
    {"show_line_number(Line/column number),boolean", "true"},
    {"ShowSpectrum(Show Spectrum),boolean", "false"},
    {"ShowForceCurveStats(Show Statistics),boolean", "false"},
    {"zero_threshold(Zero noise level),double,0.0", "1.0"},
    {"window_r(Window),double,0.0", "100.0"},
    {"slant_threshold(Slant noise level),double,0.0", "1.0"},
    {"ShowForceCurveMin(Show Local Minimums),boolean", "false"},
    {"ShowForceCurveSquares(Show Valleys),boolean", "false"},
    {"ShowTrendLine(Show Trend Line),boolean", "false"},
    {"HorizontalAxis(X Scale),enum,Fixed Width,Fixed Scale", "Fixed Width"},
    {"scaling.x(Scaling),enum,Absolute,Relative", "Relative"},
    {"ZScale(Y Scale)", ""},
    {"ZScale.zero(Zero level),enum,Min,Absolute,Histogram", "Min"},
    {"ZScale.Scaling(Scaling),enum,Auto,Fixed", "Auto"},
    {"ZScale.Scaling.fixed.value(Range),double,0.0", "1.0"},
    {"ZScale.Scaling.fixed.units(Units),string", ""},
    {"ZScale.Scaling.fixed.zero_mode(Start value),enum,Min,Fixed", "Min"},
    {"ZScale.Scaling.fixed.zero.value(Start),double", "0.0"},
    {"VerticalValue(Y Value),enum,Height,Angle", "Height"},
    {"HorizontalValue(X Value),enum,Length,Full Length,Integral,Curve Square,Time", "Length"},
    {"LeftMarginOpt(Left Margin),int,50,1000", "50"},
    {"RightMarginOpt(Right Margin),int,25,1000", "25"},
    {"TopMarginOpt(Top Margin),int,10,1000", "10"},
    {"BottomMarginOpt(Bottom Margin),int,45,1000", "45"},
    {"line1color(Odd Line Color),int,0,(1<<25)-1,hex(##)", "0x008000"},
    {"line2color(Even Line Color),int,0,(1<<25)-1,hex(##)", "0x0000ff"},
    {"show_only(Show),enum,All lines,Active line,Active trace-retrace", "All lines"},
    {"normalize_spectrum(Normalize Spectrum),boolean", "true"},
    {"spectrum_mode(Spectrum Calculation),enum,Power,Magnitude", "Power"},
    {"line.width(Line width),int,0,100", "1"},
    {"profile.width(Profile width),int,0,1000,##*2+1", "0"},
};

} // namespace

std::vector<SPMVar> section_options(const SPMDataStream* stream, unsigned dimension)
{
    std::vector<SPMVar> options;
    for (const view::option_row& row : rows) options.push_back(view::declared_option(row));
    static const VLAxesContainer none;
    const unsigned dimensions = stream ? stream->get_dimensions_number() : 0;
    if (!stream || dimensions > 0)
        options.push_back(view::axis_choice(
            "AxisX(Axis X),enum", 'x', stream ? stream->get_dimension(dimension < dimensions ? dimension : 0) : none));
    options.push_back(view::axis_choice("AxisZ(Axis Y),enum", 'y', stream ? stream->values : none));
    return options;
}

void tie_section_margins(SPMVar* options, unsigned count)
{
    constexpr std::pair<std::string_view, const char*> ties[] = {
        {"LeftMargin", ",#LeftMarginOpt"},
        {"RightMargin", ",#RightMarginOpt"},
        {"TopMargin", ",#TopMarginOpt"},
        // Figures of the active curve stand in lines of their own.
        {"BottomMargin", ",#BottomMarginOpt+(#text_size+3)*(if(#ShowForceCurveStats,1,0)+if(#ShowTrendLine,1,0)"
                         "+if(#ShowForceCurveStats && #ShowForceCurveSquares,1,0))"},
    };
    for (const auto& [name, expression] : ties)
        for (unsigned i = 0; i < count; ++i)
            if (options[i].get_name() == name) options[i].set_options(expression);
}

} // namespace vldv::curves
