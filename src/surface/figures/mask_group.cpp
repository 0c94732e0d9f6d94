#include "surface/figures/mask_group.h"

#include "document/StorageDoc.h"
#include "surface/figures/drawing_axes.h"

#include <memory>
#include <string_view>
#include <vector>

namespace vldv::surface {

const document::decoration* kept_mask(const document::decorations* drawings, const char* name)
{
    if (!drawings) return nullptr;
    const auto group = drawings->all().find(lengthyMaskKey);
    if (group == drawings->all().end()) return nullptr;
    for (const document::decoration& each : group->second.members)
        if (each.name == name) return &each;
    return nullptr;
}

void store_mask(CStorageDoc& document, unsigned image, const VLPluginDecoration& mask)
{
    const auto kept = document.sharedDecorations(image); // names and bytes of the copy point into it
    unsigned count = 0;
    const auto release = [&document](VLPluginDecoration* copy) { document.free_decorations(copy); };
    const std::unique_ptr<VLPluginDecoration, decltype(release)> others(
        document.get_decorations(lengthyMaskKey, &count, nullptr, image), release);
    std::vector<VLPluginDecoration> masks;
    for (unsigned i = 0; i < count; ++i)
        if (!others.get()[i].name || std::string_view(others.get()[i].name) != mask.name)
            masks.push_back(others.get()[i]);
    masks.push_back(mask);
    document.set_decoration(lengthyMaskKey, masks.data(), static_cast<unsigned>(masks.size()), DEC_IMAGE_SURFACE,
                            image);
}

} // namespace vldv::surface
