#include "formats/shared/force/curve_lengths.h"

#include "base/text.h"

#include <algorithm>
#include <cstdint>

namespace vldv::formats {

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

/// What stands between blanks, tabs, line ends and commas.
std::vector<std::string_view> words_of(std::string_view text)
{
    constexpr std::string_view gaps = " \t\r\n,";
    std::vector<std::string_view> words;
    for (std::size_t at = text.find_first_not_of(gaps); at != std::string_view::npos;
         at = text.find_first_not_of(gaps, at)) {
        const std::size_t end = std::min(text.find_first_of(gaps, at), text.size());
        words.push_back(text.substr(at, end - at));
        at = end;
    }
    return words;
}

} // namespace

std::vector<std::size_t> curve_lengths(const SPMDataStream& stream, const char* told)
{
    const std::size_t points = stream.get_dimensions_number() ? stream.get_dimension(0).length : 0;
    const std::size_t subimages = subimages_of(stream);
    if (points == 0 || subimages == 0) return {};
    std::vector<std::size_t> lengths(subimages * rows_of(stream), points);
    if (!told || !*told) return lengths;
    const std::vector<std::string_view> words = words_of(told);
    if (words.size() != lengths.size() && words.size() != subimages) return lengths; // of another shape
    const std::size_t each = lengths.size() / words.size();
    for (std::size_t i = 0; i < lengths.size(); ++i)
        if (const auto length = base::whole_integer(words[i / each]))
            lengths[i] = static_cast<std::size_t>(std::clamp<long long>(*length, 0, static_cast<long long>(points)));
    return lengths;
}

} // namespace vldv::formats
