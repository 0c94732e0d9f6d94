#include "formats/mdt/mdt_array.h"
#include "base/text.h"
#include "formats/shared/force/curve_group.h"
#include "formats/shared/sample_numbers.h"
#include "formats/shared/stream_shape.h"

// Frames of described arrays: calibrated dimensions, and one or more calibrated values a cell.

namespace vldv::formats {

namespace {

/// The only ones that follow from the description alone.
bool is_known_shape(std::size_t dimensions, std::size_t measured) noexcept
{
    return (dimensions == 2 && measured == 1) || (dimensions == 1 && measured == 1) ||
           (dimensions == 0 && measured == 2) || (dimensions == 3 && measured >= 1);
}

mdt_plane plane_of(const mdt_described_array& header)
{
    const mdt_quantity &x = header.dimensions[0], &y = header.dimensions[1], &value = header.measured[0];
    mdt_plane result;
    result.plane.frame = {static_cast<unsigned>(x.count), static_cast<unsigned>(y.count), 1, x.axis(), y.axis()};
    result.plane.scale = value.meaning();
    result.offset = header.offset;
    result.type = value.element();
    result.strings = header.strings;
    name_plane(result, header.title.empty() ? value.name : header.title, "Image");
    return result;
}

/// Cells of pairs: the second value is drawn over the first, which becomes its parameter stream.
base::read_result<mdt_content> read_pairs(source& file, const mdt_described_array& header, std::uint64_t count)
{
    const mdt_quantity &x = header.measured[0], &y = header.measured[1];
    const std::uint64_t cellBytes = header.cellBytes();
    std::vector<std::byte> cells(static_cast<std::size_t>(count * cellBytes));
    if (!file.read(header.offset, cells)) return base::read_error{header.offset, "samples cannot be read"};
    named_curve xs{"", std::vector<double>(static_cast<std::size_t>(count))}, ys = xs;
    const unsigned xBytes = element_size(x.element()), yBytes = element_size(y.element());
    for (std::size_t i = 0; i < count; ++i) {
        const auto cell = std::span(cells).subspan(i * static_cast<std::size_t>(cellBytes));
        decode_numbers(cell.first(xBytes), x.element(), byte_order::little, std::span(xs.values).subspan(i, 1));
        decode_numbers(cell.subspan(xBytes, yBytes), y.element(), byte_order::little,
                       std::span(ys.values).subspan(i, 1));
    }
    const std::string label = header.label("Curve");
    const VLAxis index;
    mdt_content content;
    recorded_image abscissa =
        make_curve_group(label + "_x", x.name.empty() ? label + " x" : x.name, index, x.meaning(), std::span(&xs, 1));
    recorded_image ordinate = make_curve_group(label, label, index, y.meaning(), std::span(&ys, 1));
    ordinate.stream.set_parameter_stream(abscissa.stream.get_name());
    ordinate.strings.insert(header.strings.begin(), header.strings.end());
    content.emplace_back(std::move(abscissa));
    content.emplace_back(std::move(ordinate));
    return content;
}

base::read_result<mdt_content> read_curve(source& file, const mdt_described_array& header)
{
    named_curve curve;
    if (!read_numbers(file, header.offset, header.dimensions[0].count, header.measured[0].element(), byte_order::little,
                      curve.values))
        return base::read_error{header.offset, "samples cannot be read"};
    const std::string label = header.label("Curve");
    recorded_image image =
        make_curve_group(label, label, header.dimensions[0].axis(), header.measured[0].meaning(), std::span(&curve, 1));
    image.strings.insert(header.strings.begin(), header.strings.end());
    mdt_content content;
    content.emplace_back(std::move(image));
    return content;
}

base::read_result<mdt_content> read_cells(source& file, const mdt_described_array& header, std::uint64_t count)
{
    switch (header.dimensions.size()) {
    case 0:
        return read_pairs(file, header, count);
    case 1:
        return read_curve(file, header);
    case 3:
        return read_mdt_cube(file, header);
    default:
        return mdt_content{plane_of(header)};
    }
}

/// Says so when there are more cells than the index ranges take.
void tell_surplus(const mdt_described_array& header, std::uint64_t count, mdt_content& content)
{
    if (header.cells <= count) return;
    const std::string note = "the index ranges take " + std::to_string(count) + " of the " +
                             std::to_string(header.cells) + " cells that are there";
    for (auto& item : content) std::visit([&](auto& each) { each.notes.push_back(note); }, item);
}

} // namespace

base::read_result<mdt_content> read_mdt_array(source& file, const mdt_frame& frame)
{
    const auto read = read_mdt_array_header(file, frame);
    if (!read) return read.error();
    const mdt_described_array& header = *read;
    const auto refuse = [&](const std::string& reason) { return base::read_error{frame.offset, reason}; };
    const std::size_t dimensions = header.dimensions.size(), measured = header.measured.size();
    if (!is_known_shape(dimensions, measured))
        return refuse(
            base::formatted("arrays of %zu dimensions with %zu values a cell have no view", dimensions, measured));
    for (const mdt_quantity& value : header.measured)
        if (value.element() == SPM_ARRAY_VOID)
            return refuse("data type " + std::to_string(value.type) + " is not known");
    if (header.statedCellBytes != 0 && header.statedCellBytes != header.cellBytes())
        return refuse("the cell size of " + std::to_string(header.statedCellBytes) +
                      " bytes is not that of its values, " + std::to_string(header.cellBytes()));
    std::uint64_t count = 1;
    for (const mdt_quantity& dimension : header.dimensions) {
        if (dimensions >= 2 && !is_image_side(dimension.count))
            return refuse("a side of the array is 0 or above 65536");
        count *= dimension.count; // at most three of 65536, or one below 2^32
    }
    if (dimensions == 0) count = header.cells ? header.cells : header.measured[0].count;
    if (count == 0) return refuse("the array holds no samples");
    if (count > 0xFFFFFFFFu) return refuse("the array holds more than 4294967295 cells");
    if (header.cells != 0 && header.cells < count)
        return refuse("the index ranges ask for " + std::to_string(count) + " cells, but there are " +
                      std::to_string(header.cells));
    if (!holds_numbers(frame.offset + frame.size, header.offset, count, header.cellBytes()))
        return refuse("the index ranges ask for more samples than the frame holds");
    auto content = read_cells(file, header, count);
    if (content) tell_surplus(header, count, *content);
    return content;
}

} // namespace vldv::formats
