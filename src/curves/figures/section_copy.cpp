#include "curves/figures/section_selection.h"

#include "base/streams/rounding.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace vldv::curves {

namespace {

using selections = std::span<const VLPluginDataSelection>;

struct corner {
    std::int64_t x, y;
};

double distance(corner a, corner b) noexcept
{
    return std::hypot(static_cast<double>(b.x - a.x), static_cast<double>(b.y - a.y));
}

/// Copies samples of any type between a source and a target of other shape.
class sample_copy {
public:
    sample_copy(SPMDataStream& target_, const SPMDataStream& source_)
        : target(target_), source(source_), image(source_), bytes(source_.array_element_size())
    {
    }

    void ranges(selections selected)
    {
        std::int64_t longest = 0;
        for (const VLPluginDataSelection& each : selected) {
            if (each.kind != SELECTION_RANGE || !isRange(each)) return;
            longest = std::max<std::int64_t>(longest, each.data[1] - each.data[0]);
        }
        if (longest == 0) return;
        SPMDataStream::dimension along = source.get_dimension(0);
        for (unsigned i = 0; i < along.get_axes_number(); ++i) {
            VLAxis axis = along.get_axis(i);
            axis.start += selected[0].data[0] * axis.scale;
            along.set_axis(i, axis);
        }
        // All curves of an image are equally long: shorter ranges repeat their last sample.
        shape(along, longest, static_cast<std::int64_t>(selected.size()));
        for (std::size_t k = 0; k < selected.size(); ++k) {
            const std::int64_t first = selected[k].data[0], count = selected[k].data[1] - first;
            for (std::int64_t i = 0; i < longest; ++i)
                put(static_cast<std::int64_t>(k) * longest + i,
                    first + (i < count ? i : std::max<std::int64_t>(count - 1, 0)));
        }
    }

    void segment(const VLPluginDataSelection& selected)
    {
        const corner from{selected.data[0], selected.data[1]}, to{selected.data[2], selected.data[3]};
        if (!isInside(from) || !isInside(to)) return;
        const auto steps = static_cast<std::int64_t>(base::round_half_up(distance(from, to)));
        if (steps == 0) return;
        shape(fromZero(), steps + 1, image.subImages);
        const auto part = [&](std::int64_t i, std::int64_t whole) {
            return static_cast<std::int64_t>(
                base::round_half_up(static_cast<double>(i * whole) / static_cast<double>(steps)));
        };
        for (std::int64_t i = 0; i <= steps; ++i)
            putInAll(i, steps + 1, {from.x + part(i, to.x - from.x), from.y + part(i, to.y - from.y)});
    }

    void polyline(selections selected)
    {
        std::vector<corner> corners;
        for (const VLPluginDataSelection& each : selected) {
            if (each.kind != SELECTION_POLYLINE && each.kind != SELECTION_POLYLINE_END) continue;
            corners.push_back({each.data[0], each.data[1]});
            if (!isInside(corners.back())) return;
            if (each.kind == SELECTION_POLYLINE_END) break;
        }
        if (corners.size() < 2) return;
        std::int64_t length = 2;
        for (std::size_t s = 0; s + 1 < corners.size(); ++s) length += samplesOf(corners[s], corners[s + 1]) - 1;
        shape(fromZero(), length, image.subImages); // one more than is filled
        std::int64_t at = 0;
        for (std::size_t s = 0; s + 1 < corners.size(); ++s) {
            const corner from = corners[s], to = corners[s + 1];
            const std::int64_t count = samplesOf(from, to);
            const double span = count > 1 ? static_cast<double>(count - 1) : 0.0;
            const auto part = [&](std::int64_t i, std::int64_t whole) -> std::int64_t {
                return std::lround(static_cast<double>(i) * (static_cast<double>(whole) / span));
            };
            for (std::int64_t i = s > 0 ? 1 : 0; i < count; ++i, ++at)
                putInAll(at, length,
                         i == 0 ? from : corner{from.x + part(i, to.x - from.x), from.y + part(i, to.y - from.y)});
        }
    }

private:
    bool isRange(const VLPluginDataSelection& each) const noexcept
    {
        return each.data[0] >= 0 && each.data[1] >= each.data[0] &&
               static_cast<std::uint32_t>(each.data[1]) < source.array_length();
    }
    bool isInside(corner point) const noexcept
    {
        return point.x >= 0 && point.y >= 0 && point.x < image.lengths[0] && point.y < image.lengths[1];
    }
    static std::int64_t samplesOf(corner from, corner to) noexcept
    {
        return static_cast<std::int64_t>(base::round_half_up(distance(from, to))) + 1;
    }
    /// The first dimension of the source, positions counted from 0.
    SPMDataStream::dimension fromZero() const
    {
        SPMDataStream::dimension along = source.get_dimension(0);
        for (unsigned i = 0; i < along.get_axes_number(); ++i) {
            VLAxis axis = along.get_axis(i);
            axis.start = 0.0;
            along.set_axis(i, axis);
        }
        return along;
    }
    void shape(SPMDataStream::dimension along, std::int64_t length, std::int64_t curves)
    {
        target.set_array_len(static_cast<unsigned>(length * curves));
        along.length = static_cast<unsigned>(length);
        target.clear_dimensions();
        target.set_dimension(0, along);
    }
    void put(std::int64_t to, std::int64_t from)
    {
        const auto step = static_cast<std::int64_t>(bytes);
        std::memcpy(static_cast<char*>(target.array_data()) + to * step,
                    static_cast<const char*>(source.array_data()) + from * step, bytes);
    }
    void putInAll(std::int64_t at, std::int64_t length, corner point)
    {
        for (std::int64_t k = 0; k < image.subImages; ++k)
            put(k * length + at, k * image.subLength + point.y * image.lengths[0] + point.x);
    }

    SPMDataStream& target;
    const SPMDataStream& source;
    grid image;
    std::size_t bytes;
};

void copy_curves(SPMDataStream& target, const SPMDataStream& source, const profile& section)
{
    if (section.isEmpty() || source.get_dimensions_number() == 0) return;
    const auto count = static_cast<unsigned>(section.all().size());
    target.Init(target.get_name(), target.get_description(), SPM_VAR_ARRAY, count,
                static_cast<unsigned>(sizeof(std::int16_t)));
    target.set_array_type(SPM_ARRAY_INT16);
    target.set_array(section.samples.data(), count, 0);
    target.values = section.values;
    SPMDataStream::dimension along = source.get_dimension(0);
    along.length = section.length;
    target.clear_dimensions();
    target.set_dimension(0, along);
}

} // namespace

void copy_section(SPMDataStream& target, const SPMDataStream& source, std::span<const VLPluginDataSelection> selected,
                  const profile& section)
{
    const unsigned dimensions = source.get_dimensions_number();
    const bool fits = target.is_array() && target.array_element_size() == source.array_element_size();
    if (fits && !selected.empty() && !grid(source).isEmpty()) {
        sample_copy copy(target, source);
        if (dimensions == 1 && selected[0].kind == SELECTION_RANGE) copy.ranges(selected);
        if (dimensions == 2 && selected[0].kind == SELECTION_SEGMENT) copy.segment(selected[0]);
        if (dimensions == 2 && selected[0].kind == SELECTION_POLYLINE) copy.polyline(selected);
    }
    if (target.array_length() == 0) copy_curves(target, source, section);
}

} // namespace vldv::curves
