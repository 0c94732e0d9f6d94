#pragma once
#include "curves/figures/profile.h"
#include "plugins/PluginRequest.h"

#include <span>
#include <vector>

namespace vldv::curves {

/// "marks_mode", and where the marks stand: fractions of the curve from 0 to 1.
struct section_marks {
    bool isCrossbar = false;
    double first = 0.0, second = 1.0; ///< the two vertical marks
    double crossbar = 0.5;
};

/// What the marks of a section select, as modules are told: a sample or a range of each curve of a one-dimensional
/// image, a point, segment or polyline of a surface, the points of a line through a volume. Nothing for other images.
std::vector<VLPluginDataSelection> section_selections(const grid& image, std::span<const grid_point> points,
                                                      const profile& section, const section_marks& marks);
/// Of a volume as many as there is room for, else all or none. \return how many were written
unsigned write_selections(std::span<const VLPluginDataSelection> found, std::size_t dimensions,
                          VLPluginDataSelection* entries, unsigned capacity);

/// Gives `target`, which has the outline of `source` and no samples, what is selected: the ranges of its curves, each
/// without its last sample and filled up to the longest with the sample that then is its last; the samples along the
/// segment or polyline. A polyline gets a length of one more than its samples. When nothing is selected, the curves of
/// the section. Selections that leave the source select nothing.
void copy_section(SPMDataStream& target, const SPMDataStream& source, std::span<const VLPluginDataSelection> selected,
                  const profile& section);

} // namespace vldv::curves
