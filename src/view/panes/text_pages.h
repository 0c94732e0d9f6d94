#pragma once
#include "platform/draw/DC.h"
#include "vldv_api.h"

#include <cstddef>
#include <string>
#include <vector>

namespace vldv::view {

/// Lines of a text as they stand on paper: cells between tabs below each other in every run of lines that have some,
/// two blanks apart; a line end of any kind ends a line.
std::vector<std::wstring> lines_in_columns(const std::wstring& text);

/// Where the second and further columns begin, in characters, when all tables of a text stand in the same columns.
VLDV_INTERNAL_API std::vector<std::size_t> column_starts(const std::wstring& text);

/// Lines of at most `columns` characters: longer ones go on in the next, indented by two. `columns` counts as 3 at
/// least.
std::vector<std::wstring> broken_lines(const std::vector<std::wstring>& lines, std::size_t columns);

/// A text on sheets of paper, in a type of fixed width, with the title above and the number below each.
class text_pages {
public:
    /// \param margins_  thousandths of an inch
    text_pages(const std::wstring& text, std::wstring title_, const CRect& margins_);

    /// Draws a page, from 0, on the surface of the whole sheet. \return another one follows
    bool draw(CDC& dc, int page);

private:
    std::vector<std::wstring> lines;
    std::vector<std::wstring> broken; ///< for sheets of `brokenAt` characters
    std::size_t brokenAt = 0;
    std::wstring title;
    CRect margins;
};

} // namespace vldv::view
