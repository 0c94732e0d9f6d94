#pragma once
#include "base/text.h"
#include "formats/text/text_numbers.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace vldv::formats {

/// Tells by the last numbers of the lines whether that of a last line without an end has lost some of its characters.
class last_numbers {
public:
    explicit last_numbers(const number_layout& layout)
        : separators(layout.separator == ',' ? " \t;," : " \t;"), decimalMark(layout.decimalComma ? ',' : '.')
    {
    }

    void add(std::string_view line) noexcept { lines[count++ % lines.size()] = line; }
    /// The last number, when those of the lines before it agree in having more digits behind the mark, or at all.
    std::string_view cutNumber() const noexcept
    {
        constexpr std::size_t fewest = 3; // lines that tell
        const std::string_view last = numberOf(count - 1);
        if (count <= fewest) return {};
        for (std::size_t i = count - std::min(count, lines.size()); i + 1 < count; ++i)
            if (digitsOf(numberOf(i)) <= digitsOf(last) || hasMark(numberOf(i)) != hasMark(numberOf(count - 2)))
                return {};
        return last;
    }

private:
    bool hasMark(std::string_view number) const noexcept { return number.find(decimalMark) != std::string_view::npos; }
    /// Behind the mark, which a cut number may have lost; where there are none, all.
    std::size_t digitsOf(std::string_view number) const noexcept
    {
        if (!hasMark(numberOf(count - 2))) return number.size();
        const std::size_t mark = number.find(decimalMark);
        return mark == std::string_view::npos ? 0 : number.size() - mark;
    }
    std::string_view numberOf(std::size_t index) const noexcept
    {
        std::string_view line = base::trimmed(lines[index % lines.size()]);
        while (line.find_last_of(separators) + 1 == line.size() && !line.empty()) line.remove_suffix(1);
        return line.substr(line.find_last_of(separators) + 1);
    }

    std::string_view separators;
    char decimalMark;
    std::array<std::string_view, 16> lines;
    std::size_t count = 0;
};

} // namespace vldv::formats
