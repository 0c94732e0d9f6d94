#include "document/StorageDoc.h"
#include "document/update_hints.h"
#include "platform/app/WinApp.h"
#include "resources/string_ids.h"
#include "resources/strings.h"

#include <cstring>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

using namespace vldv;

namespace {

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

/// The declaration and all samples are those of a step.
bool is_as_in(const SPMDataStream& stream, const CUndoData& step)
{
    return stream.data_size() == step.size && declaration_line(stream) == step.description &&
           (step.size == 0 || std::memcmp(stream.array_data(), step.data, step.size) == 0);
}

/// Makes the changes in a table. \return those that lead back
CStorageDoc::text_changes exchanged(const CStorageDoc::text_changes& changes, CStorageDoc::string_table& texts)
{
    CStorageDoc::text_changes before;
    for (const auto& [key, text] : changes) {
        const auto found = texts.find(key);
        before.emplace(key, found == texts.end() ? std::nullopt : std::optional(found->second));
        if (text)
            texts.insert_or_assign(key, *text);
        else
            texts.erase(key);
    }
    return before;
}

void warn(unsigned text)
{
    if (CWinApp* const app = AfxGetApp()) app->host().messageBox(string_resource(text), message_icon::warning);
}

} // namespace

CStorageDoc::history CStorageDoc::snapshot(unsigned image, history& stack, unsigned lostText)
{
    history taken;
    const SPMDataStream& stream = images[image];
    try {
        taken.emplace_back(declaration_line(stream).c_str(), GetDataSize(image), stream.array_data(),
                           imageOptions[image].state);
    } catch (const std::bad_alloc&) {
        // Work goes on without a way back. The steps are freed first: the message needs memory as well.
        taken.clear();
        stack.clear();
        warn(lostText);
    }
    return taken;
}

/// Shape and bytes of a step on their way back into an image. All that needs memory is done by the constructor, so that
/// an image is never left half restored.
class CStorageDoc::restoration {
public:
    restoration(CStorageDoc& document_, unsigned image_, const CUndoData& record_)
        : document(document_), image(image_), record(record_)
    {
        SPMDataStream& now = document.images[image];
        const bool isSameShape = now.is_array() && declaration_line(now) == record.description;
        if (isSameShape) document.revalidateImage(image);
        // Where only samples differ they need no memory, so this works where no other copy of the image would fit.
        isInPlace = isSameShape && record.size <= now.data_size();
        if (isInPlace) return;
        restored.Init(record.description);
        copy_samples(record, restored);
        shape = revalidated(restored);
        isNewShape = lengths_of(restored) != lengths_of(now);
    }

    /// The image with the shape that it will have.
    const SPMDataStream& result() const noexcept { return isInPlace ? document.images[image] : restored; }
    void commit() noexcept
    {
        if (isInPlace) return copy_samples(record, document.images[image]);
        std::swap(document.images[image], restored);
        document.adoptShape(image, std::move(shape));
    }
    void tellViews() const
    {
        if (isNewShape) document.UpdateAllViews(nullptr, document::shape_hint(image));
    }

private:
    CStorageDoc& document;
    unsigned image;
    const CUndoData& record;
    bool isInPlace = false, isNewShape = false;
    SPMDataStream restored;
    image_shape shape{};
};

/// One step of an image from one of its stacks, with the way back onto the other.
class CStorageDoc::history_step {
public:
    history_step(CStorageDoc& document_, unsigned image, history options::* from_, history options::* to_,
                 unsigned lostText)
        : document(document_),
          kept(document.imageOptions[image]),
          from(kept.*from_),
          to(kept.*to_),
          back(document.snapshot(image, to, lostText)),
          restored(document, image, from.back())
    {
        if (from.back().texts.empty()) return;
        texts = kept.strings;
        text_changes forth = exchanged(from.back().texts, texts);
        if (!back.empty()) back.front().texts = std::move(forth);
    }

    void commit() noexcept
    {
        restored.commit();
        if (!from.back().texts.empty()) commitTexts();
        to.splice(to.end(), back);
        kept.state = from.back().state;
        from.pop_back();
    }
    void tellViews() const { restored.tellViews(); }
    const SPMDataStream& result() const noexcept { return restored.result(); }

private:
    /// They have the number again that they had, unless others were changed meanwhile.
    void commitTexts() noexcept
    {
        const kept_step& step = from.back();
        const std::uint64_t now = document.textState;
        kept.strings.swap(texts);
        document.textState = now == step.textsAfter ? step.textsBefore : newState();
        if (back.empty()) return;
        back.front().textsBefore = now;
        back.front().textsAfter = document.textState;
    }

    CStorageDoc& document;
    options& kept;
    history &from, &to;
    history back;
    restoration restored;
    string_table texts; ///< of the image afterwards, where they change
};

unsigned CStorageDoc::parameterImage(unsigned image, const SPMDataStream& stream) const noexcept
{
    const char* const name = stream.get_parameter_stream();
    for (unsigned i = 0; name && *name && i < images.size(); ++i)
        if (i != image && std::string_view(images[i].get_name()) == name) return i;
    return unsigned(-1);
}

/// Both steps are made before one of them is seen: where memory runs out in the second the first has not happened.
void CStorageDoc::move(unsigned image, history options::* from, history options::* to, unsigned lostText)
{
    history_step step(*this, image, from, to, lostText);
    std::optional<history_step> alongWith;
    const unsigned parameter = parameterImage(image, step.result());
    if (parameter < images.size() && !(imageOptions[parameter].*from).empty())
        alongWith.emplace(*this, parameter, from, to, lostText);
    step.commit();
    if (alongWith) alongWith->commit();
    step.tellViews();
    if (alongWith) alongWith->tellViews();
}

void CStorageDoc::pushUndo(unsigned image, bool clearRedo)
{
    if (image >= images.size()) return;
    options& kept = imageOptions[image];
    if (clearRedo) kept.redoSteps.clear();
    kept.undoSteps.splice(kept.undoSteps.end(), snapshot(image, kept.undoSteps, texts::undoLost));
    renumber(image);
    setDisplayOnly(false);
}

void CStorageDoc::changeTexts(unsigned image, const text_changes& changes)
{
    if (image >= images.size() || changes.empty()) return;
    options& kept = imageOptions[image];
    text_changes before = exchanged(changes, kept.strings);
    const std::uint64_t stateBefore = textState;
    textsChanged();
    if (kept.undoSteps.empty()) return; // there was no memory for the step
    kept_step& step = kept.undoSteps.back();
    if (step.texts.empty()) step.textsBefore = stateBefore;
    step.texts.merge(before); // what was changed twice has been what it was before the first time
    step.textsAfter = textState;
}

void CStorageDoc::restore(unsigned image)
{
    if (!canUndo(image)) return;
    restoration restored(*this, image, imageOptions[image].undoSteps.back());
    restored.commit();
    // A number of its own: what is written over it next is no longer what the step holds.
    renumber(image);
    restored.tellViews();
}

void CStorageDoc::undo(unsigned image)
{
    if (!canUndo(image)) return;
    move(image, &options::undoSteps, &options::redoSteps, texts::redoLost);
    UpdateAllViews(nullptr, document::data_hint(image));
    // For this image the document is as it was opened, whatever others hold.
    if (!canUndo(image)) SetModifiedFlag(false);
    noteChange();
}

void CStorageDoc::redo(unsigned image)
{
    if (!canRedo(image)) return;
    move(image, &options::redoSteps, &options::undoSteps, texts::undoLost);
    UpdateAllViews(nullptr, document::data_hint(image));
    SetModifiedFlag(true);
    noteChange();
}

void CStorageDoc::dropUndo(unsigned image)
{
    if (!canUndo(image)) return;
    options& kept = imageOptions[image];
    // A preview that was taken back is no change; whatever was written behind it is.
    if (is_as_in(images[image], kept.undoSteps.back())) kept.state = kept.undoSteps.back().state;
    kept.undoSteps.pop_back();
    noteChange();
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
