// What of the document has changed since its file was read or written.
#include "document/StorageDoc.h"

#include <atomic>
#include <utility>

using namespace vldv;

namespace {

std::span<const std::byte> bytes_of(const void* data, std::size_t size) noexcept
{
    return {static_cast<const std::byte*>(data), size};
}

} // namespace

/// Never the same twice in a program, so that a document that takes another's place in memory has other numbers.
std::uint64_t CStorageDoc::newState() noexcept
{
    static std::atomic<std::uint64_t> last{0};
    return ++last;
}

bool CStorageDoc::isChanged() const noexcept
{
    // Numbers stand for contents: each change of samples or texts draws a new one, and undo brings back the number
    // along with the content. Equal numbers are therefore equal contents, and no samples need to be compared.
    if (incomplete || displayOnly) return false;
    if (!storedContent) return !images.empty();
    return textState != storedContent->texts ||
           !std::ranges::equal(imageOptions, storedContent->images, {}, &options::state);
}

document::content_state CStorageDoc::contentState() const
{
    document::content_state state{.images = {}, .texts = textState};
    for (const options& each : imageOptions) {
        state.images.push_back(each.state);
        state.overlays.push_back(each.overlayState);
        state.drawings.push_back(each.drawingState);
    }
    return state;
}

std::optional<std::span<const std::byte>> CStorageDoc::samplesIn(std::uint64_t state) const noexcept
{
    for (unsigned image = 0; image < images.size(); ++image) {
        const options& kept = imageOptions[image];
        if (kept.state == state) return bytes_of(images[image].array_data(), GetDataSize(image));
        for (const history* steps : {&kept.undoSteps, &kept.redoSteps})
            for (const kept_step& each : *steps)
                if (each.state == state) return bytes_of(each.data, each.size);
    }
    return std::nullopt;
}

void CStorageDoc::renumber(unsigned image) noexcept { imageOptions[image].state = newState(); }

void CStorageDoc::setOverlay(unsigned image, document::packed_bitmap overlay) noexcept
{
    options& kept = imageOptions[image];
    if (kept.overlay == overlay) return;
    kept.overlay = std::move(overlay);
    kept.overlayState = kept.overlay ? newState() : 0;
}

void CStorageDoc::drawingsChanged(unsigned image) noexcept
{
    imageOptions[image].drawingState = decorations(image).all().empty() ? 0 : newState();
}

void CStorageDoc::textsChanged()
{
    textState = newState();
    noteChange();
}

void CStorageDoc::noteChange()
{
    if (isChanged() == isMarked) return;
    isMarked = !isMarked;
    updateFrameTitles();
}

void CStorageDoc::wasStored(const std::wstring& path, const std::optional<platform::file_stamp>& stamp)
{
    storedContent = contentState();
    storedIn.reset();
    if (stamp) storedIn = {path, *stamp};
    if (storedIn) knownFiles.note(*storedIn);
    noteChange();
}

void CStorageDoc::setStored(const document::own_files::entry& file, document::content_state state)
{
    knownFiles.note(file);
    storedIn = file;
    storedContent = std::move(state);
    noteChange();
}

void CStorageDoc::setDisplayOnly(bool on)
{
    displayOnly = on;
    noteChange();
}

void CStorageDoc::becomeUnfiled()
{
    knownFiles.clear();
    storedIn.reset();
    storedContent = contentState();
    noteChange();
}

std::vector<std::pair<std::uint64_t, SPMDataStream>> CStorageDoc::releaseImages()
{
    std::vector<std::pair<std::uint64_t, SPMDataStream>> released;
    released.reserve(images.size());
    for (unsigned i = 0; i < images.size(); ++i) released.emplace_back(imageOptions[i].state, std::move(images[i]));
    images.clear();
    imageOptions.clear();
    return released;
}
