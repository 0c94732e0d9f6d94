#include "document/formats/curve_lengths.h"

#include "base/text.h"

#include <algorithm>
#include <cstdint>

namespace formats {

namespace {

std::size_t subimages_of(const SPMDataStream& stream) noexcept
{
    std::uint64_t length = 1;
    for (unsigned d = 0; d < stream.get_dimensions_number(); ++d) {
        length *= stream.get_dimension(d).length;
        if (length == 0 || length > stream.array_length()) return 0;
    }
    return static_cast<std::size_t>(stream.array_length() / length);
}

/// Curves of a sub-image.
std::size_t rows_of(const SPMDataStream& stream) noexcept
{
    std::size_t rows = 1;
    for (unsigned d = 1; d < stream.get_dimensions_number(); ++d) rows *= stream.get_dimension(d).length;
    return rows;
}

} // namespace

std::vector<std::size_t> curve_lengths(const SPMDataStream& stream, const char* told)
{
    const std::size_t points = stream.get_dimensions_number() ? stream.get_dimension(0).length : 0;
    const std::size_t subimages = subimages_of(stream);
    if (points == 0 || subimages == 0) return {};
    std::vector<std::size_t> lengths(subimages * rows_of(stream), points);
    if (!told || !*told) return lengths;
    const auto words = base::split(base::trimmed(told), ' ');
    if (words.size() != lengths.size() && words.size() != subimages) return lengths; // of another shape
    const std::size_t each = lengths.size() / words.size();
    for (std::size_t i = 0; i < lengths.size(); ++i)
        if (const auto length = base::whole_integer(words[i / each]); length && *length >= 0)
            lengths[i] = static_cast<std::size_t>(std::min<long long>(*length, static_cast<long long>(points)));
    return lengths;
}

} // namespace formats
