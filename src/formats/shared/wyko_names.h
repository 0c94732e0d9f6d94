#pragma once
#include <string>

/// What a WYKO interferometer's binary files and its texts have in common.
namespace vldv::formats {

/// True for the names of blocks whose numbers are heights.
bool holds_wyko_heights(const std::string& name);
/// What the document is told when no side of a point is known.
constexpr const char* noWykoPixelSize = "no Pixel_size in the file: sides are counted in points";

} // namespace vldv::formats
