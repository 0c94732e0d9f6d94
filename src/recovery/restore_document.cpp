#include "recovery/restore_document.h"

#include "base/text.h"
#include "document/StorageDoc.h"
#include "platform/Exceptions.h"

#include <fstream>
#include <memory>
#include <stdexcept>

namespace recovery {

namespace {

namespace fs = std::filesystem;

constexpr unsigned documentTable = unsigned(-1);

/// The file of a kept document, opened when the first image is taken from it.
class source_images {
public:
    explicit source_images(const kept_document& kept_) : kept(kept_) {}

    /// Moves the samples of an image into `into`. \throws std::exception when they are not there or do not fit
    void take(const kept_image& wanted, SPMDataStream& into)
    {
        open();
        const std::string name = kept.source ? base::narrow(kept.source->path) : "its file";
        if (!file) throw std::runtime_error(name + ": " + reason);
        if (wanted.fileImage >= file->getImagesNumber() || file->GetDataSize(wanted.fileImage) != wanted.bytes ||
            wanted.bytes != into.data_size())
            throw std::runtime_error(name + ": it is not the file any more that it was");
        into.set_array(file->getImage(wanted.fileImage).array_data(), into.array_length(), 0);
        file->getImage(wanted.fileImage) = SPMDataStream(); // no two images are in memory twice
    }

private:
    void open()
    {
        if (isOpened || !kept.source) return;
        isOpened = true;
        auto opened = std::make_unique<CStorageDoc>();
        try {
            if (opened->OnOpenDocument(kept.source->path.c_str())) file = std::move(opened);
        } catch (const CException& failure) {
            reason = failure.what();
        }
    }

    const kept_document& kept;
    bool isOpened = false;
    std::unique_ptr<CStorageDoc> file;
    std::string reason = "it could not be opened";
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

} // namespace

restored_document restore(CStorageDoc& document, const kept_document& kept, const fs::path& folder)
{
    restored_document done;
    source_images source(kept);
    // No text has this number: the document stays changed until it is saved.
    document::content_state stored{.images = {}, .texts = ~std::uint64_t{0}};
    for (const kept_image& image : kept.images) {
        SPMDataStream stream;
        try {
            stream.Init(image.declaration.c_str());
            if (image.file.empty())
                source.take(image, stream);
            else
                read_samples(folder / image.file, image, stream);
        } catch (const std::exception& failure) {
            done.missing.push_back(std::string(stream.get_description()) + ": " + failure.what());
            continue;
        }
        document.moveIn(stream);
        const unsigned added = document.getImagesNumber() - 1;
        for (const auto& [key, text] : image.texts) document.setString(key.c_str(), text.c_str(), added);
        const std::uint64_t state = document.contentState().images[added];
        if (!image.file.empty()) {
            done.files.emplace(state, image.file);
            continue;
        }
        if (image.fileImage >= stored.images.size()) stored.images.resize(image.fileImage + 1);
        stored.images[image.fileImage] = state;
    }
    for (const auto& [key, text] : kept.texts) document.setString(key.c_str(), text.c_str(), documentTable);
    if (kept.source) document.setStored(*kept.source, std::move(stored));
    if (!kept.path.empty()) document.SetPathName(kept.path.c_str(), false);
    document.SetTitle(kept.title.c_str());
    document.SetModifiedFlag(true);
    return done;
}

} // namespace recovery
