#include "recovery/document_copy.h"

#include "platform/files/Exceptions.h"
#include "platform/files/paths.h"
#include "recovery/background_writer.h"
#include "recovery/folder_entries.h"
#include "recovery/kept_drawings.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <set>
#include <unistd.h>
#include <utility>

namespace vldv::recovery {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t pieceBytes = std::size_t{1} << 22;

/// Writes at a place of a file that belongs to the user alone. \param cuts  the file ends behind the bytes
void store(const fs::path& path, std::span<const std::byte> bytes, std::uint64_t at, bool cuts)
{
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    if (file < 0) throw CFileException(errno, platform::to_wide(path));
    int error = 0;
    while (!bytes.empty() && error == 0) {
        const ssize_t count = pwrite(file, bytes.data(), bytes.size(), static_cast<off_t>(at));
        if (count < 0) {
            if (errno != EINTR) error = errno;
            continue;
        }
        bytes = bytes.subspan(static_cast<std::size_t>(count));
        at += static_cast<std::uint64_t>(count);
    }
    while (cuts && error == 0 && ftruncate(file, static_cast<off_t>(at)) != 0)
        if (errno != EINTR) error = errno;
    // Interrupted, it is closed all the same.
    if (close(file) != 0 && errno != EINTR && error == 0) error = errno;
    if (error != 0) throw CFileException(error, platform::to_wide(path));
}

void exchange_manifest(const fs::path& folder, std::span<const std::byte> bytes)
{
    const fs::path made = folder / "manifest.new", name = folder / manifestName;
    store(made, bytes, 0, true);
    if (rename(made.c_str(), name.c_str()) != 0) throw CFileException(errno, platform::to_wide(name));
}

/// Removes what the manifest does not name any more.
void sweep(const fs::path& folder, const kept_document& kept)
{
    std::set<std::string> used = files_of(kept);
    used.insert({manifestName, sourceFolder});
    std::error_code error;
    for (const fs::path& entry : entries_of(folder, error))
        if (!used.contains(entry.filename().native())) fs::remove(entry, error);
    drop_source(folder, kept);
}

} // namespace

void remove_unnamed(const fs::path& folder)
{
    std::error_code error;
    if (const auto kept = read_manifest(folder))
        sweep(folder, *kept);
    else if (!fs::exists(folder / manifestName, error) && !error)
        fs::remove_all(folder, error);
}

document_copy::document_copy(fs::path folder_, std::string names_, background_writer& writer_)
    : folder(std::move(folder_)), names(std::move(names_)), writer(writer_)
{
    writer.give([made = folder, flag = failed] {
        std::error_code error;
        fs::create_directory(made, error);
        if (!error) return;
        *flag = true;
        throw CFileException(error.value(), platform::to_wide(made));
    });
}

document_copy::document_copy(fs::path folder_, std::string names_, background_writer& writer_,
                             std::optional<document::content_state> state, std::map<std::uint64_t, std::string> files)
    : folder(std::move(folder_)),
      names(std::move(names_)),
      writer(writer_),
      written(std::move(files)),
      committed(std::move(state))
{
}

std::unique_ptr<document_copy> document_copy::again(const kept_document& kept) const
{
    const std::set<std::string> named = files_of(kept);
    std::map<std::uint64_t, std::string> good;
    for (const auto& [state, file] : written)
        if (named.contains(file)) good.emplace(state, file);
    return std::make_unique<document_copy>(folder, names, writer, std::nullopt, std::move(good));
}

bool document_copy::needsSource() const
{
    return committed &&
           !std::ranges::all_of(committed->images, [this](std::uint64_t state) { return written.contains(state); });
}

void document_copy::begin(snapshot target)
{
    parts.clear();
    // Backwards, because `feed` takes parts from the end: images are written in their order. Samples that the folder
    // holds already are named again and not written again.
    for (std::size_t i = target.kept.images.size(); i-- > 0;) {
        if (target.isInSource[i]) continue;
        const std::uint64_t state = target.state.images[i];
        kept_image& image = target.kept.images[i];
        const auto found = written.find(state);
        image.file = found == written.end() ? nameOf(state) : found->second;
        if (found == written.end()) parts.push_back({state, image.bytes});
    }
    current = std::move(target);
}

std::size_t document_copy::feed(const sample_finder& find, std::size_t budget)
try {
    std::size_t used = 0;
    while (current && !parts.empty() && used < budget) {
        part& next = parts.back();
        const auto samples = find(next.state);
        if (!samples || samples->size() != next.size) {
            current.reset();
            break;
        }
        const std::size_t count = std::min<std::size_t>(pieceBytes, samples->size() - next.done);
        write(next, samples->subspan(next.done, count));
        used += count;
        next.done += count;
        if (next.done < next.size) continue;
        written.emplace(next.state, nameOf(next.state));
        parts.pop_back();
    }
    if (current && parts.empty()) commit();
    return used;
} catch (const std::exception&) {
    *failed = true; // no memory: what was not given to the writer is begun anew
    throw;
}

void document_copy::write(const part& to, std::span<const std::byte> piece)
{
    const bool isLast = to.done + piece.size() == to.size;
    writer.give(
        [path = folder / nameOf(to.state), bytes = std::vector<std::byte>(piece.begin(), piece.end()), at = to.done,
         isLast, flag = failed] {
            if (*flag) return;
            try {
                store(path, bytes, at, isLast);
            } catch (...) {
                *flag = true;
                throw;
            }
        },
        piece.size());
}

/// \param bytes  gives them, on the writer's thread
template <class Bytes>
std::string document_copy::fileOf(std::uint64_t state, Bytes bytes)
{
    const auto found = written.find(state);
    if (found != written.end()) return found->second;
    writer.give([path = folder / nameOf(state), bytes = std::move(bytes), flag = failed] {
        if (*flag) return;
        try {
            store(path, bytes(), 0, true);
        } catch (...) {
            *flag = true;
            throw;
        }
    });
    return written.emplace(state, nameOf(state)).first->second;
}

void document_copy::storeBeside(snapshot& done, std::size_t image)
{
    kept_image& kept = done.kept.images[image];
    if (const std::uint64_t state = done.state.overlays[image]; state != 0)
        kept.overlayFile = fileOf(state, [held = done.overlays[image]] { return document::bytes_of(*held); });
    if (const std::uint64_t state = done.state.drawings[image]; state != 0)
        kept.drawingsFile = fileOf(state, [held = done.drawings[image]] { return encode(*held); });
}

void document_copy::commit()
{
    snapshot done = std::move(*current);
    current.reset();
    for (std::size_t i = 0; i < done.kept.images.size(); ++i) storeBeside(done, i);
    // The writer works in the order of its tasks: the manifest takes its name when all files that it tells of are
    // complete, and only then do those go that it does not name. After a crash at any point the folder holds either
    // state as a whole. When one task fails the shared flag makes the later ones do nothing.
    const std::set<std::string> used = files_of(done.kept);
    std::erase_if(written, [&](const auto& file) { return !used.contains(file.second); });
    committed = std::move(done.state);
    ++commits;
    writer.give([in = folder, kept = std::move(done.kept), known = ofSource, flag = failed, count = stored]() mutable {
        if (*flag) return;
        try {
            note_source(kept, *known);
            exchange_manifest(in, encode(kept));
        } catch (...) {
            *flag = true;
            throw;
        }
        ++*count;
        sweep(in, kept);
    });
}

} // namespace vldv::recovery
