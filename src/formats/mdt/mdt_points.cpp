#include "base/text.h"
#include "formats/mdt/mdt_frame.h"
#include "formats/mdt/mdt_index.h"
#include "formats/shared/force/curve_group.h"
#include "formats/shared/header_text.h"
#include "formats/shared/sample_numbers.h"

#include <algorithm>
#include <cmath>
#include <utility>

// Frames of spectra at points in the new manner: named blocks, one of which, index.xml, tells what the others hold.

namespace vldv::formats {

namespace {

/// UTF-16 with its mark, or UTF-8.
std::string to_utf8(const std::string& text)
{
    return text.starts_with("\xFF\xFE") ? base::utf16_to_utf8(std::string_view(text).substr(2), false) : text;
}

bool read_data(source& file, const mdt_blocks& blocks, const mdt_index::numbers& row, std::vector<double>& out)
{
    SPMVarArrayType type = SPM_ARRAY_VOID;
    const auto found = blocks.find(row.block);
    if (found == blocks.end() || !array_type_from_keyword(row.type.c_str(), type) || type == SPM_ARRAY_VOID)
        return false;
    return holds_numbers(found->second.size, row.offset, row.count, element_size(type)) &&
           read_numbers(file, found->second.offset + row.offset, row.count, type, byte_order::little, out);
}

/// The row that an index means, or null.
template <class Row>
const Row* row_at(const std::vector<Row>& rows, int number)
{
    return number >= 0 && static_cast<std::size_t>(number) < rows.size() ? &rows[static_cast<std::size_t>(number)]
                                                                         : nullptr;
}

/// Curves of one quantity over one axis; null for what the index does not name.
struct spectrum_group {
    const mdt_index::quantity* quantity = nullptr;
    const mdt_index::axis* axis = nullptr;
    std::vector<named_curve> curves;
};

/// \param point  from 1; 0 when it is not known
std::string curve_name(const mdt_index::measurement& row, std::size_t point)
{
    std::string name;
    if (point != 0) name = "Point " + std::to_string(point) + ", ";
    if (row.pass >= 0) name += "pass " + std::to_string(row.pass + 1) + ", ";
    return name + (row.isInverse ? "Reverse" : "Forward");
}

base::read_result<std::vector<spectrum_group>> read_groups(source& file, const mdt_frame& frame,
                                                           const mdt_blocks& blocks, const mdt_index& index)
{
    constexpr std::size_t maxGroups = 4096, curvesBetween = 256;
    const std::vector<std::size_t> points = points_of_measurements(file, blocks, index);
    std::vector<spectrum_group> groups;
    std::map<std::pair<const void*, const void*>, std::size_t> groupOf; // by quantity and axis
    std::uint64_t room = file.size(); // several measurements may claim the same numbers
    for (std::size_t i = 0; i < index.measurements.size(); ++i) {
        if (i % curvesBetween == 0 && !file.progress(frame.done))
            return base::read_error{frame.offset, "reading was cancelled"};
        const mdt_index::measurement& row = index.measurements[i];
        const mdt_index::numbers* const data = row_at(index.data, row.data);
        std::vector<double> values;
        if (!data || data->count > room || !read_data(file, blocks, *data, values) || values.empty()) continue;
        room -= data->count;
        // Samples lie along growing x, whichever way they were recorded.
        const mdt_index::axis* const axis = row_at(index.axes, row.axis);
        const bool isFalling = axis && axis->start > axis->stop;
        if (isFalling != row.isInverse) std::reverse(values.begin(), values.end());
        const mdt_index::quantity* const quantity = row_at(index.quantities, row.quantity);
        const auto [group, isNew] = groupOf.emplace(std::pair(quantity, axis), groups.size());
        if (isNew) groups.push_back({quantity, axis, {}});
        if (groups.size() > maxGroups) return base::read_error{frame.offset, "more than 4096 kinds of curves"};
        groups[group->second].curves.push_back({curve_name(row, points[i]), std::move(values)});
    }
    return groups;
}

VLAxis axis_of(const mdt_index& index, const mdt_index::axis* row)
{
    if (!row || row->count < 2) return {};
    const double step = std::fabs(row->stop - row->start) / static_cast<double>(row->count - 1);
    const mdt_index::quantity* const quantity = row_at(index.quantities, row->quantity);
    return {std::min(row->start, row->stop), step, quantity ? quantity->units.c_str() : ""};
}

} // namespace

base::read_result<mdt_content> read_mdt_points(source& file, const mdt_frame& frame)
{
    const auto blocks = read_mdt_blocks(file, frame);
    if (!blocks) return blocks.error();
    const auto index = read_mdt_index(file, frame, *blocks);
    if (!index) return index.error();
    const auto groups = read_groups(file, frame, *blocks, *index);
    if (!groups) return groups.error();
    std::map<std::string, std::string> strings;
    add_xml_strings(to_utf8(read_mdt_block_text(file, *blocks, "__xmlparams.xml")), strings);
    strings["\\Date"] = frame.date;
    std::string places;
    for (const mdt_index::point& point : index->points) places += (places.empty() ? "" : "; ") + point.place;
    mdt_content content;
    for (const spectrum_group& group : *groups) {
        if (!is_modest_padding(group.curves)) return base::read_error{frame.offset, "curves of too different lengths"};
        const mdt_index::quantity measured = group.quantity ? *group.quantity : mdt_index::quantity{};
        const std::string label = measured.name.empty() ? "Curve" : measured.name;
        recorded_image image = make_curve_group(
            label, label, axis_of(*index, group.axis),
            {1.0, 0.0, measured.units, "index.xml, frame " + std::to_string(frame.number)}, group.curves);
        image.strings.insert(strings.begin(), strings.end());
        if (!places.empty()) image.strings["Points"] = places;
        content.emplace_back(std::move(image));
    }
    if (content.empty()) return base::read_error{frame.offset, "index.xml names no curve that is there"};
    return content;
}

} // namespace vldv::formats
