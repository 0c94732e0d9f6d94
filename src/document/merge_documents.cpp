#include "document/merge_documents.h"

#include "base/text.h"
#include "document/StorageDoc.h"
#include "platform/paths.h"

#include <algorithm>
#include <cstring>

namespace document {

namespace {

bool same_axes(const VLAxesContainer& a, const VLAxesContainer& b)
{
    if (a.get_axes_number() != b.get_axes_number()) return false;
    for (unsigned i = 0; i < a.get_axes_number(); ++i) {
        const VLAxis &one = a.get_axis(i), &other = b.get_axis(i);
        if (one.start != other.start || one.scale != other.scale ||
            std::strcmp(one.get_units(), other.get_units()) != 0)
            return false;
    }
    return true;
}

/// Samples of both mean the same: under another value axis the appended heights would be wrong.
bool may_join(const SPMDataStream& a, const SPMDataStream& b)
{
    if (std::strcmp(a.get_name(), b.get_name()) != 0 || a.array_type() != b.array_type() ||
        a.array_element_size() != b.array_element_size() || !same_axes(a.values, b.values) ||
        a.get_dimensions_number() != b.get_dimensions_number())
        return false;
    for (unsigned i = 0; i < a.get_dimensions_number(); ++i)
        if (a.get_dimension(i).length != b.get_dimension(i).length) return false;
    return true;
}

std::string file_title(const CStorageDoc& document)
{
    const std::wstring& name = document.getFileName().empty() ? document.GetTitle() : document.getFileName();
    return base::narrow(platform::file_stem(name));
}

/// "title", or "title 3" where there are several without names.
smart_string generated_name(const std::string& title, unsigned sub, unsigned count)
{
    return count > 1 ? title + " " + std::to_string(sub + 1) : title;
}

void join(CStorageDoc& into, unsigned image, const CStorageDoc& from, unsigned source)
{
    SPMDataStream& stream = into.getImage(image);
    const SPMDataStream& added = from.getImage(source);
    const unsigned held = into.getSubImagesNumber(image), more = from.getSubImagesNumber(source);
    std::vector<smart_string> names = stream.subimage_names();
    const std::string own = file_title(into), other = file_title(from);
    names.resize(std::min<std::size_t>(names.size(), held));
    while (names.size() < held) names.push_back(generated_name(own, static_cast<unsigned>(names.size()), held));
    const std::vector<smart_string>& otherNames = added.subimage_names();
    for (unsigned i = 0; i < more; ++i)
        names.push_back(i < otherNames.size() && *otherNames[i].c_str()
                            ? smart_string(other + " " + otherNames[i].c_str())
                            : generated_name(other, i, more));
    into.setImageDataS(image, added.array_data(), more * from.getSubImageLength(source), 0, held);
    stream.set_subimage_names(names.data(), static_cast<unsigned>(names.size()));
    into.revalidateImage(image);
}

} // namespace

void merge_documents(CStorageDoc& into, const CStorageDoc& from)
{
    const unsigned present = into.getImagesNumber();
    for (unsigned i = 0; i < from.getImagesNumber(); ++i) {
        unsigned partner = 0;
        while (partner < present && !may_join(into.getImage(partner), from.getImage(i))) ++partner;
        if (partner < present) {
            join(into, partner, from, i);
            continue;
        }
        SPMDataStream copy = from.getImage(i);
        into.makeIdUnique(copy);
        into.AddNewImages(&copy, 1);
        into.copyStrings(&from, into.getImagesNumber() - 1, i);
    }
}

bool passes_filter(const CStorageDoc& document, int filter) noexcept
{
    if (filter < 1 || filter > 3) return true;
    for (unsigned i = 0; i < document.getImagesNumber(); ++i)
        if (document.getImage(i).get_dimensions_number() == static_cast<unsigned>(filter)) return true;
    return false;
}

std::wstring held_path(const std::wstring& path, const std::wstring& extension, bool isNative)
{
    const bool hasExtension =
        base::equal_ignoring_case(base::narrow(platform::file_extension(path)), base::narrow(extension));
    return extension.empty() || (isNative && hasExtension) ? path : path + extension;
}

std::wstring merged_path(const std::wstring& first, int number, const std::wstring& extension)
{
    const std::wstring folder = first.substr(0, first.size() - platform::file_name(first).size());
    return folder + L"Merged " + std::to_wstring(number) + extension;
}

void sort_paths(std::vector<std::wstring>& paths) { std::ranges::sort(paths); }

} // namespace document
