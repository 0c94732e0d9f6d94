#pragma once
#include "document/formats/registry.h"

#include <filesystem>
#include <vector>

namespace document {

/// The format that a file claims to be of, by its content or by its name as well; null when there is none.
const formats::format_row* claimed_format(const std::filesystem::path& file, bool byName);
/// The recordings in a folder and those below it, by name: files of whose format content or name speak. Folders that
/// may not be read are passed over.
std::vector<std::filesystem::path> recordings_in(const std::filesystem::path& folder);

} // namespace document
