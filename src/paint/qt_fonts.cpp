#include "paint/qt_fonts.h"

#include "base/text/text_list.h"
#include "base/variables/option_functions.h"

#include <QFontDatabase>
#include <QFontMetrics>
#include <QStringList>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace vldv::paint {

namespace {

constexpr double usualPoints = 10.0, pointsAnInch = 72.0;

/// The largest size of the characters at which a line is not higher than `height`.
int characters_in_line(QFont font, double height)
{
    constexpr int sample = 512;
    const auto lineAt = [&](int size) {
        font.setPixelSize(size);
        const QFontMetrics metrics(font);
        return metrics.ascent() + metrics.descent();
    };
    // Line heights grow almost in proportion to the size, but hinting rounds them: a guess from a large size comes out
    // at the upper end, and a few steps down find the size that fits.
    const double guess = height * sample / std::max(1, lineAt(sample));
    int size = std::max(1, static_cast<int>(std::ceil(guess)) + 1);
    while (size > 1 && lineAt(size) > std::lround(height)) --size;
    return size;
}

QStringList families_of(const CFont& font)
{
    if (!font.face.empty()) return {QString::fromStdString(font.face)};
    if (font.fixedPitch) return {QStringLiteral("Liberation Mono"), QStringLiteral("Monospace")};
    return {QStringLiteral("Liberation Sans"), QStringLiteral("Arial"), QStringLiteral("Sans Serif")};
}

char* font_list_text() { return strdup(font_family_list().c_str()); }
void free_text(char* text) { std::free(text); }

} // namespace

QFont qt_font(const CFont& font, const font_scale& scale)
{
    QFont out(families_of(font));
    out.setStyleHint(font.fixedPitch ? QFont::Monospace : QFont::SansSerif);
    out.setFixedPitch(font.fixedPitch);
    out.setWeight(static_cast<QFont::Weight>(std::clamp(font.weight, 1, 1000)));
    out.setItalic(font.italic);
    out.setHintingPreference(scale.isPage ? QFont::PreferNoHinting : QFont::PreferFullHinting);
    // Colours on both sides of a glyph would need to know what lies below.
    out.setStyleStrategy(QFont::NoSubpixelAntialias);
    constexpr double largest = 10000.0;
    const double height = std::min(std::fabs(double{1} * font.height) * scale.pixelsAUnit, largest);
    // A positive height is that of a line, a negative one that of the characters in it; 0 asks for the usual size.
    if (font.height > 0)
        out.setPixelSize(characters_in_line(out, height));
    else if (font.height < 0)
        out.setPixelSize(std::max(1, static_cast<int>(std::lround(height))));
    else
        out.setPixelSize(std::max(1, static_cast<int>(std::lround(usualPoints * scale.dpi / pointsAnInch))));
    return out;
}

std::string font_family_list()
{
    std::vector<std::string> names;
    for (const QString& family : QFontDatabase::families()) names.push_back(family.toStdString());
    return base::write_list(names);
}

void register_fonts()
{
    base::register_option_function("vldv", "GetFontList", reinterpret_cast<base::any_function>(font_list_text));
    base::register_option_function("vldv", "FreeSettingsString", reinterpret_cast<base::any_function>(free_text));
}

} // namespace vldv::paint
