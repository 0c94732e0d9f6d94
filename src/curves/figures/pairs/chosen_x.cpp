#include "curves/figures/pairs/chosen_x.h"

#include "document/StorageDoc.h"
#include "document/update_hints.h"

#include <string>
#include <string_view>

namespace vldv::curves {

namespace {

bool equal_texts(const char* a, const char* b) { return a && b && std::string_view(a) == b; }

unsigned number_of(const CStorageDoc& document, const SPMDataStream& x)
{
    unsigned number = 0;
    while (number < document.getImagesNumber() && &document.getImage(number) != &x) ++number;
    return number;
}

unsigned number_alike(const CStorageDoc& document, unsigned image, const SPMDataStream& x)
{
    const auto isAlike = [&](const SPMDataStream& other) {
        return equal_texts(other.get_name(), x.get_name()) && equal_texts(other.get_description(), x.get_description());
    };
    unsigned number = 0;
    while (number < document.getImagesNumber() && (number == image || !isAlike(document.getImage(number)))) ++number;
    return number;
}

/// Gives an image a name that leads to it alone: an image that is measured against it finds it by that.
void name_apart(CStorageDoc& document, unsigned number)
{
    const auto isTaken = [&](const std::string& name) {
        for (unsigned i = 0; i < document.getImagesNumber(); ++i)
            if (i != number && equal_texts(document.getImage(i).get_name(), name.c_str())) return true;
        return name.empty();
    };
    const char* const told = document.getImage(number).get_name();
    const std::string stem = told && *told ? told : "X";
    std::string name = told ? told : "";
    for (unsigned i = 1; isTaken(name); ++i) name = i == 1 ? stem : stem + " (" + std::to_string(i) + ")";
    if (!equal_texts(told, name.c_str())) document.getImage(number).set_name(name.c_str());
}

} // namespace

std::optional<unsigned> measure_against(CStorageDoc& document, unsigned image, const SPMDataStream& x)
{
    if (image >= document.getImagesNumber() || x.get_dimensions_number() != 1 || &x == &document.getImage(image))
        return std::nullopt;
    const unsigned count = document.getImagesNumber();
    document.pushUndo(image, true);
    unsigned found = number_of(document, x);
    if (found == count) {
        SPMDataStream copy = x;
        copy.set_parameter_stream("");
        found = number_alike(document, image, x);
        if (found == count) {
            document.AddNewImages(&copy, 1);
        } else {
            document.pushUndo(found, true);
            document.getImage(found) = copy;
            document.revalidateImage(found);
            document.UpdateAllViews(nullptr, document::data_hint(found));
        }
    }
    name_apart(document, found);
    document.getImage(image).set_parameter_stream(document.getImage(found).get_name());
    return found;
}

} // namespace vldv::curves
