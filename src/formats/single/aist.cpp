#include "formats/single/aist.h"

#include "formats/shared/force/curve_group.h"
#include "formats/shared/force/directions.h"
#include "formats/shared/sample_numbers.h"
#include "formats/shared/stream_shape.h"
#include "formats/single/aist_tree.h"

#include <algorithm>
#include <cmath>

namespace vldv::formats {

namespace {

VLAxis side_axis(double from, double to, unsigned points, const std::string& units)
{
    return stated_side(std::min(from, to), std::fabs(to - from), points, units);
}

channel_plane plane_of(const aist_raster& raster)
{
    const directed_name name = split_direction(raster.name);
    const image_frame frame{raster.columns, raster.rows, 1,
                            side_axis(raster.left, raster.right, raster.columns, raster.xUnits),
                            side_axis(raster.bottom, raster.top, raster.rows, raster.yUnits)};
    return {name.channel, "", name.direction, frame, {1.0, 0.0, raster.zUnits, "z unit"}};
}

channel_plane plane_of(const aist_curve& curve)
{
    const directed_name name = split_direction(curve.name);
    return {name.channel, curve.xUnits, name.direction, {}, {1.0, 0.0, curve.yUnits, "y unit"}};
}

void add_description(const std::string& description, recorded_image& image)
{
    if (description.empty()) return;
    std::string& all = image.strings["Description"];
    if (all != description) all += (all.empty() ? "" : "\n") + description;
}

std::vector<void_range> voids_of(const aist_raster& raster, std::uint64_t first)
{
    std::vector<void_range> voids;
    for (std::size_t i = 0; i < raster.mask.size(); ++i) {
        if (raster.mask[i] != std::byte{0}) continue;
        if (!voids.empty() && voids.back().first + voids.back().count == first + i)
            ++voids.back().count;
        else
            voids.push_back({first + i, 1});
    }
    return voids;
}

recorded_image make_raster(const aist_tree& tree, const plane_group& group, const channel_plane& plane,
                           std::vector<std::string>& ids)
{
    const std::string label = plane.channel.empty() ? "Image" : plane.channel;
    const extent extents[] = {{plane.frame.width, plane.frame.x}, {plane.frame.height, plane.frame.y}};
    recorded_image image = make_samples(unique_id(label, ids), label, extents, static_cast<unsigned>(group.size()),
                                        plane.scale, SPM_ARRAY_FLOAT64);
    const auto samples = elements_of<double>(image);
    const std::size_t frame = samples.size() / group.size();
    std::vector<void_range> voids;
    for (std::size_t i = 0; i < group.size(); ++i) {
        const aist_raster& raster = tree.rasters[group[i]];
        decode_numbers(raster.data, SPM_ARRAY_FLOAT64, byte_order::little, samples.subspan(i * frame, frame));
        const auto own = voids_of(raster, i * frame);
        voids.insert(voids.end(), own.begin(), own.end());
        add_description(raster.description, image);
    }
    settle_samples(image, voids);
    name_directions(image, group, plane.direction);
    return image;
}

std::vector<double> doubles_of(std::span<const std::byte> bytes)
{
    std::vector<double> values(bytes.size() / sizeof(double));
    decode_numbers(bytes, SPM_ARRAY_FLOAT64, byte_order::little, values);
    return values;
}

/// Adds a curve or its two directions.
void add_curves(const aist_tree& tree, const plane_group& group, const channel_plane& plane, recording& result,
                std::vector<std::string>& ids)
{
    const std::string label = plane.channel.empty() ? "Curve" : plane.channel;
    curve_positions x{label + "_X", "X", {1.0, 0.0, plane.pass, "x unit"}, {}};
    std::vector<named_curve> y;
    for (const std::size_t index : group) {
        const std::span<const std::byte> data = tree.curves[index].data;
        x.curves.push_back({{}, doubles_of(data.first(data.size() / 2))});
        y.push_back({{}, doubles_of(data.last(data.size() / 2))});
    }
    auto images = make_curves_over(x, label, plane.scale, y, ids);
    for (const std::size_t index : group) add_description(tree.curves[index].description, images.back());
    for (recorded_image& image : images) {
        name_directions(image, group, plane.direction);
        result.items.emplace_back(std::move(image));
    }
}

template <class Part>
std::vector<channel_plane> planes_of(const std::vector<Part>& parts)
{
    std::vector<channel_plane> planes;
    for (const Part& part : parts) planes.push_back(plane_of(part));
    return planes;
}

} // namespace

bool possible_aist(std::span<const std::byte> head) { return may_be_aist_tree(head); }

base::read_result<recording> read_aist(source& file)
{
    std::vector<std::byte> bytes;
    if (!file.readAll(bytes)) return base::read_error{0, "cannot be read"};
    const auto tree = parse_aist_tree(bytes);
    if (!tree) return tree.error();
    if (tree->rasters.empty() && tree->curves.empty()) return base::read_error{0, "holds neither an image nor a curve"};

    recording result;
    tree->missing.tell(result);
    std::vector<std::string> ids;
    const auto rasters = planes_of(tree->rasters), curves = planes_of(tree->curves);
    const auto groups = join_directions(rasters);
    for (std::size_t i = 0; i < groups.size(); ++i) {
        if (!file.progress(static_cast<double>(i) / static_cast<double>(groups.size())))
            return base::read_error{0, "reading was cancelled"};
        result.items.emplace_back(make_raster(*tree, groups[i], rasters[groups[i].front()], ids));
    }
    for (const plane_group& group : join_directions(curves))
        add_curves(*tree, group, curves[group.front()], result, ids);
    return result;
}

} // namespace vldv::formats
