#include "formats/single/tmd.h"

#include "formats/shared/file_start.h"
#include "formats/shared/fixed_text.h"
#include "formats/shared/sample_numbers.h"
#include "formats/shared/stream_shape.h"

#include <algorithm>
#include <cmath>

namespace vldv::formats {

namespace {

constexpr std::string_view magic = "Binary TrueMap Data File v", version2 = "2.0";
constexpr std::size_t headerBytes = 80, commentAt = 32, shapeAt = 56;

} // namespace

bool sniff_tmd(std::span<const std::byte> head) { return as_text(head).starts_with(magic); }

bool possible_tmd(std::span<const std::byte>) { return true; }

base::read_result<recording> read_tmd(source& file)
{
    const std::string head = read_start(file, headerBytes);
    if (!head.starts_with(magic))
        return base::read_error{0, "not a TrueMap file; Scan 8 files have no public layout and are not supported"};
    if (!std::string_view(head).substr(magic.size()).starts_with(version2))
        return base::read_error{magic.size(), "only version 2.0 of TrueMap files can be opened"};
    if (head.size() < headerBytes) return base::read_error{head.size(), "header cut short"};
    base::byte_reader in(std::as_bytes(std::span(head)));
    in.seek(shapeAt);
    const unsigned columns = in.u32(), rows = in.u32();
    const double width = in.f32(), height = in.f32(), left = in.f32(), bottom = in.f32();
    if (!is_image_side(columns) || !is_image_side(rows))
        return base::read_error{shapeAt, "columns or rows are 0 or above 65536"};
    if (!holds_numbers(file.size(), headerBytes, std::uint64_t{columns} * rows, 4))
        return base::read_error{shapeAt, "the heights reach beyond the end of the file, which is cut short"};

    // The program works in micrometres and states no units.
    const extent plane[] = {{columns, stated_side(left, width, columns, "\u00B5m")},
                            {rows, stated_side(bottom, height, rows, "\u00B5m")}};
    recorded_image image = make_samples("Height", "Height", plane, 1,
                                        {1.0, 0.0, "\u00B5m", "the unit that TrueMap files are in"}, SPM_ARRAY_FLOAT32);
    note_length(image, "the width in the header", width);
    note_length(image, "the height in the header", height);
    const std::uint64_t bytes = std::uint64_t{4} * columns * rows;
    if (std::string surplus = told_surplus("columns times rows", bytes, file.size() - headerBytes); !surplus.empty())
        image.notes.push_back(std::move(surplus));
    const auto heights = elements_of<float>(image);
    for (unsigned row = 0; row < rows; ++row) { // the top row stands first
        const auto line = heights.subspan(std::size_t{rows - 1 - row} * columns, columns);
        if (!file.read(headerBytes + std::uint64_t{4} * row * columns, std::as_writable_bytes(line)))
            return base::read_error{headerBytes, "the heights cannot be read"};
    }
    to_native(std::as_writable_bytes(heights), 4, byte_order::little);
    settle_samples(image);
    if (const std::string comment = header_text(std::string_view(head).substr(commentAt, shapeAt - commentAt));
        !comment.empty())
        image.strings["Comment"] = comment;
    recording result;
    result.strings["Format"] = "TrueMap 2.0";
    result.items.emplace_back(std::move(image));
    return result;
}

} // namespace vldv::formats
