#pragma once
#include <cstdint>
#include <vector>

namespace vldv::document {

/// Tells the content of a document at one moment from that at others, without holding any of it. Each change of an
/// image or of the texts gives a number that no document had before; a step back brings the earlier number back with
/// the samples. Equal numbers are equal contents; the same content that was made twice has two numbers.
struct content_state {
    std::vector<std::uint64_t> images; ///< by position
    std::uint64_t texts = 0;
    // What is in no file, so that a document does not differ from one by it. By position of the image; 0: none.
    std::vector<std::uint64_t> overlays = {}, drawings = {};
    bool operator==(const content_state&) const = default;
};

} // namespace vldv::document
