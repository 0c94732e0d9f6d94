#include "curves/figures/section_selection.h"

#include "base/streams/rounding.h"

#include <algorithm>
#include <utility>

namespace vldv::curves {

namespace {

/// Ranges end with their curve; those of a curve that was not measured are empty.
std::vector<VLPluginDataSelection> select_samples(const grid& image, const profile& section, const section_marks& marks)
{
    std::vector<VLPluginDataSelection> found;
    const auto n = static_cast<int>(image.lengths[0]);
    const auto sample = [&](double mark) { return base::nearest_int((n - 1) * mark); };
    for (int k = 0; k < static_cast<int>(image.subImages); ++k) {
        const auto curve = static_cast<std::size_t>(k);
        const int held = curve < section.lengths.size() ? static_cast<int>(section.lengths[curve]) : n;
        const auto inCurve = [&](double mark) { return std::min(sample(mark), std::max(held - 1, 0)) + k * n; };
        const int first = inCurve(marks.first), second = inCurve(marks.second);
        found.push_back(marks.isCrossbar
                            ? plugin_selection(SELECTION_POSITION, sample(marks.crossbar)) // the same in every curve
                            : plugin_selection(SELECTION_RANGE, std::min(first, second), std::max(first, second)));
    }
    return found;
}

struct plane_point {
    int x, y;
};

/// The polyline of a section through a surface.
class section_line {
public:
    section_line(std::span<const grid_point> points_, const profile& section_) : points(points_), section(section_) {}

    std::vector<VLPluginDataSelection> atCrossbar(double mark) const
    {
        const double position = section.length * mark;
        double start = 0.0;
        int at = 0;
        while (at < segments() && position >= start + length(at)) start += length(at++);
        if (at == segments()) start = 0.0, at = 0;
        const double fraction = static_cast<int>(position - start) / static_cast<double>(length(at));
        const plane_point found = between(at, at + 1, fraction);
        return {plugin_selection(SELECTION_POINT, found.x, found.y)};
    }

    std::vector<VLPluginDataSelection> betweenMarks(double mark0, double mark1) const
    {
        const auto [low, high] =
            std::minmax({static_cast<int>(section.length * mark0), static_cast<int>(section.length * mark1)});
        // The first corner behind the lower mark and where it lies; the segment of the upper mark and where that
        // begins.
        int corner = segments(), cornerAt = static_cast<int>(section.length), upper = -1, upperAt = 0;
        for (int i = 0, at = 0; i < segments(); ++i) {
            if (corner == segments() && low < at) corner = i, cornerAt = at;
            at += length(i) - (i > 0 ? 1 : 0);
            if (upper < 0 && high < at + 1) upper = i, upperAt = at - (i == 0 ? 1 : 0) - length(i) + 1;
        }
        const int before = std::max(corner - 1, 0), behind = std::max(corner, 1);
        const double backwards = 1.0 - (std::max(cornerAt, length(0)) - low) / static_cast<double>(length(before));
        const plane_point from = between(before, behind, backwards);
        const int last = std::max(upper, 0);
        const plane_point to =
            between(last, std::max(upper + 1, 1), (high - upperAt) / static_cast<double>(length(last)));
        if (upper < corner) return {plugin_selection(SELECTION_SEGMENT, from.x, from.y, to.x, to.y)};

        std::vector<VLPluginDataSelection> found{plugin_selection(SELECTION_POLYLINE, from.x, from.y)};
        for (int i = corner; i <= upper; ++i)
            found.push_back(plugin_selection(SELECTION_POLYLINE, point(i)[0], point(i)[1]));
        found.push_back(plugin_selection(SELECTION_POLYLINE_END, to.x, to.y));
        return found;
    }

private:
    int segments() const noexcept { return static_cast<int>(section.segmentLengths.size()); }
    int length(int segment) const noexcept
    {
        return static_cast<int>(section.segmentLengths[static_cast<std::size_t>(segment)]);
    }
    const grid_point& point(int index) const noexcept { return points[static_cast<std::size_t>(index)]; }
    plane_point between(int a, int b, double fraction) const noexcept
    {
        const auto at = [&](std::size_t d) {
            return point(a)[d] + base::nearest_int((point(b)[d] - point(a)[d]) * fraction);
        };
        return {at(0), at(1)};
    }

    std::span<const grid_point> points;
    const profile& section;
};

} // namespace

std::vector<VLPluginDataSelection> section_selections(const grid& image, std::span<const grid_point> points,
                                                      const profile& section, const section_marks& marks)
{
    if (image.isEmpty()) return {};
    if (image.dimensions() == 1) return select_samples(image, section, marks);
    if (image.dimensions() == 2 && !section.segmentLengths.empty()) {
        const section_line line(points, section);
        return marks.isCrossbar ? line.atCrossbar(marks.crossbar) : line.betweenMarks(marks.first, marks.second);
    }
    std::vector<VLPluginDataSelection> found;
    if (image.dimensions() == 3)
        for (const grid_point& each : points)
            found.push_back(plugin_selection(SELECTION_POINT_3D, each[0], each[1], each[2]));
    return found;
}

unsigned write_selections(std::span<const VLPluginDataSelection> found, std::size_t dimensions,
                          VLPluginDataSelection* entries, unsigned capacity)
{
    const auto count = static_cast<unsigned>(found.size());
    const unsigned written = count <= capacity ? count : dimensions == 3 ? capacity : 0;
    std::copy_n(found.begin(), written, entries);
    return written;
}

} // namespace vldv::curves
