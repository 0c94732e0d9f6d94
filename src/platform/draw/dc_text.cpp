#include "platform/draw/DC.h"

#include <utility>
#include <vector>

namespace {

constexpr int charactersATab = 8;

// The first stop behind `position`. Behind the last given one, stops repeat every `step` pixels counted from it.
int next_stop(int position, std::span<const int> stops, int step)
{
    for (const int stop : stops)
        if (stop > position) return stop;
    const int base = stops.empty() ? 0 : stops.back();
    return base + ((position - base) / step + 1) * step;
}

/// The part up to the next `c`, which is removed with it; all when there is none.
std::wstring_view take_until(std::wstring_view& text, wchar_t c)
{
    const std::size_t end = text.find(c);
    const std::wstring_view part = text.substr(0, end);
    text = end == std::wstring_view::npos ? std::wstring_view() : text.substr(end + 1);
    return part;
}

/// Lines end with "\n" or "\r\n".
std::vector<std::wstring_view> split_lines(std::wstring_view text)
{
    std::vector<std::wstring_view> lines;
    bool more = true;
    while (more) {
        more = text.find(L'\n') != std::wstring_view::npos;
        std::wstring_view line = take_until(text, L'\n');
        if (more && line.ends_with(L'\r')) line.remove_suffix(1);
        lines.push_back(line);
    }
    return lines;
}

} // namespace

/// End of the text when it begins at `start`, both measured from where tab stops count.
int CDC::runsWidth(std::wstring_view text, std::span<const int> stops, int start) const
{
    const int step = std::max(1, charactersATab * fontMetrics().tmAveCharWidth);
    int position = start;
    for (;;) {
        const bool hasTab = text.find(L'\t') != std::wstring_view::npos;
        const std::wstring_view run = take_until(text, L'\t');
        if (!run.empty()) position += textWidth(run);
        if (!hasTab) return position;
        position = next_stop(position, stops, step);
    }
}

void CDC::drawTextRim(int left, int baseline, std::wstring_view text)
{
    // The text in the background colour, moved by one pixel in each of the eight directions, makes an outline under the
    // text that is drawn over it: it stays readable on a picture of any colour.
    const colorEntry own = std::exchange(now.textColor, now.backColor);
    for (const int down : {-1, 0, 1})
        for (const int right : {-1, 0, 1})
            if (right != 0 || down != 0) drawText(left + right, baseline + down, text);
    now.textColor = own;
}

void CDC::drawRun(int left, int baseline, std::wstring_view text)
{
    if (now.hasTextRim && now.backMode == TRANSPARENT) drawTextRim(left, baseline, text);
    drawText(left, baseline, text);
}

void CDC::drawAligned(int x, int y, std::wstring_view text, std::span<const int> stops, int tabOrigin, bool tabs)
{
    const TEXTMETRIC metric = fontMetrics();
    // Stops count from the origin only when the text stands left; otherwise from its own start.
    const std::uint32_t across = now.textAlign & TA_CENTER, down = now.textAlign & TA_BASELINE;
    const int origin = across == TA_LEFT ? tabOrigin : x;
    const int width = tabs ? runsWidth(text, stops, x - origin) - (x - origin) : textWidth(text);
    const int left = across == TA_CENTER ? x - width / 2 : across == TA_RIGHT ? x - width : x;
    const int top = down == TA_BASELINE ? y - metric.tmAscent : down == TA_BOTTOM ? y - metric.tmHeight : y;
    const CRect box({left, top}, CSize{width, metric.tmHeight});
    if (now.backMode == OPAQUE && !box.IsRectEmpty()) FillSolidRect(box, now.backColor);
    if (!tabs) return drawRun(left, top + metric.tmAscent, text);
    const int step = std::max(1, charactersATab * metric.tmAveCharWidth);
    int position = x - origin;
    // `position` is measured as the stops are. The runs are placed as if the text began at x; `left` moves all of them
    // together, so that centring and right alignment leave the distances between the runs alone.
    for (bool more = true; more;) {
        more = text.find(L'\t') != std::wstring_view::npos;
        const std::wstring_view run = take_until(text, L'\t');
        if (!run.empty()) {
            drawRun(left + position - (x - origin), top + metric.tmAscent, run);
            position += textWidth(run);
        }
        if (more) position = next_stop(position, stops, step);
    }
}

void CDC::TextOut(int x, int y, std::wstring_view text) { drawAligned(x, y, text, {}, x, false); }

CSize CDC::GetTextExtent(std::wstring_view text) const { return {textWidth(text), fontMetrics().tmHeight}; }

CSize CDC::TabbedTextOut(int x, int y, std::wstring_view text, std::span<const int> stops, int tabOrigin)
{
    drawAligned(x, y, text, stops, tabOrigin, true);
    return {runsWidth(text, stops, x - tabOrigin) - (x - tabOrigin), fontMetrics().tmHeight};
}

CSize CDC::GetTabbedTextExtent(std::wstring_view text, std::span<const int> stops) const
{
    return {runsWidth(text, stops, 0), fontMetrics().tmHeight};
}

int CDC::DrawText(std::wstring_view text, CRect& rect, std::uint32_t flags)
{
    const bool tabs = (flags & DT_EXPANDTABS) != 0;
    const auto width = [&](std::wstring_view line) { return tabs ? runsWidth(line, {}, 0) : textWidth(line); };
    std::vector<std::wstring_view> lines;
    if (flags & DT_SINGLELINE) {
        lines.push_back(text);
    } else {
        for (std::wstring_view line : split_lines(text)) {
            // Lines are filled greedily: what is left behind a break is measured again as a line of its own.
            // A line that is too wide breaks at its last blank that fits; a single word stays whole.
            while ((flags & DT_WORDBREAK) && width(line) > rect.Width()) {
                std::size_t end = line.find(L' ');
                for (std::size_t next = end; next != std::wstring_view::npos; next = line.find(L' ', next + 1))
                    if (width(line.substr(0, next)) <= rect.Width()) end = next;
                if (end == std::wstring_view::npos) break;
                lines.push_back(line.substr(0, end));
                line.remove_prefix(end + 1);
            }
            lines.push_back(line);
        }
    }
    const int lineHeight = fontMetrics().tmHeight + fontMetrics().tmExternalLeading;
    // The leading stands between lines, so that none follows the last.
    const int height = lineHeight * static_cast<int>(lines.size()) - fontMetrics().tmExternalLeading;
    if (flags & DT_CALCRECT) {
        int widest = 0;
        for (const std::wstring_view line : lines) widest = std::max(widest, width(line));
        rect = CRect(rect.TopLeft(), CSize{widest, height});
        return height;
    }
    const int number = SaveDC();
    if (!(flags & DT_NOCLIP)) IntersectClipRect(rect);
    SetTextAlign(TA_LEFT | TA_TOP);
    int y = rect.top;
    if (flags & DT_SINGLELINE) {
        if (flags & DT_VCENTER) y = rect.top + (rect.Height() - height) / 2;
        if (flags & DT_BOTTOM) y = rect.bottom - height;
    }
    for (const std::wstring_view line : lines) {
        int x = rect.left;
        if (flags & DT_CENTER) x = rect.left + (rect.Width() - width(line)) / 2;
        if (flags & DT_RIGHT) x = rect.right - width(line);
        drawAligned(x, y, line, {}, x, tabs);
        y += lineHeight;
    }
    RestoreDC(number);
    return height;
}
