#include "document/formats/aist.h"

#include "document/formats/aist_tree.h"
#include "document/formats/directions.h"
#include "document/formats/point_grid.h"
#include "document/formats/sample_numbers.h"
#include "document/formats/stream_shape.h"

#include <algorithm>
#include <cmath>

namespace formats {

namespace {

VLAxis side_axis(double from, double to, unsigned points, const std::string& units)
{
    const double size = std::fabs(to - from);
    if (!(size > 0.0) || !std::isfinite(size)) return {};
    return VLAxis(std::min(from, to), size / points, units.c_str());
}

channel_plane plane_of(const aist_raster& raster)
{
    const directed_name name = split_direction(raster.name);
    const image_frame frame{raster.columns, raster.rows, 1,
                            side_axis(raster.left, raster.right, raster.columns, raster.xUnits),
                            side_axis(raster.bottom, raster.top, raster.rows, raster.yUnits)};
    return {name.channel, "", name.direction, frame, {1.0, 0.0, raster.zUnits, "z unit"}};
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
        if (!raster.description.empty()) image.strings["Description"] = raster.description;
    }
    settle_samples(image, voids);
    name_directions(image, group, plane.direction);
    return image;
}

/// Adds a curve; x that does not run evenly becomes a stream of its own before it.
void add_curve(const aist_curve& curve, recording& result, std::vector<std::string>& ids)
{
    std::vector<double> x(curve.points), y(curve.points);
    decode_numbers(curve.data.first(x.size() * 8), SPM_ARRAY_FLOAT64, byte_order::little, x);
    decode_numbers(curve.data.subspan(x.size() * 8), SPM_ARRAY_FLOAT64, byte_order::little, y);
    const std::string label = curve.name.empty() ? "Curve" : curve.name;
    const auto steps = find_even_steps(x);
    const VLAxis axis = steps ? VLAxis(steps->start, steps->step, curve.xUnits.c_str()) : VLAxis();
    recorded_image image =
        make_curve_from_values(unique_id(label, ids), label, curve.points, axis, {1.0, 0.0, curve.yUnits, "y unit"}, y);
    if (!curve.description.empty()) image.strings["Description"] = curve.description;
    if (!steps) {
        const std::string id = unique_id(label + "_X", ids);
        image.stream.set_parameter_stream(id.c_str());
        result.items.emplace_back(
            make_curve_from_values(id, "X", curve.points, VLAxis(), {1.0, 0.0, curve.xUnits, "x unit"}, x));
    }
    result.items.emplace_back(std::move(image));
}

} // namespace

bool possible_aist(std::span<const std::byte> head) { return may_be_aist_tree(head); }

base::read_result<recording> read_aist(source& file)
{
    std::vector<std::byte> bytes;
    if (!file.read_all(bytes)) return base::read_error{0, "cannot be read"};
    const auto tree = parse_aist_tree(bytes);
    if (!tree) return tree.error();
    if (tree->rasters.empty() && tree->curves.empty()) return base::read_error{0, "holds neither an image nor a curve"};

    recording result;
    std::vector<std::string> ids;
    std::vector<channel_plane> planes;
    for (const aist_raster& raster : tree->rasters) planes.push_back(plane_of(raster));
    const auto groups = join_directions(planes);
    for (std::size_t i = 0; i < groups.size(); ++i) {
        if (!file.progress(static_cast<double>(i) / static_cast<double>(groups.size())))
            return base::read_error{0, "reading was cancelled"};
        result.items.emplace_back(make_raster(*tree, groups[i], planes[groups[i].front()], ids));
    }
    for (const aist_curve& curve : tree->curves) add_curve(curve, result, ids);
    return result;
}

} // namespace formats
