#include "platform/dialogs/ListChooser.h"

#include <algorithm>
#include <utility>

namespace vldv {

std::string CListChooser::chosenText(std::size_t index) const
{
    const entry& shown = chosen[index];
    return shown.text + sources[shown.source].suffix;
}

void CListChooser::add(std::size_t from, std::span<const std::size_t> entries)
{
    for (const std::size_t index : entries) {
        entry taken{from, sources[from].entries[index]};
        if (std::ranges::find(chosen, taken) == chosen.end()) chosen.push_back(std::move(taken));
    }
}

void CListChooser::addAll(std::size_t from)
{
    for (std::size_t i = 0; i < sources[from].entries.size(); ++i) add(from, std::span(&i, 1));
}

void CListChooser::remove(std::span<const std::size_t> indices)
{
    std::size_t index = 0;
    std::erase_if(chosen, [&](const entry&) { return std::ranges::find(indices, index++) != indices.end(); });
}

std::size_t CListChooser::move(std::size_t index, int by)
{
    if (index >= chosen.size()) return index;
    if (by < 0 ? index == 0 : index + 1 == chosen.size()) return index;
    const std::size_t to = by < 0 ? index - 1 : index + 1;
    std::swap(chosen[index], chosen[to]);
    return to;
}

} // namespace vldv
