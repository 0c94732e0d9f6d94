#include "formats/single/sm2.h"

#include "formats/shared/file_start.h"
#include "formats/shared/finish_recording.h"
#include "formats/shared/header_text.h"
#include "formats/shared/sample_numbers.h"
#include "formats/shared/stream_shape.h"
#include "formats/single/sm2_page.h"

#include <algorithm>
#include <vector>

namespace vldv::formats {

namespace {

/// A page and where its samples stand in the file.
struct placed_page {
    sm2_page page;
    std::uint64_t offset = 0;
};

/// Walks the pages to the end of the file, or to the first that cannot be read; `stop` then tells why.
std::vector<placed_page> find_pages(source& file, base::read_error& stop)
{
    std::vector<placed_page> pages;
    std::uint64_t start = 0;
    while (start < file.size()) {
        std::byte header[sm2HeaderBytes];
        if (!file.read(start, header)) {
            stop = {start, "header cut short"};
            break;
        }
        const auto page = parse_sm2_page(header);
        if (!page) {
            stop = {start + page.error().offset, page.error().reason};
            break;
        }
        const std::uint64_t left = file.size() - start;
        if (page->dataOffset > left || page->dataBytes > left - page->dataOffset) {
            stop = {start, "samples reach beyond the end of the file, which is cut short"};
            break;
        }
        pages.push_back({*page, start + page->dataOffset});
        start += page->dataOffset + page->dataBytes;
    }
    return pages;
}

std::vector<plane_group> join_pages(const std::vector<placed_page>& pages)
{
    std::vector<channel_plane> planes;
    for (const auto& [page, offset] : pages) {
        channel_plane plane;
        plane.channel = page.label;
        plane.pass =
            (page.isImage ? "image " : "curves ") + std::to_string(page.type) + ' ' + std::to_string(page.kind);
        plane.direction = page.isImage ? page.direction : scan_direction::unknown;
        plane.frame = {page.columns, page.rows, 1, page.x, page.y};
        plane.scale = page.scale;
        planes.push_back(std::move(plane));
    }
    return join_directions(planes);
}

/// Files hold the top row first and each row from right to left: backwards as a whole.
void turn_image(std::span<std::byte> samples, unsigned sampleBytes) noexcept
{
    std::ranges::reverse(samples);
    to_native(samples, sampleBytes, byte_order::big); // the bytes of a sample back into their order
}

base::read_result<recorded_image> load_group(source& file, const std::vector<placed_page>& pages,
                                             const plane_group& group, const std::string& id)
{
    const sm2_page& first = pages[group.front()].page;
    const extent x{first.columns, first.x}, plane[] = {x, {first.rows, first.y}};
    recorded_image image =
        first.isImage
            ? make_samples(id, first.label, plane, static_cast<unsigned>(group.size()), first.scale, first.type)
            : make_samples(id, first.label, std::span(&x, 1), first.rows, first.scale, first.type);
    auto* out = static_cast<std::byte*>(image.stream.array_data());
    const unsigned sampleBytes = element_size(first.type);
    const auto bytes = static_cast<std::size_t>(first.samples()) * sampleBytes;
    for (const std::size_t index : group) {
        const std::span samples(out, bytes);
        if (!file.read(pages[index].offset, samples))
            return base::read_error{pages[index].offset, "samples of " + first.label + " cannot be read"};
        if (first.isImage) turn_image(samples, sampleBytes);
        join_strings(image.strings, pages[index].page.strings);
        out += bytes;
    }
    settle_samples(image);
    const axis_fields fieldX{"the field X", "the field X"}, fieldY{"the field Y", "the field Y"};
    if (first.isImage)
        name_axis_fields(image, {fieldX, fieldY});
    else
        name_axis_fields(image, {fieldX});
    if (first.isImage) name_directions(image, group, first.direction);
    return image;
}

} // namespace

bool sniff_sm2(std::span<const std::byte> head) { return is_sm2_page(head); }

bool possible_sm2(std::span<const std::byte>) { return true; }

base::read_result<recording> read_sm2(source& file)
{
    const std::string start = read_start(file, 16);
    if (!is_sm2_page(std::as_bytes(std::span(start))))
        return base::read_error{0, "not an RHK SPM32 file; Smena files have no public layout and are not supported"};
    base::read_error stop;
    const auto pages = find_pages(file, stop);
    if (pages.empty()) return stop;
    recording result;
    result.strings["Format"] = "RHK SPM32";
    std::vector<std::string> ids;
    const auto groups = join_pages(pages);
    for (std::size_t i = 0; i < groups.size(); ++i) {
        if (!file.progress(static_cast<double>(i) / static_cast<double>(groups.size())))
            return base::read_error{0, "reading was cancelled"};
        auto image = load_group(file, pages, groups[i], unique_id(pages[groups[i].front()].page.label, ids));
        if (!image) return image.error();
        result.items.emplace_back(std::move(*image));
    }
    if (!stop.reason.empty())
        leave_note(result, "Unread pages", "from byte " + std::to_string(stop.offset) + ": " + stop.reason);
    return result;
}

} // namespace vldv::formats
