#pragma once
#include <span>
#include <string>
#include <string_view>

namespace vldv::cli {

/// How many letters have to be inserted, left out, replaced or swapped with their neighbour to make one word of the
/// other; no letter is touched twice (optimal string alignment).
int edit_distance(std::string_view a, std::string_view b);

/// The name that is nearest to a word, the first of several; empty without names. A name that begins with the word is
/// nearer than all that do not.
std::string nearest_name(std::string_view word, std::span<const std::string> names);

} // namespace vldv::cli
