#include "recovery/kept_source.h"

#include "document/FileReader.h"
#include "document/container/spmx_open.h"
#include "document/container/stream_source.h"
#include "platform/files/Exceptions.h"
#include "platform/files/atomic_file.h"
#include "platform/files/paths.h"
#include "recovery/file_print.h"
#include "recovery/folder_entries.h"

#include <algorithm>
#include <fstream>

namespace vldv::recovery {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t copyBlock = std::size_t{1} << 20;

/// \return empty for other files, and those that cannot be read
std::vector<stored_image> images_of(std::ifstream& in)
{
    if (VLFileReader::GetDocumentType(in) != FILE_SPMX) return {};
    document::stream_source file(in, {});
    const auto opened = document::open_spmx(file);
    std::vector<stored_image> found;
    for (std::size_t i = 0; opened && i < opened->samples.size(); ++i) {
        const auto& [entry, elements, missing] = opened->samples[i];
        const SPMDataStream& stream = opened->description.streams[i].stream;
        // An entry that is shorter than its image says nothing of what follows.
        if (missing.empty() && entry.bytes == elements * stream.array_element_size())
            found.push_back({stream.get_name(), entry.bytes, entry.checksum});
        else
            found.push_back({});
    }
    return found;
}

bool needs_source(const kept_image& image) { return image.file.empty() && image.bytes > 0; }

std::optional<std::uint32_t> place_of(const kept_image& image, const std::vector<stored_image>& stored)
{
    const auto found = std::ranges::find_if(stored, [&](const stored_image& each) {
        return image.checksum && each.id == image.id && each.bytes == image.bytes && each.checksum == *image.checksum;
    });
    if (found == stored.end()) return std::nullopt;
    return static_cast<std::uint32_t>(found - stored.begin());
}

std::size_t count_places(const std::optional<found_source>& found)
{
    if (!found) return 0;
    return static_cast<std::size_t>(std::ranges::count_if(found->places, [](const auto& place) { return !!place; }));
}

/// A copy with the time of `file`, or nothing of it.
std::error_code copy_to(const fs::path& made, const fs::path& file)
try {
    std::error_code error;
    const auto time = fs::last_write_time(file, error);
    std::ifstream in(file, std::ios::binary);
    if (error || !in) return error ? error : std::make_error_code(std::errc::io_error);
    platform::atomic_file out(made);
    std::vector<char> block(copyBlock);
    while (in) {
        in.read(block.data(), static_cast<std::streamsize>(block.size()));
        out.write(std::as_bytes(std::span(block).first(static_cast<std::size_t>(in.gcount()))));
    }
    if (!in.eof()) return std::make_error_code(std::errc::io_error);
    out.commit();
    fs::last_write_time(made, time, error);
    return {};
} catch (const CFileException& failure) {
    return {failure.osError, std::generic_category()};
}

/// Makes `file` stand in `folder` as well. A link costs nothing and holds what the file is now, since it is replaced by
/// another and not written to.
std::error_code keep_in(const fs::path& folder, const fs::path& file, const fs::path& name, bool linksOnly)
{
    std::error_code error;
    fs::create_directory(folder, error);
    const fs::path behindLinks = error ? fs::path() : fs::canonical(file, error);
    if (error) return error;
    const fs::path unfinished = folder / "unfinished";
    fs::remove(unfinished, error);
    fs::create_hard_link(behindLinks, unfinished, error);
    if (!error) {
        fs::rename(unfinished, folder / name, error);
        return error;
    }
    return linksOnly ? std::error_code() : copy_to(folder / name, file);
}

fs::path own_source(const fs::path& folder, const kept_document& kept)
{
    return folder / sourceFolder / platform::to_path(kept.source->path).filename();
}

/// A file that may be the one that copies refer to, wherever it lies.
class candidate {
public:
    explicit candidate(const fs::path& file_) : file(file_), stamp(platform::open_stamped(in, platform::to_wide(file)))
    {
    }

    /// Nothing when there is no such file.
    const std::optional<platform::file_stamp>& stampThen() const noexcept { return stamp; }
    std::ifstream& stream() noexcept { return in; }

    /// The content tells it where a print was taken of all of it. In a larger file something may have changed between
    /// the pieces, so that the time has to agree as well.
    bool isSourceOf(const kept_document& kept)
    {
        if (!stamp || !kept.source || stamp->size != kept.source->stamp.size || !needs_source(kept)) return false;
        const bool isOfThatTime = stamp->isOfSameContent(kept.source->stamp);
        if (!kept.sourcePrint) // a copy of an earlier version
            return isOfThatTime && file.filename() == platform::to_path(kept.source->path).filename();
        return (isOfThatTime || is_printed_whole(stamp->size)) && printed() == kept.sourcePrint;
    }

private:
    const std::optional<std::uint32_t>& printed()
    {
        if (!print) print = print_of(in, stamp->size);
        return print;
    }

    fs::path file;
    std::ifstream in;
    std::optional<platform::file_stamp> stamp;
    std::optional<std::uint32_t> print;
};

} // namespace

bool needs_source(const kept_document& kept)
{
    return std::ranges::any_of(kept.images, [](const kept_image& image) { return needs_source(image); });
}

void note_source(kept_document& kept, known_source& known)
{
    if (!kept.source || !needs_source(kept)) return;
    if (known.stamp != kept.source->stamp) {
        std::ifstream in;
        if (platform::open_stamped(in, kept.source->path) != kept.source->stamp) return;
        known = {kept.source->stamp, print_of(in, kept.source->stamp.size), images_of(in)};
    }
    kept.sourcePrint = known.print;
    for (kept_image& image : kept.images) {
        if (!needs_source(image) || image.fileImage >= known.images.size()) continue;
        const stored_image& there = known.images[image.fileImage];
        if (there.id == image.id && there.bytes == image.bytes) image.checksum = there.checksum;
    }
}

std::optional<found_source> source_in(const fs::path& file, const kept_document& kept)
{
    candidate opened(file);
    if (!opened.stampThen()) return std::nullopt;
    found_source found{.file = file,
                       .stamp = *opened.stampThen(),
                       .places = {},
                       .isAsItWas = opened.isSourceOf(kept),
                       .isWhole = true};
    const std::vector<stored_image> stored = found.isAsItWas ? std::vector<stored_image>() : images_of(opened.stream());
    for (const kept_image& image : kept.images) {
        auto& place = found.places.emplace_back();
        if (!needs_source(image)) continue;
        place = found.isAsItWas ? std::optional(image.fileImage) : place_of(image, stored);
        found.isWhole &= place.has_value();
    }
    return found;
}

std::optional<found_source> find_source(const kept_document& kept, const fs::path& folder)
{
    if (!kept.source || !needs_source(kept)) return std::nullopt;
    auto own = source_in(own_source(folder, kept), kept);
    if (own && own->isWhole) return own;
    auto there = source_in(platform::to_path(kept.source->path), kept);
    auto& better = count_places(there) > count_places(own) ? there : own;
    return count_places(better) > 0 ? std::move(better) : std::nullopt;
}

std::error_code keep_source(const fs::path& state, const fs::path& file, const fs::path& session)
{
    candidate going(file);
    std::error_code failure, ignored;
    if (!going.stampThen()) return failure;
    std::vector<fs::path> places = entries_of(state / "sessions", ignored);
    places.push_back(state / "closed");
    for (const fs::path& place : places)
        for (const fs::path& copy : entries_of(place, ignored)) {
            const auto kept = read_manifest(copy);
            if (!kept || !going.isSourceOf(*kept)) continue;
            const fs::path own = own_source(copy, *kept);
            if (candidate(own).isSourceOf(*kept)) continue;
            const auto error = keep_in(own.parent_path(), file, own.filename(), place == session);
            if (error && !failure) failure = error;
        }
    return failure;
}

void drop_source(const fs::path& folder, const kept_document& kept)
{
    std::error_code ignored; // it takes room, and is tried again with the next change
    if (kept.source && candidate(own_source(folder, kept)).isSourceOf(kept)) return;
    fs::remove_all(folder / sourceFolder, ignored);
}

} // namespace vldv::recovery
