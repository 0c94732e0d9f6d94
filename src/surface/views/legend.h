#pragma once
#include "base/VLAxis.h"
#include "platform/draw/DC.h"
#include "surface/figures/measure/statistics.h"
#include "surface/figures/selection_state.h"

#include <functional>
#include <string>
#include <vector>

class CDCView;

namespace vldv::surface {

/// A line of the parameter panel.
struct parameter_line {
    std::string name, value;
};

/// The parameters that a kept list names: for each entry, which ends with "|", its last character is a flag ("+": the
/// document's value) and the rest the name.
/// \param value  looks a name up; the flag tells whether in the document's texts
std::vector<parameter_line> listed_parameters(std::string_view list,
                                              const std::function<std::string(const std::string&, bool)>& value);

/// A text cut so that it fits into `width` pixels by its average character, with "..." behind what is left.
std::string cut_text(const std::string& text, int textWidth, double width);

/// What the legend tells of.
struct legend_content {
    std::string path, imageName;
    VLAxis x, y, z;
    CSize samples;                          ///< of the whole image
    std::vector<parameter_line> parameters; ///< none unless they are shown
    std::vector<statistics_row> statistics; ///< none unless the panel is shown
    const selection_state* drawn = nullptr;
};

/// Legends around or over the picture of a surface, by the options of its view. `dc` has the legend's font.
void draw_measure_text(CDC& dc, CDCView& view, const measure_text& text);
void draw_legend_texts(CDC& dc, CDCView& view, const legend_content& content);
void draw_legend_scale_mark(CDC& dc, CDCView& view, const legend_content& content);
/// Axes and grid of the full legend.
void draw_legend_axes(CDC& dc, CDCView& view, const legend_content& content);

} // namespace vldv::surface
