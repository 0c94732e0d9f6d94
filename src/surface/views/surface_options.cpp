#include "surface/views/surface_options.h"

#include "view/axes/axis_options.h"
#include "view/frame/option_rows.h"

namespace vldv::surface {

namespace {

constexpr view::option_row rows[] = {
    {"CompactLegend(Compact View),boolean", "false"},
    {"CompactLegend.scale_mark(Scale mark),boolean", "true"},
    {"CompactLegend.scale_mark.direction(Direction),enum,Vertical,Horizontal", "Vertical"},
    {"CompactLegend.scale_mark.position(Position),enum,Top left,Bottom left,Top right,Bottolm right", "Top right"},
    {"CompactLegend.scale_mark.margin(Margin),double,0,1,,##*100", "0.05"},
    {"CompactLegend.scale_mark.size(Size, nm),double,0,1e12", "1000.0"},
    {"CompactLegend.z_scale(Z Scale),boolean", "false"},
    {"CompactLegend.z_scale.direction(Direction),enum,Vertical,Horizontal", "Vertical"},
    {"CompactLegend.z_scale.position(Z Scale position),enum,Top left,Bottom left,Top right,Bottolm right", "Top left"},
    {"CompactLegend.z_scale.margin(Z Scale margin),double,0,1,,##*100", "0.05"},
    {"CompactLegend.z_scale.size(Z Scale size),double,0,1,,##*100", "0.25"},
    {"CompactLegend.z_scale.width(Z Scale width),double,0,0.1,,##*100", "0.0625"},
    {"CompactLegend.transparent(Transparent background),boolean", "true"},
    {"FullLegend.scale_mark(Scale mark),boolean", "false"},
    {"FullLegend.z_scale.width(Z Scale width),double,0,0.1,,##*100", "0.03125"},
    {"ShowZScaleOpt(Show Z Scale),boolean", "true"},
    {"ShowZScale,boolean,,if(#ShowLegend,if(#highlight,false,#ShowZScaleOpt),false)", "false"},
    {"ShowAdditionalLegend(Show file info),boolean", "true"},
    {"ShowParameters(Show Parameters),boolean", "false"},
    {"ShowStatistics(Show Statistics),boolean", "false"},
    {"ParametersWidth(Parameters width),int,50,2000", "100"},
    {"TextVertSpace(Text Vertical Space),int,20,1000", "40"},
    {"LeftMarginOpt(Left Margin),int,50,1000", "50"},
    {"RightMarginOpt(Right Margin),int,10,1000", "25"},
    {"TopMarginOpt(Top Margin),int,10,1000", "10"},
    {"BottomMarginOpt(Bottom Margin),int,20,1000", "25"},
    {"scaling.x(X Scale),enum,Relative,Absolute", "Relative"},
    {"scaling.y(Y Scale),enum,Relative,Absolute", "Relative"},
    {"scaling.z(Z Scale),enum,Relative,Absolute", "Absolute"},
    {"toolbar(Toolbar),boolean", "true"},
    {"SelColor(Selection Color),int", "0x0064c800)"},
    {"SelectionFill(Selection Fill),enum,None,Inner,Outer", "Outer"},
    {"SelectionSynchr(Synchronous Selection),boolean", "true"},
    {"section.line.style(Style),enum,Solid,Dash,Dot,Dash-Dot,Dash-Dot-Dot", "Dot"},
    {"section.line.solid.width(Width),int,1,100", "1"},
    {"section.line.color(Color),int", "0x0000ff"},
    {"ShowROI(Region of Interest),boolean", "true"},
    {"ShowOverlay(Show overlay),boolean", "true"},
    {"highlight(Highlight),boolean", "false"},
    {"highlight.x(X),double,-1,1", "1.0"},
    {"highlight.y(Y),double,-1,1", "1.0"},
    {"invert(Invert),boolean", "false"},
    {"text.compact_length(Compact text length),int,0,1000", "14"},
    {"lengthy_object.simplify.r,double,0", "0.0"},
    {"context_menu.cursor_mode(Show cursor mode commands),boolean", "false"},
    {"context_menu.file_operations(Show file commands),boolean", "false"},
    {"context_menu.filters(Show mathematics commands),boolean", "false"},
    {"cursor_snap(Snap cursor),enum,dis(Don't snap),To Maximum,To Minimum", "dis"},
    {"cursor_snap.radius(Snap radius),int,1,1000", "10"},
};

} // namespace

std::vector<SPMVar> surface_options(const SPMDataStream* stream)
{
    std::vector<SPMVar> out;
    for (const view::option_row& row : rows) out.push_back(view::declared_option(row));
    if (!stream) return out;
    if (stream->get_dimensions_number() > 0)
        out.push_back(view::axis_choice("AxisX(Axis X),enum", 'x', stream->get_dimension(0)));
    if (stream->get_dimensions_number() > 1)
        out.push_back(view::axis_choice("AxisY(Axis Y),enum", 'y', stream->get_dimension(1)));
    out.push_back(view::axis_choice("AxisZ(Axis Z),enum", 'z', stream->values));
    return out;
}

} // namespace vldv::surface
