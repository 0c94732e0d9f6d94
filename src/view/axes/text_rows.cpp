#include "view/axes/text_rows.h"

#include <algorithm>

namespace vldv::view {

namespace {

/// Takes what stands before the next `end` off the front of `rest`, and the end with it.
std::wstring_view taken(std::wstring_view& rest, wchar_t end)
{
    const std::size_t at = rest.find(end);
    const std::wstring_view front = rest.substr(0, at);
    rest.remove_prefix(at == std::wstring_view::npos ? rest.size() : at + 1);
    return front;
}

} // namespace

std::wstring in_rows(std::wstring_view text, const std::function<bool(std::wstring_view row)>& fits)
{
    std::wstring rows;
    while (!text.empty()) {
        std::wstring_view line = taken(text, L'\n');
        if (line.ends_with(L'\r')) line.remove_suffix(1);
        std::wstring row(taken(line, L'\t'));
        while (!line.empty()) {
            const std::wstring_view cell = taken(line, L'\t');
            if (std::wstring longer = row + L'\t' + std::wstring(cell); fits(longer) || row.empty()) {
                row = std::move(longer);
            } else {
                rows += row + L'\n';
                row = cell;
            }
        }
        rows += row + (text.empty() ? L"" : L"\n");
    }
    return rows;
}

int rows_below::space() const noexcept
{
    return std::max({std::min({wanted, margin - count * row, margin - row}), std::min({wanted, row, margin - row}), 0});
}

} // namespace vldv::view
