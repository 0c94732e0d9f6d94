#include "formats/nanoscope/nanoscope_shift.h"

#include <algorithm>
#include <string_view>

namespace vldv::formats {

namespace {

constexpr std::string_view filler(" \r\n\x1A\0", 5);

bool is_filler(std::string_view bytes) { return bytes.find_first_not_of(filler) == std::string_view::npos; }

/// Bytes that an edited text may have pushed the samples by: 0 for none.
std::uint64_t pushed_by(source& file, std::span<const nanoscope_image> images)
{
    constexpr std::uint64_t most = 2048; // more is something that the maker's program adds behind the samples
    std::uint64_t first = file.size(), end = 0;
    for (const nanoscope_image& image : images) {
        first = std::min(first, image.offset);
        end = std::max(end, image.offset + image.samples() * image.sampleBytes);
    }
    const std::uint64_t left = file.size() - std::min(end, file.size());
    if (left == 0 || left > most || first + left > file.size()) return 0;
    std::string bytes(static_cast<std::size_t>(left), '\0');
    return file.read(first, std::as_writable_bytes(std::span(bytes))) && is_filler(bytes) ? left : 0;
}

} // namespace

std::string read_head(source& file, std::uint64_t count)
{
    std::string text(static_cast<std::size_t>(std::min(file.size(), count)), '\0');
    if (!file.read(0, std::as_writable_bytes(std::span(text)))) text.clear();
    return text;
}

bool has_lost_bytes(source& file, const nanoscope_header& header)
{
    const std::string head = read_head(file, header.length().value_or(0));
    return !is_filler(std::string_view(head).substr(std::min(header.textLength, head.size())));
}

std::string told_shift(source& file, const nanoscope_header& header, std::span<const nanoscope_image> images)
{
    constexpr const char* result = ": its text was edited, and the samples may be read from a wrong place";
    if (has_lost_bytes(file, header))
        return std::string("samples stand within the stated length of the header") + result;
    const std::uint64_t pushed = images.empty() ? 0 : pushed_by(file, images);
    if (pushed == 0) return {};
    return "the header is " + std::to_string(pushed) +
           (pushed == 1 ? " byte longer than it states" : " bytes longer than it states") + result;
}

} // namespace vldv::formats
