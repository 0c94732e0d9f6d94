#include "formats/single/stp.h"

#include "formats/shared/file_start.h"
#include "formats/shared/fixed_text.h"
#include "formats/shared/header_text.h"
#include "formats/shared/left_out.h"
#include "formats/shared/sample_numbers.h"
#include "formats/shared/stream_shape.h"
#include "formats/single/stp_header.h"

namespace vldv::formats {

namespace {

constexpr std::string_view dataMark = "\r\nData_section  \r\n";
constexpr std::uint64_t longestHeader = 16u << 20;

std::uint64_t end_of(const stp_buffer& buffer, std::uint64_t offset) noexcept
{
    return offset + std::uint64_t{2} * buffer.columns * buffer.rows;
}

/// Where each buffer's samples stand: one after another. From the first on that the file does not hold all buffers are
/// taken out of the header.
std::vector<std::uint64_t> place_buffers(stp_header& header, std::uint64_t start, std::uint64_t fileSize,
                                         left_out& missing)
{
    std::vector<std::uint64_t> offsets;
    for (const stp_buffer& buffer : header.buffers) {
        const std::uint64_t samples = std::uint64_t{buffer.columns} * buffer.rows;
        if (!holds_numbers(fileSize, start, samples, 2)) {
            missing.add({start, "samples from buffer " + std::to_string(offsets.size() + 1) +
                                    " on reach beyond the end of the file, which is cut short"});
            break;
        }
        offsets.push_back(start);
        start += samples * 2;
    }
    header.buffers.resize(offsets.size());
    return offsets;
}

std::vector<plane_group> join_buffers(const stp_header& header)
{
    std::vector<channel_plane> planes;
    for (const stp_buffer& buffer : header.buffers)
        planes.push_back({buffer.label,
                          buffer.source + ' ' + buffer.frameDirection,
                          buffer.direction,
                          {buffer.columns, buffer.rows, 1, buffer.x, buffer.y},
                          buffer.scale});
    return join_directions(planes);
}

base::read_result<recorded_image> load_group(source& file, const stp_header& header,
                                             const std::vector<std::uint64_t>& offsets, const plane_group& group,
                                             const std::string& id)
{
    const stp_buffer& first = header.buffers[group.front()];
    const extent plane[] = {{first.columns, first.x}, {first.rows, first.y}};
    recorded_image image =
        make_samples(id, first.label, plane, static_cast<unsigned>(group.size()), first.scale, SPM_ARRAY_UINT16);
    auto samples = elements_of<std::uint16_t>(image);
    const std::size_t frame = samples.size() / group.size();
    for (const std::size_t index : group) {
        const auto bytes = std::as_writable_bytes(samples.first(frame));
        if (!file.read(offsets[index], bytes))
            return base::read_error{offsets[index], "samples of " + first.label + " cannot be read"};
        to_native(bytes, 2, byte_order::little);
        samples = samples.subspan(frame);
        join_strings(image.strings, header.buffers[index].strings);
    }
    settle_samples(image);
    name_axis_fields(image, {{"length_x", nullptr}, {"length_y", nullptr}});
    if (first.voltage) add_calibration(image, first.scale, *first.voltage);
    name_directions(image, group, first.direction);
    return image;
}

} // namespace

bool sniff_stp(std::span<const std::byte> head) { return is_stp_header(as_text(head)); }

base::read_result<recording> read_stp(source& file)
{
    if (!is_stp_header(read_start(file, 16))) return base::read_error{0, "not a Molecular Imaging header"};
    const auto text = read_text_before(file, dataMark, longestHeader);
    if (!text) return text.error();
    auto header = parse_stp_header(*text);
    if (!header) return header.error();
    left_out missing;
    const auto offsets = place_buffers(*header, text->size() + dataMark.size(), file.size(), missing);
    if (offsets.empty()) return missing.first();

    recording result;
    result.strings = header->strings;
    missing.tell(result);
    const std::uint64_t start = offsets.front(), end = end_of(header->buffers.back(), offsets.back());
    if (const std::string surplus = told_surplus("samples_x times samples_y", end - start, file.size() - start);
        missing.empty() && !surplus.empty())
        add_warning(result, surplus);
    std::vector<std::string> ids;
    const auto groups = join_buffers(*header);
    for (std::size_t i = 0; i < groups.size(); ++i) {
        if (!file.progress(static_cast<double>(i) / static_cast<double>(groups.size())))
            return base::read_error{0, "reading was cancelled"};
        const std::string id = unique_id(header->buffers[groups[i].front()].label, ids);
        auto image = load_group(file, *header, offsets, groups[i], id);
        if (!image) return image.error();
        result.items.emplace_back(std::move(*image));
    }
    return result;
}

} // namespace vldv::formats
