// The lines of text below the curves.
#include "base/text.h"
#include "curves/figures/display/curve_points.h"
#include "curves/figures/display/section_text.h"
#include "curves/figures/display/spectrum_display.h"
#include "curves/views/SectionView.h"
#include "document/StorageDoc.h"

#include <algorithm>
#include <cmath>

using namespace vldv;

namespace {

/// Lines a second of the scan, where the file tells.
std::optional<double> scan_rate(const CStorageDoc& document, unsigned image)
{
    for (const char* const name : {"\\Speed", "\\Scan rate", "delay"})
        if (const auto rate = base::leading_number(document.getString(name, image))) return rate;
    return std::nullopt;
}

} // namespace

curves::marks_mode CSectionView::marksMode() const { return static_cast<curves::marks_mode>(intOption("marks_mode")); }

std::string CSectionView::marksText() const
{
    const SPMDataStream& source = *stream();
    // A curve may end before its window does.
    const double end = std::max(shownLength() - 1.0, 0.0);
    const double first = std::min(sampleOf(curves::firstMark), end),
                 second = std::min(sampleOf(curves::secondMark), end);
    const auto isMeasured = [&](double at) {
        return section.isMeasured(activeCurve(), static_cast<std::size_t>(std::lround(at)));
    };
    const auto valueAt = [&](double at) { return valueAxis().at(curves::raw_between(shownCurve(), at)); };
    curves::section_marks_told told;
    told.mode = marksMode();
    told.isRelative = intOption("Values") == 1;
    told.wanted = static_cast<curves::stretch_value>(intOption("HorizontalValue"));
    told.tellsAngle = intOption("VerticalValue") == 1;
    told.marks = {first, second};
    told.firstValue = valueAt(first);
    told.secondValue = valueAt(second);
    told.areMeasured = isMeasured(first) && isMeasured(second);
    told.position = sampleOf(curves::positionMark) * positionAxis().scale + positionStart();
    told.value = heightStart() + shownHeights().range * marks[curves::levelMark].y;
    told.rate = scan_rate(*storageDoc(), imageNumber);
    told.lineSamples = source.get_dimensions_number() > 0 ? source.get_dimension(0).length : 0;
    told.lowest = min_max.minimum;
    return curves::marks_text(shownCurve(), positionAxis(), valueAxis(), told);
}

/// "\tColumn: 3" and "\tLine: 5" of a section that runs along the other side of the image.
std::string CSectionView::placeText() const
{
    const SPMDataStream* const source = stream();
    if (!isOptionOn("show_line_number") || points.empty() ||
        source->get_dimensions_number() <= section.varyingDimensions.size())
        return {};
    std::string told;
    constexpr const char* names[] = {"Column", "Line"};
    for (int side = 0; side < 2; ++side)
        if (!section.varyingDimensions.contains(side) && points[0].size() > static_cast<std::size_t>(side))
            told += base::formatted("\t%s: %d", names[side], points[0][static_cast<std::size_t>(side)]);
    return told;
}

void CSectionView::updateText()
{
    if (!hasCurves()) return;
    std::string line = marksText() + "\r\n";
    if (hasForceFigures() && isOptionOn("ShowForceCurveStats")) {
        const std::string force = curves::force_text(shownCurve(), positionAxis(), valueAxis(), stats);
        if (!force.empty()) line += force.substr(1) + (isOptionOn("ShowTrendLine") ? "\t" : "");
    }
    if (isOptionOn("ShowTrendLine")) line += curves::trend_text(trend, positionAxis().scale);
    text = base::widen(line + placeText());
    spectrumLine = isOptionOn("ShowSpectrum") ? base::widen(spectrumTextAt(sampleOf(curves::spectrumMark))) : L"";
}

std::string CSectionView::spectrumTextAt(double bin) const
{
    if (!isMeasuredThroughout(activeCurve())) return "No spectrum: not measured throughout";
    curves::spectrum_text_style style{isOptionOn("normalize_spectrum"), intOption("spectrum_mode") == 0, {}};
    constexpr int time = 4;
    const auto rate = scan_rate(*storageDoc(), imageNumber);
    if (intOption("HorizontalValue") == time && rate) style.rate = *rate * stream()->get_dimension(0).length;
    return curves::spectrum_text(spectrum, bin, shownLength(), positionAxis(), valueAxis(), style);
}

std::wstring CSectionView::GetClipboardText(bool)
{
    return isOptionOn("ShowSpectrum") ? text + L"\t" + spectrumLine : text;
}
