#include "formats/img/img.h"

#include "formats/img/img_kinds.h"
#include "formats/shared/sample_numbers.h"
#include "formats/shared/stream_shape.h"

#include <algorithm>
#include <cmath>

namespace vldv::formats {

namespace {

using kind_reader = base::read_result<img_layout> (*)(source&, std::span<const std::byte>);

constexpr std::size_t headBytes = 4096;

/// Turns rows into the order of images: bottom row first, left to right.
template <class T>
void turn(std::span<T> samples, const img_layout& layout)
{
    const auto row = [&](std::size_t number) { return samples.subspan(number * layout.width, layout.width); };
    if (layout.isMirrored)
        for (std::size_t i = 0; i < layout.height; ++i) std::ranges::reverse(row(i));
    if (layout.isTopFirst)
        for (std::size_t low = 0, high = layout.height - 1; low < high; ++low, --high)
            std::ranges::swap_ranges(row(low), row(high));
}

/// Rows that were halved to fit 16 bits, each as often as its word tells.
bool double_rows(source& file, const img_layout& layout, std::span<std::int32_t> samples)
{
    std::vector<std::uint16_t> words(layout.height);
    const std::uint64_t at = layout.offset + 2ull * layout.width * layout.height;
    if (!file.read(at, std::as_writable_bytes(std::span(words)))) return false;
    for (std::size_t row = 0; row < layout.height; ++row)
        for (std::int32_t& sample : samples.subspan(row * layout.width, layout.width)) sample *= 1 << (words[row] & 15);
    return true;
}

base::read_result<recording> load(source& file, const img_layout& layout)
{
    const base::read_error unreadable{layout.offset, "samples cannot be read"};
    if (!holds_numbers(file.size(), layout.offset, std::uint64_t{layout.width} * layout.height, 2)) return unreadable;
    const extent sides[] = {{layout.width, layout.x}, {layout.height, layout.y}};
    recorded_image image = make_samples(layout.label, layout.label, sides, 1, layout.scale,
                                        layout.hasLineShifts ? SPM_ARRAY_INT32 : SPM_ARRAY_INT16);
    std::vector<std::string> ids;
    image.stream.set_name(unique_id(layout.label, ids).c_str());
    if (layout.hasLineShifts) {
        std::vector<std::int16_t> stored(image.stream.array_length());
        if (!file.read(layout.offset, std::as_writable_bytes(std::span(stored)))) return unreadable;
        const auto samples = elements_of<std::int32_t>(image);
        std::copy(stored.begin(), stored.end(), samples.begin());
        if (!double_rows(file, layout, samples)) return unreadable;
        turn(samples, layout);
    } else {
        const auto samples = elements_of<std::int16_t>(image);
        if (!file.read(layout.offset, std::as_writable_bytes(samples))) return unreadable;
        turn(samples, layout);
    }
    settle_samples(image);
    name_axis_fields(image, {{"its size", "its offset"}, {"its size", "its offset"}});
    image.strings.insert(layout.strings.begin(), layout.strings.end());
    image.strings["Format"] = layout.kind;
    recording result;
    result.items.emplace_back(std::move(image));
    return result;
}

} // namespace

bool sniff_img(std::span<const std::byte> head)
{
    base::byte_reader in(head);
    if (in.tag("RSCOPE") || in.tag("ff\x06@")) return true; // the number 2.1
    return looks_like_ecs(head) || looks_like_sicm(head);
}

bool possible_img(std::span<const std::byte>) { return true; }

base::read_result<recording> read_img(source& file)
{
    std::vector<std::byte> head(static_cast<std::size_t>(std::min<std::uint64_t>(file.size(), headBytes)));
    if (!file.read(0, head)) return base::read_error{0, "header cannot be read"};
    static const struct {
        const char* name;
        kind_reader read;
    } kinds[] = {{"Burleigh", read_burleigh}, {"DME", read_dme}, {"IonScope", read_sicm}, {"ECS", read_ecs}};
    std::string reasons;
    for (const auto& kind : kinds) {
        const auto layout = kind.read(file, head);
        if (layout) return load(file, *layout);
        reasons += std::string(reasons.empty() ? "" : ", ") + kind.name + " (" + layout.error().reason + ")";
    }
    return base::read_error{0, "none of the .img kinds that can be told apart: " + reasons};
}

} // namespace vldv::formats
