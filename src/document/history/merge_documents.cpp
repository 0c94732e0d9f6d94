#include "document/history/merge_documents.h"

#include "base/text.h"
#include "document/StorageDoc.h"
#include "formats/shared/force/curve_lengths.h"
#include "formats/shared/void_ranges.h"
#include "platform/files/paths.h"

#include <algorithm>
#include <cassert>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <limits>
#include <map>
#include <stdexcept>

namespace vldv::document {

namespace {

constexpr unsigned noImage = unsigned(-1);

std::string parameter_of(const SPMDataStream& stream)
{
    const char* const name = stream.get_parameter_stream();
    return name ? name : "";
}

/// Index of the image that image `image` is measured against.
unsigned parameter_image(const CStorageDoc& document, unsigned image)
{
    const std::string name = parameter_of(document.getImage(image));
    for (unsigned i = 0; !name.empty() && i < document.getImagesNumber(); ++i)
        if (i != image && name == document.getImage(i).get_name()) return i;
    return noImage;
}

/// Lengths and differences mean the same along both.
bool same_steps(const VLAxesContainer& a, const VLAxesContainer& b)
{
    if (a.get_axes_number() != b.get_axes_number()) return false;
    for (unsigned i = 0; i < a.get_axes_number(); ++i)
        if (a.get_axis(i).scale != b.get_axis(i).scale ||
            std::strcmp(a.get_axis(i).get_units(), b.get_axis(i).get_units()) != 0)
            return false;
    return true;
}

bool same_shape(const SPMDataStream& a, const SPMDataStream& b)
{
    if (a.get_dimensions_number() != b.get_dimensions_number()) return false;
    for (unsigned i = 0; i < a.get_dimensions_number(); ++i) {
        const SPMDataStream::dimension &one = a.get_dimension(i), &other = b.get_dimension(i);
        if (one.length != other.length || !same_steps(one, other)) return false;
    }
    return true;
}

/// What has no dimensions or no samples has no sub-images either.
bool has_subimages(const CStorageDoc& document, unsigned image)
{
    return document.isImageOk(image) && document.getImage(image).get_dimensions_number() != 0 &&
           document.getSubImagesNumber(image) != 0;
}

bool may_join(const CStorageDoc& into, unsigned image, const CStorageDoc& from, unsigned source)
{
    const SPMDataStream &a = into.getImage(image), &b = from.getImage(source);
    return std::strcmp(a.get_name(), b.get_name()) == 0 && has_subimages(into, image) && has_subimages(from, source) &&
           into.getSubImageLength(image) == from.getSubImageLength(source) && a.array_type() == b.array_type() &&
           a.array_element_size() == b.array_element_size() && same_shape(a, b) && a.values == b.values &&
           parameter_of(a) == parameter_of(b);
}

/// For each image of `from` the one of `into` that it joins, or `noImage`.
std::vector<unsigned> find_partners(const CStorageDoc& into, const CStorageDoc& from)
{
    std::vector<unsigned> partners(from.getImagesNumber(), noImage);
    const auto isFree = [&](unsigned image) { return std::ranges::find(partners, image) == partners.end(); };
    for (unsigned source = 0; source < partners.size(); ++source)
        for (unsigned image = 0; image < into.getImagesNumber() && partners[source] == noImage; ++image)
            if (may_join(into, image, from, source) && isFree(image)) partners[source] = image;
    // Sub-images of a curve and of what it is measured against belong together by number: both join or neither.
    for (bool changed = true; changed;) {
        changed = false;
        for (unsigned source = 0; source < partners.size(); ++source) {
            if (parameter_of(from.getImage(source)).empty()) continue;
            const unsigned parameter = parameter_image(from, source);
            const bool parameterJoins = parameter != noImage && partners[parameter] != noImage;
            if (parameterJoins == (partners[source] != noImage)) continue;
            partners[source] = noImage;
            if (parameter != noImage) partners[parameter] = noImage;
            changed = true;
        }
    }
    return partners;
}

/// What the user calls the file: its name without extension, unless that is a number, which parts the files of a
/// series ("scan.001").
std::string file_title(const CStorageDoc& document)
{
    const std::wstring& name = document.getFileName().empty() ? document.GetTitle() : document.getFileName();
    const std::wstring extension = platform::file_extension(name);
    const bool isNumber = extension.size() > 1 && extension.find_first_not_of(L"0123456789", 1) == std::wstring::npos;
    return base::valid_utf8(base::narrow(isNumber ? name : platform::file_stem(name)));
}

/// "title", or "title 3" where there are several without names.
smart_string generated_name(const std::string& title, std::size_t sub, unsigned count)
{
    return count > 1 ? title + " " + std::to_string(sub + 1) : title;
}

std::vector<smart_string> joined_names(const CStorageDoc& into, unsigned image, const CStorageDoc& from,
                                       unsigned source)
{
    const unsigned held = into.getSubImagesNumber(image), more = from.getSubImagesNumber(source);
    const std::string title = file_title(into), addedTitle = file_title(from);
    std::vector<smart_string> names = into.getImage(image).subimage_names();
    names.resize(held);
    for (std::size_t i = 0; i < held; ++i)
        if (!*names[i].c_str()) names[i] = generated_name(title, i, held);
    const std::vector<smart_string>& added = from.getImage(source).subimage_names();
    for (std::size_t i = 0; i < more; ++i)
        names.push_back(i < added.size() && *added[i].c_str() ? smart_string(addedTitle + " " + added[i].c_str())
                                                              : generated_name(addedTitle, i, more));
    return names;
}

/// Curve lengths of both images, those that are whole included; empty when no text tells any.
std::string joined_lengths(const CStorageDoc& into, unsigned image, const CStorageDoc& from, unsigned source)
{
    const char* const key = formats::curveLengthsKey;
    if (!*into.getString(key, image) && !*from.getString(key, source)) return {};
    std::string text;
    const auto add = [&](const CStorageDoc& document, unsigned index) {
        for (const std::size_t length :
             formats::curve_lengths(document.getImage(index), document.getString(key, index)))
            text += (text.empty() ? "" : " ") + std::to_string(length);
    };
    add(into, image);
    add(from, source);
    return text;
}

/// What was not measured in both images, as the text of `samples` together says it, those of `from` from `first` on.
std::string joined_voids(const CStorageDoc& into, unsigned image, const CStorageDoc& from, unsigned source,
                         std::uint64_t first, std::uint64_t samples)
{
    const auto voidsOf = [](const CStorageDoc& document, unsigned index) {
        return formats::void_ranges(document.getImage(index), document.getString(formats::voidRangesKey, index));
    };
    std::vector<formats::void_range> all = voidsOf(into, image);
    for (const formats::void_range& each : voidsOf(from, source)) all.push_back({first + each.first, each.count});
    return formats::void_ranges_text(samples, std::move(all));
}

/// A merge in two halves: what needs memory, which can be taken back, and then what cannot fail.
class merge {
public:
    merge(CStorageDoc& into_, const CStorageDoc& from_)
        : into(into_), from(from_), present(into_.getImagesNumber()), partners(find_partners(into_, from_))
    {
        for (unsigned source = 0; source < partners.size(); ++source)
            if (partners[source] != noImage) plan(partners[source], source);
    }
    merge(const merge&) = delete;
    merge& operator=(const merge&) = delete;
    ~merge()
    {
        if (isDone) return;
        for (unsigned image = into.getImagesNumber(); image > present; --image) into.RemoveImage(image - 1);
        for (const join& each : joins) into.getImage(each.image).set_array_len(each.lengthBefore);
    }

    void run()
    {
        for (const join& each : joins) into.getImage(each.image).set_array(nullptr, each.added, each.first);
        for (unsigned source = 0; source < partners.size(); ++source)
            if (partners[source] == noImage) append(source);
        for (unsigned image = present; image < into.getImagesNumber(); ++image) renameReferences(into.getImage(image));
        for (const join& each : joins) {
            if (!each.lengths.empty()) into.setString(formats::curveLengthsKey, each.lengths.c_str(), each.image);
            if (!each.voids.empty()) into.setString(formats::voidRangesKey, each.voids.c_str(), each.image);
        }
        isDone = true;
        for (join& each : joins) fill(each);
    }

private:
    struct join {
        unsigned image, source;
        unsigned first, added; ///< elements
        unsigned lengthBefore;
        std::vector<smart_string> names;
        std::string lengths; ///< of the curves of both; empty when all are whole
        std::string voids;   ///< of the curves of both; empty without any
    };

    void plan(unsigned image, unsigned source)
    {
        const std::uint64_t length = into.getSubImageLength(image);
        const std::uint64_t first = length * into.getSubImagesNumber(image);
        const std::uint64_t added = length * from.getSubImagesNumber(source);
        if (first + added > std::numeric_limits<unsigned>::max())
            throw std::length_error("image of over 2^32 elements");
        joins.push_back({image, source, static_cast<unsigned>(first), static_cast<unsigned>(added),
                         into.getImage(image).array_length(), joined_names(into, image, from, source),
                         joined_lengths(into, image, from, source),
                         joined_voids(into, image, from, source, first, first + added)});
    }

    void append(unsigned source)
    {
        const SPMDataStream& stream = from.getImage(source);
        SPMDataStream id;
        id.set_name(stream.get_name());
        into.makeIdUnique(id);
        into.AddNewImages(&stream, 1);
        const unsigned image = into.getImagesNumber() - 1;
        into.getImage(image).set_name(id.get_name());
        into.copyStrings(&from, image, source);
        into.copyOverlay(from, image, source);
        newIds.emplace(stream.get_name(), id.get_name());
    }

    /// Names of images of `from` become those that they have here.
    void renameReferences(SPMDataStream& stream) const
    {
        if (const auto found = newIds.find(parameter_of(stream)); found != newIds.end())
            stream.set_parameter_stream(found->second.c_str());
        std::vector<smart_string> names = stream.dependent_vars();
        for (smart_string& name : names)
            if (const auto found = newIds.find(name.c_str()); found != newIds.end()) name = found->second;
        stream.set_dependent_vars(names.data(), static_cast<unsigned>(names.size()));
    }

    void fill(join& each) noexcept
    {
        SPMDataStream& stream = into.getImage(each.image);
        stream.set_array(from.getImage(each.source).array_data(), each.added, each.first);
        stream.set_subimage_names(std::move(each.names));
    }

    CStorageDoc& into;
    const CStorageDoc& from;
    const unsigned present; ///< images of `into` before
    std::vector<unsigned> partners;
    std::vector<join> joins;
    std::map<std::string, std::string> newIds; ///< of appended images, by their names in `from`
    bool isDone = false;
};

} // namespace

void merge_documents(CStorageDoc& into, const CStorageDoc& from)
{
    assert(&into != &from && "a document is merged into another");
    merge(into, from).run();
}

bool takes_part(const CStorageDoc& document, int filter) noexcept
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

bool is_held_path(const std::wstring& held, const std::wstring& requested, const std::wstring& extension)
{
    return !held.empty() && (held == requested || held == requested + extension);
}

std::wstring merged_path(const std::wstring& first, unsigned number, const std::wstring& extension)
{
    constexpr auto separator = static_cast<wchar_t>(std::filesystem::path::preferred_separator);
    return first.substr(0, first.rfind(separator) + 1) + L"Merged " + std::to_wstring(number) + extension;
}

void sort_paths(std::vector<std::wstring>& paths) { std::ranges::sort(paths); }

} // namespace vldv::document
