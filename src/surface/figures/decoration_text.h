#pragma once
#include "platform/draw/geometry.h"

#include <string>
#include <string_view>
#include <vector>

namespace vldv::surface {

/// What a decoration file holds, in samples.
struct decoration_lists {
    std::vector<std::vector<CPoint>> curves;
    std::vector<CPoint> marks;
    std::vector<std::vector<CPoint>> profiles; ///< of sections
    bool operator==(const decoration_lists&) const = default;
};

/// The text of a .dec file: a line for each list, "\NAME: x,y;x,y;". Marks have one only when there are any.
std::string decoration_text(const decoration_lists& lists);

/// Reads such a text, up to byte 0x1A or a line that begins "\NCAFM image list". Curves and profiles are counted from 1
/// until one is missing; the first of several lines of a name counts; blanks around names and numbers do not. A list
/// with something that is no pair of integers is taken as empty, the others stay.
decoration_lists read_decoration_text(std::string_view text);

/// Keeps the points inside an image of this size; curves and profiles left without any go. \return points dropped
std::size_t drop_outside(decoration_lists& lists, CSize image);

} // namespace vldv::surface
