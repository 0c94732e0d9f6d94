#pragma once
#include "recovery/kept_document.h"

#include <filesystem>

namespace vldv::recovery {

/// Some image has its samples in the document's file, not in the copy.
bool needs_source(const kept_document& kept);

/// What a native file says of an image without unpacking it.
struct stored_image {
    std::string id;
    std::uint64_t bytes = 0;
    std::uint32_t checksum = 0; ///< CRC-32 of the samples
};
/// A file as it was once, so that it is not looked into again and again.
struct known_source {
    std::optional<platform::file_stamp> stamp;
    std::optional<std::uint32_t> print; ///< see `print_of`
    std::vector<stored_image> images;
};
/// Notes what tells the file from others, and the samples of such images, as far as the file says that itself. Nothing
/// is noted when the file is not any more what `kept` refers to.
void note_source(kept_document& kept, known_source& known);

/// A file that samples are taken from.
struct found_source {
    std::filesystem::path file;
    platform::file_stamp stamp;
    std::vector<std::optional<std::uint32_t>> places; ///< by image of the copy: which image of the file it is
    bool isAsItWas = false;                           ///< it is the document's file, wherever it lies
    bool isWhole = false;                             ///< every image has one that needs one
};

/// What `file` has of the images that `kept` does not hold: all when it is the file that it was then, else those whose
/// checksums agree. \return nothing when there is no file
std::optional<found_source> source_in(const std::filesystem::path& file, const kept_document& kept);
/// What there is of the file that lies in the copy's folder or, where that has more, at its place. \return nothing when
/// neither has any
std::optional<found_source> find_source(const kept_document& kept, const std::filesystem::path& folder);

/// To be called before `file` is replaced: each copy in the state folder that refers to it as it is now gets it for its
/// own, as a link, or where file systems know none as a copy of it.
/// \param session  copies in this folder get a link or nothing: they can still be completed otherwise
/// \return why one of them could not get it; no error when all is well
std::error_code keep_source(const std::filesystem::path& state, const std::filesystem::path& file,
                            const std::filesystem::path& session);
/// Removes the file that a copy was given unless `kept`, its manifest, refers to it.
void drop_source(const std::filesystem::path& folder, const kept_document& kept);

} // namespace vldv::recovery
