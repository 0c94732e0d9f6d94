#include "document/measuring_image.h"

#include "document/StorageDoc.h"

#include <string_view>

namespace vldv::document {

namespace {

std::string_view parameter_of(const CStorageDoc& document, unsigned image)
{
    const char* const name = document.getImage(image).get_parameter_stream();
    return name ? name : "";
}

} // namespace

std::optional<unsigned> measuring_image(const CStorageDoc& document, unsigned image)
{
    const std::string_view name = parameter_of(document, image);
    for (unsigned i = 0; !name.empty() && i < document.getImagesNumber(); ++i)
        if (i != image && name == document.getImage(i).get_name()) return i;
    return std::nullopt;
}

bool measures_another(const CStorageDoc& document, unsigned image)
{
    const std::string_view name = document.getImage(image).get_name();
    if (name.empty()) return false;
    for (unsigned i = 0; i < document.getImagesNumber(); ++i)
        if (i != image && parameter_of(document, i) == name) return true;
    return false;
}

} // namespace vldv::document
