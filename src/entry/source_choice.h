#pragma once
#include "recovery/kept_source.h"

namespace vldv::entry {

/// What the user wants where a copy refers to a file that is not there any more, or not as it was.
struct source_choice {
    bool isWanted = true;                         ///< the copy is to be opened
    std::optional<recovery::found_source> chosen; ///< where the user has found the file; nothing: where it always was
};

/// Asks only when images would be missing. `kept` moves along with a file that is the one that it was.
source_choice choose_source(recovery::kept_document& kept, const std::filesystem::path& folder);

/// A window with the texts of a copy of which no image is left.
void show_texts(const recovery::kept_document& kept);

} // namespace vldv::entry
