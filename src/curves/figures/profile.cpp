#include "curves/figures/profile.h"

#include "base/streams/rounding.h"
#include "formats/shared/force/curve_lengths.h"
#include "formats/shared/void_points.h"
#include "formats/shared/void_ranges.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <stdexcept>

namespace vldv::curves {

namespace {

/// Samples from one point to the next, and how far apart they lie along each dimension.
struct segment {
    const grid_point &from, &to;
    std::int64_t count;

    double step(std::size_t dimension) const noexcept
    {
        return count == 1 ? 1.0 : (double{1.0} * to[dimension] - from[dimension]) / static_cast<double>(count - 1);
    }
};

void settle_points(std::vector<grid_point>& points, const grid& image)
{
    if (points.size() < 3 && image.dimensions() == 1)
        points = {{0},
                  {static_cast<std::int32_t>(
                      std::min<std::int64_t>(image.lengths[0], std::numeric_limits<std::int32_t>::max()))}};
    for (grid_point& point : points) {
        point.resize(image.dimensions());
        for (std::size_t d = 0; d < point.size(); ++d)
            point[d] = static_cast<std::int32_t>(std::clamp<std::int64_t>(point[d], 0, image.lengths[d] - 1));
    }
}

void measure(const std::vector<grid_point>& points, profile& out)
{
    std::uint64_t length = 0;
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        double squares = 0.0;
        for (std::size_t d = 0; d < points[i].size(); ++d) {
            const double difference = double{1.0} * points[i + 1][d] - points[i][d];
            squares += difference * difference;
            if (difference != 0.0) out.varyingDimensions.insert(static_cast<std::int32_t>(d));
        }
        out.segmentLengths.push_back(static_cast<std::uint32_t>(base::round_half_up(std::sqrt(squares))) + 1);
        length += out.segmentLengths.back();
    }
    // Neighbouring segments share the sample at their joint.
    length -= points.size() - 2;
    if (length > std::numeric_limits<std::int32_t>::max()) throw std::length_error("the line has too many samples");
    out.length = static_cast<std::uint32_t>(length);
}

/// Reads the samples of one stream of 16-bit numbers along segments.
class profile_reader {
public:
    /// \param ends_  samples of each curve along dimension 0 where a line may cross their ends, else none
    /// \param voids_  samples that were not measured
    profile_reader(const SPMDataStream& stream, const grid& image_, std::span<const std::size_t> ends_,
                   std::span<const formats::void_range> voids_, profile& out_)
        : samples(static_cast<const std::int16_t*>(stream.array_data())),
          image(image_),
          ends(ends_),
          voids(voids_),
          out(out_)
    {
    }

    /// The gaps of one-dimensional curves that are taken as they stand.
    void readWholeGaps()
    {
        const std::size_t count = std::size_t{out.curves} * out.length;
        for (const formats::void_range& each : voids)
            for (std::uint64_t i = each.first; i < std::min<std::uint64_t>(each.first + each.count, count); ++i)
                out.gaps[i] = true;
    }

    /// \param at  position in a curve of the first sample; moved behind the last
    void readLine(const segment& line, std::int64_t first, std::size_t& at)
    {
        std::vector<double> step;
        for (std::size_t d = 0; d < image.dimensions(); ++d) step.push_back(line.step(d));
        for (std::int64_t i = first; i < line.count; ++i, ++at) {
            std::int64_t index = 0;
            for (std::size_t d = image.dimensions(); d-- > 0;)
                // The sample's number in its sub-image, from the dimension that changes slowest down to the one that
                // changes fastest.
                index = index * image.lengths[d] + line.from[d] + std::lround(static_cast<double>(i) * step[d]);
            put(index, at);
        }
    }

    void readWideLine(const segment& line, std::int64_t first, std::int64_t halfWidth, std::size_t& at)
    {
        const auto count = static_cast<std::size_t>(line.count - first);
        const double stepX = line.step(0), stepY = line.step(1);
        const std::int64_t lines = 2 * halfWidth + 1;
        const float weight = 1.0f / static_cast<float>(lines);
        std::vector<float> sums(count * image.subImages);
        std::vector<std::int64_t> missing(voids.empty() ? 0 : sums.size()); // that were not measured, of each mean
        for (std::int64_t across = -halfWidth; across <= halfWidth; ++across)
            for (std::size_t i = 0; i < count; ++i) {
                const double along = static_cast<double>(first) + static_cast<double>(i);
                const double offset = static_cast<double>(across);
                // The way across is the way along turned by a right angle, (-y, x). Places beyond the edge take the
                // sample at the edge.
                const std::int64_t x = inside(along * stepX - offset * stepY + line.from[0], image.lengths[0]);
                const std::int64_t y = inside(along * stepY + offset * stepX + line.from[1], image.lengths[1]);
                const std::int64_t index = y * image.lengths[0] + x;
                for (std::size_t k = 0; k < image.subImages; ++k)
                    if (!voids.empty() && isVoid(index, k))
                        ++missing[k * count + i];
                    else
                        sums[k * count + i] += static_cast<float>(sample(index, k)) * weight;
            }
        for (std::size_t k = 0; k < image.subImages; ++k)
            for (std::size_t i = 0; i < count; ++i) {
                const std::size_t to = k * out.length + at + i, from = k * count + i;
                if (!missing.empty() && missing[from] != 0)
                    putPartial(to, sums[from] / weight, lines - missing[from]);
                else
                    out.memory[to] = nearest(sums[from]);
            }
        at += count;
    }

private:
    static std::int64_t inside(double position, std::int64_t length) noexcept
    {
        return std::clamp<std::int64_t>(std::lround(position), 0, length - 1);
    }
    /// Halves to even. A mean of 16-bit numbers may leave their range by a rounding only.
    static std::int16_t nearest(float mean) noexcept
    {
        return static_cast<std::int16_t>(std::clamp(std::lrint(mean), -32768L, 32767L));
    }
    std::int16_t sample(std::int64_t index, std::size_t sub) const noexcept
    {
        return samples[index + static_cast<std::int64_t>(sub) * image.subLength];
    }
    /// The mean of what was measured across the line; a gap where nothing was.
    void putPartial(std::size_t at, float sum, std::int64_t measured)
    {
        if (measured == 0) out.gaps[at] = true;
        out.memory[at] = measured == 0 ? std::int16_t{0} : nearest(sum / static_cast<float>(measured));
    }
    void put(std::int64_t index, std::size_t at)
    {
        for (std::size_t k = 0; k < image.subImages; ++k) {
            out.memory[k * out.length + at] = sample(index, k);
            if (!ends.empty() && isPadding(index, k)) out.gaps[k * out.length + at] = true;
            if (!voids.empty() && isVoid(index, k)) out.gaps[k * out.length + at] = true;
        }
    }
    bool isVoid(std::int64_t index, std::size_t sub) const
    {
        const auto at = static_cast<std::uint64_t>(index + static_cast<std::int64_t>(sub) * image.subLength);
        return formats::measured_part_of(1, {{voids, at}}).voids != 0;
    }
    bool isPadding(std::int64_t index, std::size_t sub) const noexcept
    {
        const auto place = std::lldiv(index + static_cast<std::int64_t>(sub) * image.subLength, image.lengths[0]);
        return static_cast<std::size_t>(place.rem) >= ends[static_cast<std::size_t>(place.quot)];
    }

    const std::int16_t* samples;
    const grid& image;
    std::span<const std::size_t> ends;
    std::span<const formats::void_range> voids;
    profile& out;
};

bool is_whole_record(const grid& image, const std::vector<grid_point>& points) noexcept
{
    return image.dimensions() == 1 && points.size() == 2;
}

void read_samples(profile_reader reader, const grid& image, const std::vector<grid_point>& points, unsigned halfWidth,
                  profile& out)
{
    std::size_t at = 0;
    for (std::size_t s = 0; s < out.segmentLengths.size(); ++s) {
        const segment line{points[s], points[s + 1], out.segmentLengths[s]};
        const std::int64_t first = s > 0 ? 1 : 0; // the joint is the last sample of the segment before
        if (image.dimensions() == 2 && halfWidth != 0 && line.count != 1)
            reader.readWideLine(line, first, halfWidth, at);
        else
            reader.readLine(line, first, at);
    }
}

/// Samples of a line that runs along one curve to larger indices, in each sub-image; none for other lines.
std::vector<std::uint32_t> lengths_along(std::span<const std::size_t> all, const grid& image,
                                         const std::vector<grid_point>& points)
{
    if (points.size() != 2 || points[1][0] < points[0][0]) return {};
    std::int64_t curve = 0;
    for (std::size_t d = image.dimensions(); d-- > 1;) {
        if (points[1][d] != points[0][d]) return {};
        curve = curve * image.lengths[d] + points[0][d];
    }
    const std::int64_t first = points[0][0], wanted = points[1][0] - first + std::int64_t{1};
    std::vector<std::uint32_t> lengths;
    for (unsigned sub = 0; sub < image.subImages; ++sub) {
        const auto at = static_cast<std::size_t>(curve + sub * (image.subLength / image.lengths[0]));
        const auto held = static_cast<std::int64_t>(all[at]) - first;
        lengths.push_back(static_cast<std::uint32_t>(std::clamp<std::int64_t>(held, 0, wanted)));
    }
    return lengths;
}

} // namespace

grid::grid(const SPMDataStream& stream)
{
    std::uint64_t product = 1;
    for (unsigned d = 0; d < stream.get_dimensions_number(); ++d) {
        lengths.push_back(stream.get_dimension(d).length);
        product *= stream.get_dimension(d).length;
        if (product == 0 || product > stream.array_length()) return;
    }
    if (lengths.empty() || !stream.array_data()) return;
    subLength = static_cast<std::int64_t>(product);
    subImages = static_cast<unsigned>(stream.array_length() / product);
}

void take_profile(const SPMDataStream& stream, std::vector<grid_point>& points, unsigned halfWidth, profile& out,
                  const char* told, const char* toldVoids)
{
    out.segmentLengths.clear();
    out.lengths.clear();
    out.gaps.clear();
    out.varyingDimensions.clear();
    out.length = out.curves = 0;
    out.samples = {};
    const grid image(stream);
    if (image.isEmpty()) return;
    settle_points(points, image);
    if (points.size() < 2) return;
    measure(points, out);
    const std::uint64_t count = std::uint64_t{out.length} * image.subImages;
    if (count > std::numeric_limits<std::uint32_t>::max()) throw std::length_error("the curves have too many samples");
    std::vector<std::size_t> ends;
    if (told && *told) ends = formats::curve_lengths(stream, told);
    if (!ends.empty()) out.lengths = lengths_along(ends, image, points);
    if (!out.lengths.empty()) ends.clear();
    SPMDataStream converted;
    std::vector<formats::void_range> voids = formats::void_ranges(stream, toldVoids);
    if (stream.array_type() != SPM_ARRAY_INT16) {
        converted = stream;
        voids = formats::convert_measured(converted, toldVoids);
        if (converted.array_type() != SPM_ARRAY_INT16) return; // samples without a type
    }
    const SPMDataStream& shorts = stream.array_type() == SPM_ARRAY_INT16 ? stream : converted;
    out.values = shorts.values;
    out.curves = image.subImages;
    if (!ends.empty() || !voids.empty()) out.gaps.assign(count, false);
    const auto* const raw = static_cast<const std::int16_t*>(shorts.array_data());
    profile_reader reader(shorts, image, ends, voids, out);
    const bool isWhole = is_whole_record(image, points);
    if (isWhole && &shorts == &stream) {
        out.samples = {raw, count};
    } else {
        if (out.memory.size() < count) out.memory.resize(count);
        if (isWhole) std::copy_n(raw, count, out.memory.begin());
        out.samples = {out.memory.data(), count};
    }
    if (isWhole)
        reader.readWholeGaps();
    else
        read_samples(reader, image, points, halfWidth, out);
    if (std::ranges::find(out.gaps, true) == out.gaps.end()) out.gaps.clear();
}

std::vector<bool> profile::gapsOf(unsigned index) const
{
    if (gaps.empty()) return {};
    const auto begin = gaps.begin() + static_cast<std::ptrdiff_t>(std::size_t{index} * length);
    const auto end = begin + static_cast<std::ptrdiff_t>(lengthOf(index));
    return std::find(begin, end, true) == end ? std::vector<bool>() : std::vector<bool>(begin, end);
}

grid_point point_of_sample(std::span<const grid_point> points, std::span<const std::uint32_t> segmentLengths,
                           std::int64_t sample)
{
    for (std::size_t s = 0; s < segmentLengths.size(); ++s) {
        const std::int64_t steps = segmentLengths[s] - 1;
        if (sample > steps && s + 1 < segmentLengths.size()) {
            sample -= steps;
            continue;
        }
        grid_point found = points[s];
        for (std::size_t d = 0; d < found.size() && steps > 0; ++d)
            found[d] += base::nearest_int((double{1.0} * points[s + 1][d] - points[s][d]) *
                                          static_cast<double>(sample) / static_cast<double>(steps));
        return found;
    }
    return points.empty() ? grid_point() : points.front();
}

} // namespace vldv::curves
