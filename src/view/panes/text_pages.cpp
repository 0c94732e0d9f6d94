#include "view/panes/text_pages.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace vldv::view {

namespace {

constexpr std::size_t gap = 2;              // characters between columns, and of an indent
constexpr int points = 9, inch = 72;        // points of the type, and to the inch
constexpr int headLines = 2, footLines = 2; // title and number, each with an empty line

std::vector<std::wstring> lines_of(const std::wstring& text)
{
    std::vector<std::wstring> lines(1);
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != L'\r' && text[i] != L'\n') {
            lines.back() += text[i];
            continue;
        }
        if (text[i] == L'\r' && i + 1 < text.size() && text[i + 1] == L'\n') ++i;
        lines.emplace_back();
    }
    if (lines.back().empty()) lines.pop_back(); // the end of the last line begins no other
    return lines;
}

std::vector<std::wstring> cells_of(const std::wstring& line)
{
    std::vector<std::wstring> cells(1);
    for (const wchar_t c : line) {
        if (c == L'\t')
            cells.emplace_back();
        else
            cells.back() += c;
    }
    return cells;
}

bool has_cells(const std::wstring& line) { return line.find(L'\t') != std::wstring::npos; }

/// Aligns the cells of lines [first, last).
void align(std::vector<std::wstring>& lines, std::size_t first, std::size_t last)
{
    std::vector<std::size_t> widths;
    for (std::size_t i = first; i < last; ++i) {
        const std::vector<std::wstring> cells = cells_of(lines[i]);
        widths.resize(std::max(widths.size(), cells.size()));
        for (std::size_t k = 0; k < cells.size(); ++k) widths[k] = std::max(widths[k], cells[k].size());
    }
    for (std::size_t i = first; i < last; ++i) {
        const std::vector<std::wstring> cells = cells_of(lines[i]);
        std::wstring aligned;
        for (std::size_t k = 0; k < cells.size(); ++k) {
            aligned += cells[k];
            if (k + 1 < cells.size()) aligned.append(widths[k] - cells[k].size() + gap, L' ');
        }
        lines[i] = std::move(aligned);
    }
}

} // namespace

std::vector<std::wstring> lines_in_columns(const std::wstring& text)
{
    std::vector<std::wstring> lines = lines_of(text);
    for (std::size_t first = 0; first < lines.size();) {
        std::size_t last = first;
        while (last < lines.size() && has_cells(lines[last])) ++last;
        align(lines, first, last);
        first = last + 1;
    }
    return lines;
}

std::vector<std::size_t> column_starts(const std::wstring& text)
{
    std::vector<std::size_t> widths;
    for (const std::wstring& line : lines_of(text)) {
        const std::vector<std::wstring> cells = cells_of(line);
        widths.resize(std::max(widths.size(), cells.size() - 1));
        for (std::size_t k = 0; k + 1 < cells.size(); ++k) widths[k] = std::max(widths[k], cells[k].size() + gap);
    }
    std::partial_sum(widths.begin(), widths.end(), widths.begin());
    return widths;
}

std::vector<std::wstring> broken_lines(const std::vector<std::wstring>& lines, std::size_t columns)
{
    // What goes on in another line is indented by the gap, so that at least one character must fit behind it.
    columns = std::max(columns, gap + 1);
    std::vector<std::wstring> out;
    for (const std::wstring& line : lines) {
        out.push_back(line.substr(0, columns));
        for (std::size_t at = columns; at < line.size(); at += columns - gap)
            out.push_back(std::wstring(gap, L' ') + line.substr(at, columns - gap));
    }
    return out;
}

text_pages::text_pages(const std::wstring& text, std::wstring title_, const CRect& margins_)
    : lines(lines_in_columns(text)), title(std::move(title_)), margins(margins_)
{
}

bool text_pages::draw(CDC& dc, int page)
{
    const CSize dots = dc.dotsPerInch(), sheet = dc.deviceSize();
    const auto across = [&](int thousandths) { return dots.cx * thousandths / 1000; };
    const auto down = [&](int thousandths) { return dots.cy * thousandths / 1000; };
    const CRect inside(across(margins.left), down(margins.top), sheet.cx - across(margins.right),
                       sheet.cy - down(margins.bottom));
    dc.SelectObject(CFont{.height = -points * dots.cy / inch, .fixedPitch = true, .face = "Liberation Mono"});
    dc.SetTextColor(0);
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextAlign(TA_LEFT | TA_TOP);
    const int height = std::max(dc.GetTextMetrics().tmHeight, 1);
    const int width = std::max(dc.GetTextExtent(L"0").cx, 1);
    const auto columns = static_cast<std::size_t>(std::max(inside.Width() / width, 1));
    if (std::exchange(brokenAt, columns) != columns) broken = broken_lines(lines, columns);
    const auto perPage = static_cast<std::size_t>(std::max(inside.Height() / height - headLines - footLines, 1));
    const std::size_t first = perPage * static_cast<std::size_t>(page), last = std::min(first + perPage, broken.size());
    dc.TextOut(inside.left, inside.top, title);
    for (std::size_t i = first; i < last; ++i)
        dc.TextOut(inside.left, inside.top + (headLines + static_cast<int>(i - first)) * height, broken[i]);
    dc.TextOut(inside.left, inside.bottom - height, std::to_wstring(page + 1));
    return last < broken.size();
}

} // namespace vldv::view
