#include "curves/figures/pairs/pair_source.h"

#include "curves/figures/profile.h"
#include "formats/shared/force/curve_lengths.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace vldv::curves {

void pair_source::side::open(const pair_image& image)
{
    if (!image.stream) return;
    const grid shape(*image.stream);
    if (shape.isEmpty() || shape.dimensions() != 1) return;
    stream = image.stream;
    lengths = formats::curve_lengths(*stream, image.lengths);
    voids = formats::void_ranges(*stream, image.voids);
    if (stream->array_type() != SPM_ARRAY_INT16 && stream->array_type() != SPM_ARRAY_FLOAT64) {
        converted = *stream;
        converted.convert_stream(SPM_ARRAY_FLOAT64);
        if (converted.array_type() != SPM_ARRAY_FLOAT64) return; // samples without a type
    }
    step = static_cast<std::size_t>(shape.subLength);
    count = shape.subImages;
}

void pair_source::side::values(std::size_t number, std::vector<double>& out) const
{
    const std::size_t held = std::min(lengths[number], step), first = number * step;
    const void* const all = samples().array_data();
    if (samples().array_type() == SPM_ARRAY_INT16) {
        const auto* const from = static_cast<const std::int16_t*>(all) + first;
        out.assign(from, from + held);
    } else {
        const auto* const from = static_cast<const double*>(all) + first;
        out.assign(from, from + held);
    }
}

void pair_source::side::markVoids(std::size_t number, std::vector<bool>& gaps) const
{
    const std::uint64_t begin = number * step, end = begin + gaps.size();
    auto each = std::ranges::lower_bound(voids, begin + 1, {},
                                         [](const formats::void_range& range) { return range.first + range.count; });
    for (; each != voids.end() && each->first < end; ++each)
        for (std::uint64_t i = std::max(each->first, begin); i < std::min(each->first + each->count, end); ++i)
            gaps[i - begin] = true;
}

pair_source::pair_source(const pair_image& x_, const pair_image& y_)
{
    x.open(x_);
    y.open(y_);
}

pair_series pair_source::curve(unsigned number) const
{
    pair_series made;
    if (number >= curves()) return made;
    const std::size_t ofX = number % x.count;
    x.values(ofX, made.x);
    y.values(number, made.y);
    const std::size_t length = std::min(made.x.size(), made.y.size());
    made.x.resize(length);
    made.y.resize(length);
    made.gaps.assign(length, false);
    x.markVoids(ofX, made.gaps);
    y.markVoids(number, made.gaps);
    for (std::size_t i = 0; i < length; ++i)
        if (!std::isfinite(made.x[i]) || !std::isfinite(made.y[i])) made.gaps[i] = true;
    if (std::ranges::find(made.gaps, true) == made.gaps.end()) made.gaps.clear();
    return made;
}

} // namespace vldv::curves
