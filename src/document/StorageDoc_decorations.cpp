#include "document/StorageDoc.h"
#include "document/update_hints.h"

#include <utility>

using namespace vldv;

void CStorageDoc::set_decoration(const char* key, const VLPluginDecoration* list, unsigned count, DecImageType type,
                                 unsigned image)
{
    if (image >= imageOptions.size() || (count > 0 && !list)) return;
    // Drawings are shared with whoever took them as they were; `edit` gives this image a copy of its own before the
    // first change after that.
    imageOptions[image].drawings.edit().set(key ? key : "", list, count, type);
    drawingsChanged(image);
    UpdateAllViews(nullptr, document::drawing_hint(image));
}

VLPluginDecoration* CStorageDoc::get_decorations(const char* key, unsigned* outCount, DecImageType* outType,
                                                 unsigned image) const
{
    if (image >= imageOptions.size()) return nullptr;
    return decorations(image).copy(key ? key : "", outCount, outType);
}

void CStorageDoc::free_decorations(VLPluginDecoration* copy) const noexcept { document::decorations::freeCopy(copy); }

unsigned CStorageDoc::get_decorations_list(std::string* out, unsigned max, unsigned image) const
{
    if (image >= imageOptions.size()) return 0;
    const auto& groups = decorations(image).all();
    if (!out) return static_cast<unsigned>(groups.size());
    unsigned copied = 0;
    for (auto group = groups.begin(); group != groups.end() && copied < max; ++group) out[copied++] = group->first;
    return copied;
}

void CStorageDoc::copyDecorations(const CStorageDoc& source, unsigned targetImage, unsigned sourceImage)
{
    imageOptions[targetImage].drawings = source.imageOptions[sourceImage].drawings;
    drawingsChanged(targetImage);
}

void CStorageDoc::setDecorations(unsigned image, document::decorations drawings)
{
    imageOptions[image].drawings.edit() = std::move(drawings);
    drawingsChanged(image);
}

void CStorageDoc::clear_decorations(unsigned image)
{
    if (image < imageOptions.size()) setDecorations(image, {});
}

unsigned CStorageDoc::GetObjectFlags(unsigned image, const char* name) const noexcept
{
    return image < imageOptions.size() && name ? decorations(image).flags(name) : 0;
}

bool CStorageDoc::ObjectAction(unsigned image, ObjectActionType action, const char* name)
{
    if (image >= imageOptions.size() || !name || !imageOptions[image].drawings.edit().apply(action, name)) return false;
    drawingsChanged(image);
    return true;
}

bool CStorageDoc::paintDecoration(const char* key, unsigned image, const CRect& part,
                                  const std::function<void(document::decoration::element&)>& edit)
{
    if (image >= imageOptions.size() || !imageOptions[image].drawings.edit().editBitmap(key, edit)) return false;
    drawingsChanged(image);
    UpdateAllViews(nullptr, document::hint{document::hintDrawingPart, image}.packed(), part);
    return true;
}

void CStorageDoc::toggleDecoration(unsigned image, std::size_t group, std::size_t member)
{
    if (image >= imageOptions.size() || !imageOptions[image].drawings.edit().toggle(group, member)) return;
    drawingsChanged(image);
    UpdateAllViews(nullptr, document::drawing_hint(image));
}
