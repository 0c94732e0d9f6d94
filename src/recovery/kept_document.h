#pragma once
#include "document/history/own_files.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace vldv::recovery {

using text_table = std::map<std::string, std::string>;

/// One image of a kept document.
struct kept_image {
    std::string id;
    std::string declaration; ///< as `SPMDataStream::description()`
    text_table texts;
    std::string file; ///< beside the manifest, with the samples; empty: they are those of an image of `source`
    std::uint32_t fileImage = 0;                     ///< its position there
    std::uint64_t bytes = 0;                         ///< of samples
    std::optional<std::uint32_t> checksum;           ///< CRC-32 of those in `source`, where that tells it
    std::string overlayFile = {}, drawingsFile = {}; ///< beside the manifest; empty: the image has none
};

/// What was kept of a document: all but samples.
struct kept_document {
    std::int64_t time = 0; ///< of the last change, microseconds since 1970
    std::wstring title;
    std::string baseTitle, displayTitle; ///< see `CStorageDoc::title_parts`
    std::uint32_t derived = 0;
    std::wstring path;                                ///< where it is saved; empty: nowhere yet
    std::optional<document::own_files::entry> source; ///< the file that it was read from or written to last
    std::optional<std::uint32_t> sourcePrint;         ///< of its content, see `print_of`
    text_table texts;
    std::vector<kept_image> images;
};

constexpr const char* manifestName = "manifest";
/// Of the folder in a copy that holds its file, where something else has taken that one's place.
constexpr const char* sourceFolder = "source";

/// Little-endian: "VLKEPT3\n", the fields with a 32-bit length before each text and list, the print where there is
/// one, and the CRC-32 of all that. Before, as "VLKEPT2\n", it had no parts of titles, overlays and drawings.
std::vector<std::byte> encode(const kept_document& kept);
/// Nothing for bytes that `encode` has not made, now or before, of which some are missing or changed, or that name
/// files elsewhere.
std::optional<kept_document> decode(std::span<const std::byte> bytes);
/// The names of the files beside the manifest.
std::set<std::string> files_of(const kept_document& kept);
/// The manifest in a folder; nothing where there is no good one.
std::optional<kept_document> read_manifest(const std::filesystem::path& folder);

} // namespace vldv::recovery
