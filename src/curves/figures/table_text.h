#pragma once
#include "base/VLAxis.h"
#include "curves/figures/profile.h"
#include "vldv_api.h"

#include <span>
#include <string>

namespace vldv::curves {

/// How numbers are written in a table.
struct number_style {
    bool isScientific = false;
    std::string decimalPoint = ".";
};
/// The style of what goes to other programs by the clipboard: scientific, with the decimal separator of the user.
number_style clipboard_style();

/// A curve as a table: a line of units, "X,µm<tab>Y,nm", then a line a sample of position and value, 12 digits, or 12
/// behind the point of scientific ones.
std::string table_text(std::span<const std::int16_t> curve, const VLAxis& positions, const VLAxis& values,
                       const number_style& style = {});

/// A section as it is exported: what it is, where it runs when the image has more than one dimension, and the table of
/// each curve under its number, from 1. \param first,last  numbers of the curves, from 0, both included
VLDV_INTERNAL_API std::string section_text(const profile& section, std::span<const grid_point> points,
                                           std::size_t dimensions, const VLAxis& positions, const VLAxis& values,
                                           unsigned first, unsigned last);

} // namespace vldv::curves
