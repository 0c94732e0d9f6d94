#pragma once
#include <string>

namespace vldv::surface {

struct legend_content;

/// What the legends show as two lines of cells between tabs, names and values: file, parameters, statistics and the
/// measurement on show. Empty when nothing is shown.
/// \param withFile    path, sides and image first
/// \param direction   of the image's lines, in brackets behind the image's name
/// \param withHeader  the line of names too
std::wstring clipboard_text(const legend_content& content, bool withFile, const std::string& direction,
                            bool withHeader);

} // namespace vldv::surface
