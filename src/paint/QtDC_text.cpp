// The text half of the desktop's drawing surface: fonts under a mapping, measures and where runs begin.
#include "paint/QtDC.h"
#include "paint/drawing_surface.h"
#include "paint/qt_fonts.h"
#include "paint/resolved_font.h"

#include <cmath>
#include <numbers>

namespace vldv::paint {

namespace {

/// Pixels of the surface a logical unit, each along its own direction; flips of window onto viewport apart.
struct text_scale {
    double across, down;
    double angle; ///< degrees, clockwise
    bool flipsX, flipsY;
};

text_scale text_scale_of(const platform::dc_mapping& mapping, double ratio)
{
    const XFORM map = mapping.toDevice();
    platform::dc_mapping window = mapping;
    window.world = {};
    const XFORM page = window.toDevice();
    const bool flipsX = page.m11 < 0.0, flipsY = page.m22 < 0.0;
    const double sign = flipsX ? -1.0 : 1.0;
    const double angle = map.isAxisAligned() && map.m11 * sign > 0.0
                             ? 0.0
                             : std::atan2(map.m12 * sign, map.m11 * sign) * 180.0 / std::numbers::pi;
    const auto usable = [](double scale) { return scale > 0.0 ? scale : 1.0; };
    return {usable(std::hypot(map.m11, map.m12)) * ratio, usable(std::hypot(map.m21, map.m22)) * ratio, angle, flipsX,
            flipsY};
}

/// Characters that are no glyphs look like blanks.
QString shown_text(std::wstring_view text)
{
    QString out = QString::fromWCharArray(text.data(), static_cast<qsizetype>(text.size()));
    for (QChar& character : out)
        if (character < QChar(u' ')) character = u' ';
    return out;
}

/// Whole units that hold a length in pixels.
int units_of(int pixels, double scale)
{
    constexpr double rounding = 1e-6;
    return static_cast<int>(std::ceil(pixels / scale - rounding));
}

} // namespace

const resolved_font& CQtDC::font() const
{
    const double ratio = surface ? surface->ratio() : 1.0;
    const font_scale scale{text_scale_of(state().mapping, ratio).down, static_cast<int>(std::lround(dpi.cy * ratio)),
                           IsPrinting()};
    if (!lastFont || lastFont->asked != state().font || lastFont->scale != scale)
        lastFont = std::make_unique<resolved_font>(state().font, scale);
    return *lastFont;
}

void CQtDC::drawText(int left, int baseline, std::wstring_view text)
{
    if (!surface) return;
    const text_scale scale = text_scale_of(state().mapping, surface->ratio());
    // Letters are never mirrored: under a flip they fill the same box.
    CPoint begin{left, baseline};
    if (scale.flipsX) begin.x += textWidth(text);
    if (scale.flipsY) begin.y += fontMetrics().tmDescent - fontMetrics().tmAscent;
    const QString shown = shown_text(text);
    surface->text(state(), {shown, font().font, LPtoDP(begin), scale.angle});
}

int CQtDC::textWidth(std::wstring_view text) const
{
    const double ratio = surface ? surface->ratio() : 1.0;
    return units_of(font().metrics.horizontalAdvance(shown_text(text)), text_scale_of(state().mapping, ratio).across);
}

TEXTMETRIC CQtDC::fontMetrics() const
{
    const double scale = text_scale_of(state().mapping, surface ? surface->ratio() : 1.0).down;
    const QFontMetrics& metrics = font().metrics;
    TEXTMETRIC out;
    out.tmAscent = units_of(metrics.ascent(), scale);
    out.tmDescent = units_of(metrics.descent(), scale);
    out.tmHeight = out.tmAscent + out.tmDescent;
    out.tmAveCharWidth = std::max(1, units_of(metrics.averageCharWidth(), scale));
    out.tmExternalLeading = units_of(std::max(0, metrics.leading()), scale);
    return out;
}

} // namespace vldv::paint
