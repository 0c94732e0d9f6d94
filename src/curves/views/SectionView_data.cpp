// What a section view shows: the curves along its points, and what is computed of the active one.
#include "curves/figures/measured_runs.h"
#include "curves/figures/section_selection.h"
#include "curves/views/SectionView.h"
#include "curves/views/section_options.h"
#include "document/StorageDoc.h"
#include "formats/shared/force/curve_lengths.h"
#include "formats/shared/void_ranges.h"

#include <algorithm>

using namespace vldv;

void CSectionView::setPoint(unsigned index, const curves::grid_point& point)
{
    const SPMDataStream* const source = stream();
    const std::size_t dimensions = source ? source->get_dimensions_number() : point.size();
    if (index >= points.size()) points.resize(index + std::size_t{1}, curves::grid_point(dimensions));
    points[index] = point;
    points[index].resize(dimensions);
    placed.forget();
}

void CSectionView::GetPoint(unsigned index, std::int32_t* out, unsigned capacity) const
{
    if (index >= points.size()) return;
    std::copy_n(points[index].begin(), std::min<std::size_t>(points[index].size(), capacity), out);
}

CSize CSectionView::sourceSize() const
{
    const SPMDataStream* const source = stream();
    if (!source || source->get_dimensions_number() < 2) return {};
    return {static_cast<int>(source->get_dimension(0).length), static_cast<int>(source->get_dimension(1).length)};
}

CPoint CSectionView::getSectionPoint(unsigned index) const
{
    std::int32_t at[2] = {};
    GetPoint(index, at, 2);
    return {at[0], at[1]};
}

bool CSectionView::isHorizontal() const
{
    return points.size() == 2 && points[0].size() > 1 && points[0][1] == points[1][1];
}

void CSectionView::reloadSection()
{
    LoadData();
    Invalidate(false);
}

void CSectionView::LoadData()
{
    CImageView::LoadData();
    takeCurves();
    if (section.isEmpty()) return;
    measureCurves();
    steps.loaded();
}

/// The same curves with another one as the active one.
void CSectionView::showSubImage()
{
    if (!hasCurves()) return CImageView::showSubImage();
    CImageView::LoadData();
    measureCurves();
    Invalidate(true);
}

/// Whether there are curves, and what they are read from is still there: an image may go before its window does.
bool CSectionView::hasCurves() const
{
    if (section.isEmpty() || section.samples.data() == section.memory.data()) return !section.isEmpty();
    const SPMDataStream* const source = stream();
    return source && source->array_data() == section.samples.data() && source->array_length() >= section.samples.size();
}

void CSectionView::takeCurves()
{
    section.curves = 0;
    const SPMDataStream* const source = stream();
    if (!source || !storageDoc()->isImageOk(imageNumber)) return;
    const unsigned dimension = section.dimension();
    placed.settle(curves::grid(*source).lengths, points);
    const std::string lengths = storageDoc()->getString(formats::curveLengthsKey, imageNumber);
    const std::string voids = storageDoc()->getString(formats::voidRangesKey, imageNumber);
    curves::take_profile(*source, points, static_cast<unsigned>(intOption("profile.width")), section, lengths.c_str(),
                         voids.c_str());
    if (section.isEmpty()) return;
    if (section.dimension() != dimension) LoadOptions("^Axis[XYZ]$"); // of another dimension
    min_max = curves::measured_range(section);
}

/// What is told and drawn of the active curve.
void CSectionView::measureCurves()
{
    measureForce();
    if (isOptionOn("ShowTrendLine")) fill_trend_line_data();
    RefreshDisplay();
}

bool CSectionView::isMeasuredThroughout(unsigned curve) const
{
    const std::vector<bool> gaps = section.gapsOf(curve);
    return std::ranges::find(gaps, true) == gaps.end();
}

void CSectionView::fill_trend_line_data()
{
    trend = curves::fit_trend(shownCurve(), valueAxis(), section.gapsOf(activeCurve()));
}

int CSectionView::GetDataSelection(VLPluginDataSelection* out, unsigned count)
{
    const SPMDataStream* const source = stream();
    if (!source || !hasCurves()) return 0;
    const curves::grid grid(*source);
    const curves::section_marks told{marksMode() == curves::marks_mode::crossbar, marks[curves::firstMark].x,
                                     marks[curves::secondMark].x, marks[curves::positionMark].x};
    const auto found = curves::section_selections(grid, points, section, told);
    if (!out) return static_cast<int>(found.size());
    return static_cast<int>(curves::write_selections(found, grid.dimensions(), out, count));
}

void CSectionView::getSelectionCopy(SPMDataStream& target, const VLPluginDataSelection* list, unsigned count)
{
    if (const SPMDataStream* const source = stream(); source && hasCurves())
        curves::copy_section(target, *source, {list, count}, section);
}

void CSectionView::GetOptionsList(SPMVar* vars, unsigned* count)
{
    unsigned before = 0;
    CImageView::GetOptionsList(nullptr, &before);
    const std::vector<SPMVar> own = curves::section_options(stream(), section.dimension());
    const unsigned all = before + static_cast<unsigned>(own.size());
    if (!vars) {
        *count = all;
        return;
    }
    CImageView::GetOptionsList(vars, count);
    curves::tie_section_margins(vars, std::min(before, *count));
    for (unsigned i = before; i < std::min(all, *count); ++i) vars[i] = own[i - before];
}
