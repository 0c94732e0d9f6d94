#include "spectra/views/features_options.h"

#include "base/SPMDataStream.h"
#include "view/axes/axis_options.h"
#include "view/frame/option_rows.h"

namespace vldv::spectra {

namespace {

constexpr view::option_row rows[] = {
    {"threshold(Threshold)", ""},
    {"threshold.mode(Mode),enum,Auto,Manual,Otsu,Watershed", "Auto"},
    {"threshold.manual.level(Level),double,0,1", "0.2"},
    {"mask_type(Mask type),enum,None,Mask,Contour,Skeleton", "Contour"},
    {"show_marks(Show marks),boolean", "false"},
    {"keep_inner(Keep Inner),boolean", "true"},
    {"contour_color(Contour Color),int", "0x00007f00"},
    {"skeleton_color(Skeleton Color),int", "0x00007f00"},
    {"brush_radius(Mask brush radius),int,0,,##*2+1", "0"},
};
/// Behind the choices of axes.
constexpr view::option_row moreRows[] = {
    {"threshold.depth(Depth of valleys),double,0,1", "0.1"},
    {"exclude_border(Leave out features on the border),boolean", "false"},
};

} // namespace

std::vector<SPMVar> features_options(const SPMDataStream* stream)
{
    static const VLAxesContainer none;
    const auto side = [&](unsigned dimension) -> const VLAxesContainer& {
        return stream && dimension < stream->get_dimensions_number() ? stream->get_dimension(dimension) : none;
    };
    std::vector<SPMVar> options;
    for (const view::option_row& row : rows) options.push_back(view::declared_option(row));
    options.push_back(view::axis_choice("AxisZ(Axis Z),enum", 'z', stream ? stream->values : none));
    options.push_back(view::axis_choice("AxisX(Axis X),enum", 'x', side(0)));
    options.push_back(view::axis_choice("AxisY(Axis Y),enum", 'y', side(1)));
    for (const view::option_row& row : moreRows) options.push_back(view::declared_option(row));
    return options;
}

} // namespace vldv::spectra
