#include "curves/figures/table_text.h"

#include "base/text.h"

#include <langinfo.h>
#include <locale.h>

namespace vldv::curves {

namespace {

std::string number_text(double value, const number_style& style)
{
    std::string text = base::formatted(style.isScientific ? "%.12e" : "%.12g", value);
    if (style.decimalPoint != ".")
        if (const std::size_t point = text.find('.'); point != std::string::npos)
            text.replace(point, 1, style.decimalPoint);
    return text;
}

} // namespace

number_style clipboard_style()
{
    number_style style{true, "."};
    if (const locale_t user = newlocale(LC_ALL_MASK, "", locale_t{}); user != locale_t{}) {
        style.decimalPoint = nl_langinfo_l(RADIXCHAR, user);
        freelocale(user);
    }
    return style;
}

namespace {

/// \param isMeasured  of a sample's place in the curve
template <class Predicate>
std::string rows_text(std::span<const std::int16_t> curve, const VLAxis& positions, const VLAxis& values,
                      const number_style& style, Predicate isMeasured)
{
    std::string text = std::string("X,") + positions.get_units() + "\tY," + values.get_units() + '\n';
    for (std::size_t i = 0; i < curve.size(); ++i)
        text += number_text(static_cast<double>(i) * positions.scale + positions.start, style) + '\t' +
                (isMeasured(i) ? number_text(curve[i] * values.scale + values.start, style) : "nan") + '\n';
    return text;
}

} // namespace

std::string table_text(std::span<const std::int16_t> curve, const VLAxis& positions, const VLAxis& values,
                       const number_style& style)
{
    return rows_text(curve, positions, values, style, [](std::size_t) { return true; });
}

std::string section_text(const profile& section, std::span<const grid_point> points, std::size_t dimensions,
                         const VLAxis& positions, const VLAxis& values, unsigned first, unsigned last)
{
    std::string text;
    if (dimensions < 2) {
        text = "Dependency\n";
    } else {
        text = "\tX\tY\n";
        for (std::size_t i = 0; i < points.size(); ++i) {
            text += "Point " + std::to_string(i + 1);
            for (const std::int32_t index : points[i]) text += '\t' + std::to_string(index);
            text += '\n';
        }
        text += "Cross-Section\n";
    }
    for (unsigned k = first; k <= last && k < section.curves; ++k)
        text +=
            "Subimage " + std::to_string(k + 1) + '\n' +
            rows_text(section.curve(k), positions, values, {}, [&](std::size_t i) { return section.isMeasured(k, i); });
    return text;
}

} // namespace vldv::curves
