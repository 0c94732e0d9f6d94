#include "cli/choice/nearest_name.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace vldv::cli {

int edit_distance(std::string_view a, std::string_view b)
{
    const std::size_t width = b.size() + 1;
    std::vector<int> distances((a.size() + 1) * width);
    const auto at = [&](std::size_t i, std::size_t j) -> int& { return distances[i * width + j]; };
    for (std::size_t i = 0; i <= a.size(); ++i) at(i, 0) = static_cast<int>(i);
    for (std::size_t j = 0; j <= b.size(); ++j) at(0, j) = static_cast<int>(j);
    for (std::size_t i = 1; i <= a.size(); ++i)
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const int replaced = at(i - 1, j - 1) + (a[i - 1] != b[j - 1]);
            at(i, j) = std::min({at(i - 1, j) + 1, at(i, j - 1) + 1, replaced});
            const bool isSwap = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
            if (isSwap) at(i, j) = std::min(at(i, j), at(i - 2, j - 2) + 1);
        }
    return distances.back();
}

std::string nearest_name(std::string_view word, std::span<const std::string> names)
{
    const auto rank = [word](const std::string& name) {
        return std::pair(word.empty() || !name.starts_with(word), edit_distance(word, name));
    };
    const auto nearest = std::ranges::min_element(names, {}, rank);
    return nearest != names.end() ? *nearest : std::string();
}

} // namespace vldv::cli
