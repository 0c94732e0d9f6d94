#include "document/StorageDoc.h"
#include "document/update_hints.h"
#include "platform/WinApp.h"
#include "resources/strings.h"

#include <new>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr unsigned undoLostText = 1028, redoLostText = 1059;

std::vector<unsigned> lengths_of(const SPMDataStream& stream)
{
    std::vector<unsigned> lengths;
    for (unsigned i = 0; i < stream.get_dimensions_number(); ++i) lengths.push_back(stream.get_dimension(i).length);
    return lengths;
}

std::string declaration_line(const SPMDataStream& stream) { return std::string(stream.description().c_str()) + "\n"; }

void copy_samples(const CUndoData& record, SPMDataStream& stream)
{
    if (const unsigned elementSize = stream.array_element_size())
        stream.set_array(record.data, static_cast<unsigned>(record.size / elementSize), 0);
}

void warn(unsigned text)
{
    if (CWinApp* const app = AfxGetApp()) app->host().messageBox(string_resource(text), message_icon::warning);
}

} // namespace

void CStorageDoc::takeSnapshot(unsigned image, history& stack, unsigned lostText)
{
    const SPMDataStream& stream = images[image];
    try {
        stack.emplace_back(declaration_line(stream).c_str(), GetDataSize(image), stream.array_data());
    } catch (const std::bad_alloc&) {
        // Work goes on without a way back. The steps are freed first: the message needs memory as well.
        stack.clear();
        warn(lostText);
    }
}

bool CStorageDoc::writeBack(unsigned image, const CUndoData& record)
{
    if (images[image].is_array() && declaration_line(images[image]) == record.description) {
        // Only samples differ. They need no memory, so this step works where no other copy of the image would fit.
        revalidateImage(image);
        copy_samples(record, images[image]);
        return false;
    }
    // Built aside: where memory runs out the image must not be left half restored.
    SPMDataStream restored;
    restored.Init(record.description);
    copy_samples(record, restored);
    const std::vector<unsigned> before = lengths_of(images[image]), after = lengths_of(restored);
    std::swap(images[image], restored);
    try {
        revalidateImage(image);
    } catch (...) {
        std::swap(images[image], restored);
        throw;
    }
    return after != before;
}

bool CStorageDoc::step(unsigned image, history options::* from, history options::* to, unsigned lostText)
{
    options& kept = imageOptions[image];
    if ((kept.*from).empty()) return false;
    const std::size_t stepsBefore = (kept.*to).size();
    takeSnapshot(image, kept.*to, lostText);
    bool hasNewShape = false;
    try {
        hasNewShape = writeBack(image, (kept.*from).back());
    } catch (...) {
        // Nothing was restored, so there is nothing to come back from either.
        if ((kept.*to).size() > stepsBefore) (kept.*to).pop_back();
        throw;
    }
    (kept.*from).pop_back();
    if (hasNewShape) UpdateAllViews(nullptr, document::shape_hint(image));
    return true;
}

void CStorageDoc::stepParameterStream(unsigned image, history options::* from, history options::* to, unsigned lostText)
{
    const char* const name = images[image].get_parameter_stream();
    if (!name || !*name) return;
    for (unsigned i = 0; i < images.size(); ++i) {
        if (i == image || std::string_view(images[i].get_name()) != name) continue;
        step(i, from, to, lostText);
        return;
    }
}

void CStorageDoc::pushUndo(unsigned image, bool clearRedo)
{
    if (image >= images.size()) return;
    if (clearRedo) imageOptions[image].redoSteps.clear();
    takeSnapshot(image, imageOptions[image].undoSteps, undoLostText);
}

void CStorageDoc::pushRedo(unsigned image)
{
    if (image < images.size()) takeSnapshot(image, imageOptions[image].redoSteps, redoLostText);
}

void CStorageDoc::restore(unsigned image)
{
    if (canUndo(image) && writeBack(image, imageOptions[image].undoSteps.back()))
        UpdateAllViews(nullptr, document::shape_hint(image));
}

void CStorageDoc::undo(unsigned image)
{
    if (image >= images.size() || !step(image, &options::undoSteps, &options::redoSteps, redoLostText)) return;
    stepParameterStream(image, &options::undoSteps, &options::redoSteps, redoLostText);
    UpdateAllViews(nullptr, document::data_hint(image));
    // For this image the document is as it was opened, whatever others hold.
    if (!canUndo(image)) SetModifiedFlag(false);
}

void CStorageDoc::redo(unsigned image)
{
    if (image >= images.size() || !step(image, &options::redoSteps, &options::undoSteps, undoLostText)) return;
    stepParameterStream(image, &options::redoSteps, &options::undoSteps, undoLostText);
    UpdateAllViews(nullptr, document::data_hint(image));
    SetModifiedFlag(true);
}

void CStorageDoc::dropUndo(unsigned image)
{
    if (canUndo(image)) imageOptions[image].undoSteps.pop_back();
}

void CStorageDoc::dropRedo(unsigned image)
{
    if (canRedo(image)) imageOptions[image].redoSteps.pop_back();
}

bool CStorageDoc::canUndo(unsigned image) const noexcept
{
    return image < imageOptions.size() && !imageOptions[image].undoSteps.empty();
}

bool CStorageDoc::canRedo(unsigned image) const noexcept
{
    return image < imageOptions.size() && !imageOptions[image].redoSteps.empty();
}
