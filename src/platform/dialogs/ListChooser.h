#pragma once
#include "vldv_api.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace vldv {

/// A dialog in which entries of several lists are taken into one of the user's own order: what it holds and what its
/// buttons do. A host makes the widgets.
class VLDV_API CListChooser {
public:
    struct source {
        std::string heading;
        std::vector<std::string> entries;
        std::string suffix; ///< stands behind its entries in the chosen list
    };
    struct entry {
        std::size_t source; ///< index
        std::string text;
        bool operator==(const entry&) const = default;
    };

    std::string title, chosenHeading;
    std::vector<source> sources;
    std::vector<entry> chosen;

    /// What the chosen list shows.
    std::string chosenText(std::size_t index) const;
    /// Takes entries over; one that is there already stays where it is.
    void add(std::size_t from, std::span<const std::size_t> entries);
    void addAll(std::size_t from);
    void remove(std::span<const std::size_t> indices);
    void removeAll() { chosen.clear(); }
    /// One place up (-1) or down (1). \return where the entry is now
    std::size_t move(std::size_t index, int by);
};

} // namespace vldv
