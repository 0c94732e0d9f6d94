#pragma once
#include "surface/figures/decoration_text.h"

#include <optional>
#include <string>

namespace vldv::surface {

/// Asks for a path, at first the document's with the extension ".dec", and writes the lists there in one step. A
/// failure is told in a message box. \return whether they were written
bool save_decorations(const std::wstring& documentPath, const decoration_lists& lists);
/// Asks for a file and reads it. \return nothing when the user cancelled or it could not be read, of which he was told
std::optional<decoration_lists> load_decorations();

} // namespace vldv::surface
