#pragma once
#include "formats/pictures/tiff_page.h"
#include "formats/recording.h"

#include <string>
#include <vector>

namespace vldv::formats {

// Each appends what it makes of the current page and returns an error text, or empty.

/// Grey levels or palette indices of up to 8 bits.
std::string append_indexed(tiff_file& file, const tiff_page& page, recording& out);
/// Red, green and blue of up to 16 bits.
std::string append_colours(tiff_file& file, const tiff_page& page, recording& out);
/// Inks, luminances and what else the library turns into colours.
std::string append_converted(tiff_file& file, const tiff_page& page, recording& out);

/// True when the page's samples are values rather than something to look at.
bool holds_heights(const tiff_page& page) noexcept;
/// One height image a channel. \param used ids given so far
std::string append_heights(tiff_file& file, const tiff_page& page, std::vector<std::string>& used, recording& out);

} // namespace vldv::formats
