#pragma once
#include "platform/draw/geometry.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vldv {

/// A dialog in which the user chooses among small pictures with captions. A host makes the widgets.
struct CPictureChooser {
    struct entry {
        std::string caption; ///< lines
        CSize size;
        std::vector<std::uint32_t> pixels; ///< rows from the top, each pixel with blue in its low byte; may be empty
    };

    std::string title;
    bool takesSeveral = false;
    std::vector<entry> entries;
    std::vector<std::size_t> chosen; ///< numbers of entries, in their order
};

} // namespace vldv
