#include "formats/nanoscope/nanoscope.h"

#include "formats/nanoscope/nanoscope_force.h"
#include "formats/nanoscope/nanoscope_header.h"
#include "formats/nanoscope/nanoscope_image.h"
#include "formats/nanoscope/nanoscope_recording.h"
#include "formats/nanoscope/nanoscope_samples.h"
#include "formats/nanoscope/nanoscope_shift.h"
#include "formats/nanoscope/nanoscope_text.h"
#include "formats/nanoscope/nanoscope_version2.h"
#include "formats/shared/left_out.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace vldv::formats {

namespace {

constexpr std::string_view version2Magic = "Data_File_Type 7";
constexpr std::string_view magics[] = {"\\*File list", "\\*Force file list", "\\*EC File list", "?*File list",
                                       version2Magic};

/// The first line when it is one of a NanoScope file; empty otherwise.
std::string_view magic_of(std::string_view head) noexcept
{
    for (const std::string_view magic : magics)
        if (head.starts_with(magic) && head.substr(magic.size()).find_first_of("\r\n") == 0) return magic;
    return {};
}

base::read_error unreadable_header() { return {0, "header cannot be read"}; }

/// Binary files that passed a text transfer have other line ends behind the magic than CR LF.
std::optional<base::read_error> changed_line_ends(std::string_view head)
{
    const std::size_t magicEnd = magic_of(head).size();
    if (head.substr(magicEnd).starts_with("\r\n")) return std::nullopt;
    return base::read_error{magicEnd, "line ends are not CR LF: the file was changed in a text transfer, which damaged "
                                      "the samples, too"};
}

/// The whole header: its length stands within the first lines.
base::read_result<nanoscope_header> read_header(source& file)
{
    const std::string firstLook = read_head(file, 65536);
    const auto length = parse_nanoscope_header(firstLook).length();
    const bool isCut = length && *length > file.size();
    if (auto problem = changed_line_ends(firstLook)) {
        if (isCut) problem->reason += "; it is cut short besides";
        return *problem;
    }
    if (!length) return base::read_error{0, "Data length of the header is missing or no number"};
    if (isCut)
        return base::read_error{file.size(), "Data length of the header, " + std::to_string(*length) +
                                                 ", reaches beyond the end of the file, which is cut short"};
    const std::string text = read_head(file, *length);
    if (text.size() != *length) return unreadable_header();
    return parse_nanoscope_header(text);
}

/// One image with its samples, straight from the file.
base::read_result<recorded_image> load_group(source& file, const image_group& group, const std::string& id)
{
    const nanoscope_image& first = group.front();
    const auto unreadable = [](const nanoscope_image& part) {
        return base::read_error{part.offset, "samples of " + part.channel + " cannot be read"};
    };
    if (first.sampleBytes == 2) {
        recorded_image image = make_image(id, first.channel, frame_of(group), first.scale);
        auto rest = samples_of(image.stream);
        for (const nanoscope_image& part : group) {
            const auto count = static_cast<std::size_t>(part.samples());
            if (!read_samples(file, part.offset, rest.first(count))) return unreadable(part);
            rest = rest.subspan(count);
        }
        return image;
    }
    std::vector<double> raw;
    raw.reserve(static_cast<std::size_t>(first.samples() * group.size()));
    for (const nanoscope_image& part : group)
        if (!read_wide_samples(file, part.offset, part.samples(), raw)) return unreadable(part);
    return make_image_from_raw(id, first.channel, frame_of(group), first.scale, raw);
}

base::read_result<recording> read_binary(source& file)
{
    const auto header = read_header(file);
    if (!header) return header.error();
    std::vector<nanoscope_image> images;
    left_out missing;
    std::size_t number = 0;
    std::uint64_t bytesLeft = file.size() - header->length().value_or(0);
    for (const nanoscope_section& section : header->sections) {
        if (section.kind != nanoscope_list::image) continue;
        nanoscope_image image = describe_nanoscope_image(*header, section);
        std::string problem = place_nanoscope_image(*header, file.size(), image);
        const std::string title = message_title(number++, image);
        if (!problem.empty()) {
            missing.add({image.offset, title + problem});
            continue;
        }
        const std::uint64_t bytes = image.samples() * image.sampleBytes;
        if (bytes > bytesLeft)
            return base::read_error{image.offset, title + "images overlap, together they exceed the file"};
        bytesLeft -= bytes;
        images.push_back(std::move(image));
    }
    if (!missing.empty() && has_lost_bytes(file, *header))
        return base::read_error{missing.first().offset,
                                missing.first().reason + ", and its line ends were changed in a text transfer"};
    const bool hasForce = header->count(nanoscope_list::force_image) != 0;
    const bool hasLostImage = !hasForce && missing.empty() && !images.empty() &&
                              std::ranges::all_of(images, [&](const nanoscope_image& image) {
                                  return bytesLeft >= image.samples() * image.sampleBytes && image.doubt.empty();
                              });
    // A header that lost line ends and has lost images, too, was refused above.
    const std::string shift = told_shift(file, *header, images);
    if (images.empty() && !hasForce) return missing.empty() ? no_image_error(*header) : missing.first();
    auto result = record_images(file, *header, std::move(images), [&](const image_group& group, const std::string& id) {
        return load_group(file, group, id);
    });
    if (!result) return result;
    if (hasForce)
        if (auto problem = add_nanoscope_force(file, *header, bytesLeft, missing, *result)) return std::move(*problem);
    if (result->items.empty() && !missing.empty()) return missing.first();
    missing.tell(*result);
    if (!shift.empty()) add_warning(*result, shift);
    if (hasLostImage)
        add_warning(*result,
                    std::to_string(bytesLeft) + " bytes of samples belong to no image list: an image may be lost");
    return result;
}

} // namespace

bool sniff_nanoscope(std::span<const std::byte> head)
{
    return !magic_of({reinterpret_cast<const char*>(head.data()), head.size()}).empty();
}

base::read_result<recording> read_nanoscope(source& file)
{
    const std::string head = read_head(file, 64);
    const std::string_view magic = magic_of(head);
    if (magic.empty()) return base::read_error{0, "not a NanoScope header"};
    if (magic == version2Magic) {
        if (auto problem = changed_line_ends(head)) return std::move(*problem);
        return read_nanoscope_version2(file);
    }
    return magic.starts_with('?') ? read_nanoscope_text(file) : read_binary(file);
}

} // namespace vldv::formats
