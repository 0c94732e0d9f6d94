#include "recovery/restore_document.h"

#include "base/text.h"
#include "document/StorageDoc.h"
#include "document/document_table.h"
#include "platform/files/Exceptions.h"
#include "platform/files/paths.h"
#include "recovery/kept_drawings.h"

#include <fstream>
#include <memory>
#include <stdexcept>
#include <utility>

namespace vldv::recovery {

namespace {

namespace fs = std::filesystem;

/// Opening a file changes the current folder, which shall not be one of copies.
class same_current_folder {
public:
    same_current_folder() : before(fs::current_path(error)) {}
    same_current_folder(const same_current_folder&) = delete;
    same_current_folder& operator=(const same_current_folder&) = delete;
    ~same_current_folder()
    {
        if (!error) fs::current_path(before, error);
    }

private:
    std::error_code error;
    fs::path before;
};

/// The file of a kept document, opened when the first image is taken from it.
class source_images {
public:
    source_images(const kept_document& kept_, const std::optional<found_source>& found_) : kept(kept_), found(found_)
    {
        if (kept.source) reason = base::narrow(kept.source->path) + " is not there any more, or not as it was";
    }

    /// Moves the samples of an image into `into`. \throws std::exception when they are not there
    void take(std::size_t image, SPMDataStream& into)
    {
        open();
        const auto place = found && image < found->places.size() ? found->places[image] : std::nullopt;
        if (!file || !place || *place >= file->getImagesNumber()) throw std::runtime_error(reason);
        SPMDataStream& there = file->getImage(*place);
        if (kept.images[image].id != there.get_name() || there.data_size() != kept.images[image].bytes ||
            there.data_size() != into.data_size())
            throw std::runtime_error(reason);
        into.set_array(there.array_data(), into.array_length(), 0);
        there = SPMDataStream(); // no two images are in memory twice
    }

private:
    void open()
    {
        if (isOpened || !found) return;
        isOpened = true;
        const same_current_folder untouched;
        auto opened = std::make_unique<CStorageDoc>();
        try {
            const bool isRead = opened->OnOpenDocument(platform::to_wide(found->file).c_str());
            // One of which images had to be left out is none of its own, and counts them otherwise.
            const auto* const own = opened->ownFiles().last();
            if (isRead && opened->isOfDamagedFile()) reason = found->file.native() + " is damaged";
            // Another program may have replaced it since it was found.
            if (isRead && own && own->stamp == found->stamp) file = std::move(opened);
        } catch (const CException& failure) {
            reason = failure.what();
        }
    }

    const kept_document& kept;
    const std::optional<found_source>& found;
    bool isOpened = false;
    std::unique_ptr<CStorageDoc> file;
    std::string reason = "its samples are nowhere";
};

/// \throws std::exception when the file does not hold exactly these bytes
void read_samples(const fs::path& path, const kept_image& image, SPMDataStream& into)
{
    std::error_code error;
    const auto size = fs::file_size(path, error);
    if (error || size != image.bytes || into.data_size() != image.bytes)
        throw std::runtime_error(path.native() + " is not complete");
    std::ifstream in(path, std::ios::binary);
    // The array is this stream's alone: it has just been made.
    in.read(const_cast<char*>(static_cast<const char*>(into.array_data())), static_cast<std::streamsize>(size));
    if (!in && size > 0) throw std::runtime_error(path.native() + " cannot be read");
}

/// \throws std::exception when it cannot be read
std::vector<std::byte> content_of(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    std::vector<std::byte> bytes(fs::file_size(path));
    in.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!in) throw std::runtime_error(path.native() + " cannot be read");
    return bytes;
}

/// What the last image of the document had over it.
class restored_overlay {
public:
    restored_overlay(CStorageDoc& document_, const fs::path& folder_, restored_document& done_)
        : document(document_), folder(folder_), done(done_), image(document.getImagesNumber() - 1)
    {
    }

    void take(const kept_image& kept)
    {
        attempt(kept.overlayFile, [&](std::span<const std::byte> bytes) {
            document.setOverlay(image, document::packed_bitmap_of(bytes));
            return document.contentState().overlays[image];
        });
        attempt(kept.drawingsFile, [&](std::span<const std::byte> bytes) {
            if (auto drawings = decode_drawings(bytes)) document.setDecorations(image, std::move(*drawings));
            return document.contentState().drawings[image];
        });
    }

private:
    /// \param put  gives the number that the content of the file has in the document now, 0 when it is damaged
    template <class Put>
    void attempt(const std::string& file, Put put)
    {
        if (file.empty()) return;
        try {
            const std::uint64_t state = put(content_of(folder / file));
            if (state == 0) throw std::runtime_error((folder / file).native() + " is damaged");
            done.files.emplace(state, file);
        } catch (const std::exception& failure) {
            done.missing.push_back("what is drawn over " + std::string(document.getImage(image).get_description()) +
                                   ": " + failure.what());
        }
    }

    CStorageDoc& document;
    const fs::path& folder;
    restored_document& done;
    unsigned image;
};

} // namespace

restored_document restore(CStorageDoc& document, const kept_document& kept, const fs::path& folder)
{
    return restore(document, kept, folder, needs_source(kept) ? find_source(kept, folder) : std::nullopt);
}

restored_document restore(CStorageDoc& document, const kept_document& kept, const fs::path& folder,
                          const std::optional<found_source>& from)
{
    restored_document done;
    source_images source(kept, from);
    // No text has this number: the document stays changed until it is saved.
    document::content_state stored{.images = {}, .texts = ~std::uint64_t{0}};
    for (std::size_t i = 0; i < kept.images.size(); ++i) {
        const kept_image& image = kept.images[i];
        SPMDataStream stream;
        try {
            stream.Init(image.declaration.c_str());
            if (image.file.empty() && image.bytes > 0)
                source.take(i, stream);
            else if (!image.file.empty())
                read_samples(folder / image.file, image, stream);
        } catch (const std::exception& failure) {
            done.missing.push_back(std::string(stream.get_description()) + ": " + failure.what());
            continue;
        }
        document.moveIn(stream);
        const unsigned added = document.getImagesNumber() - 1;
        restored_overlay(document, folder, done).take(image);
        for (const auto& [key, text] : image.texts) document.setString(key.c_str(), text.c_str(), added);
        const std::uint64_t state = document.contentState().images[added];
        if (!image.file.empty()) {
            done.files.emplace(state, image.file);
            continue;
        }
        if (image.fileImage >= stored.images.size()) stored.images.resize(image.fileImage + 1);
        stored.images[image.fileImage] = state;
    }
    for (const auto& [key, text] : kept.texts) document.setString(key.c_str(), text.c_str(), document::documentTable);
    // What lacks a part must not take the place of the file that may have it, without being asked.
    if (kept.source && done.missing.empty()) document.setStored(*kept.source, std::move(stored));
    if (!kept.path.empty()) document.SetPathName(kept.path.c_str(), false);
    document.setTitleParts({.base = kept.baseTitle, .display = kept.displayTitle, .derived = kept.derived});
    document.SetTitle(kept.title.c_str());
    document.SetModifiedFlag(true);
    return done;
}

} // namespace vldv::recovery
