#include "document/StorageDoc.h"

#include "base/text.h"
#include "base/units.h"
#include "document/ImageBoundView.h"
#include "document/history/DocumentHold.h"
#include "document/samples/bitmap_heights.h"
#include "document/update_hints.h"
#include "platform/app/View.h"
#include "platform/app/WinApp.h"
#include "platform/files/paths.h"
#include "resources/string_ids.h"
#include "resources/strings.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <utility>

using namespace vldv;

namespace {

constexpr unsigned noIndex = unsigned(-1);
constexpr std::uint64_t maxElements = 0xffffffffu;

bool same_coordinate(const VLAxis& a, const VLAxis& b)
{
    return units_convertable(a.get_units(), b.get_units()) > 0 &&
           convert_size(a.get_units(), b.get_units(), a.start) == b.start &&
           convert_size(a.get_units(), b.get_units(), a.scale) == b.scale;
}

bool shares_axis(const VLAxesContainer& a, const VLAxesContainer& b)
{
    for (unsigned i = 0; i < a.get_axes_number(); ++i)
        for (unsigned k = 0; k < b.get_axes_number(); ++k)
            if (same_coordinate(a.get_axis(i), b.get_axis(k))) return true;
    return false;
}

SPMDataStream::dimension dimension_of(std::int32_t length, const VLAxis& axis)
{
    SPMDataStream::dimension dimension;
    dimension.length = static_cast<unsigned>(length);
    dimension.set_axis(0, axis);
    return dimension;
}

} // namespace

CStorageDoc::options::options(const options& other)
    : subimageLength(other.subimageLength),
      dimensionLengths(other.dimensionLengths),
      strings(other.strings),
      overlay(other.overlay),
      undoSteps(other.undoSteps),
      redoSteps(other.redoSteps),
      drawings(other.drawings),
      overlayState(other.overlayState),
      drawingState(other.drawingState)
{
}

CStorageDoc::options& CStorageDoc::options::operator=(const options& other)
{
    options copy(other);
    return *this = std::move(copy);
}

CStorageDoc::CStorageDoc() = default;
CStorageDoc::~CStorageDoc() = default;

unsigned CStorageDoc::getSubImagesNumber(unsigned image) const
{
    const unsigned length = imageOptions[image].subimageLength;
    return length ? images[image].array_length() / length : 0;
}

void CStorageDoc::setImageDataS(unsigned image, const void* data, unsigned count, unsigned first, unsigned sub)
{
    const std::uint64_t element = std::uint64_t{imageOptions[image].subimageLength} * sub + first;
    if (element + count > maxElements) throw std::length_error("image of over 2^32 elements");
    images[image].set_array(data, count, static_cast<unsigned>(element));
    renumber(image);
    noteChange();
}

bool CStorageDoc::isImageOk(unsigned image) const noexcept
{
    return image < images.size() && images[image].array_data() != nullptr;
}

const VLAxis& CStorageDoc::getAxis(unsigned image, unsigned axis, unsigned dimension) const
{
    const SPMDataStream& stream = images[image];
    const VLAxesContainer& axes = dimension == noIndex ? stream.values : stream.get_dimension(dimension);
    return axes.get_axis(axis < axes.get_axes_number() ? axis : 0);
}

void CStorageDoc::setAxis(unsigned image, unsigned axis, const VLAxis& source, unsigned dimension)
{
    SPMDataStream& stream = images[image];
    VLAxesContainer& axes = dimension == noIndex ? stream.values : stream.get_dimension(dimension);
    axes.set_axis(axis, source);
    renumber(image);
    noteChange();
    UpdateAllViews(nullptr, document::axis_hint(dimension, image, axis));
}

void CStorageDoc::getMinMaxInfo(unsigned image, CMinMaxInfo& info, unsigned sub) const
{
    const unsigned used = sub < getSubImagesNumber(image) ? sub : 0;
    // The elements are taken for 16-bit ones whatever the type; never more of them than the block has bytes.
    const std::size_t before =
        std::size_t{imageOptions[image].subimageLength} * images[image].array_element_size() * used;
    const std::size_t held = (GetDataSize(image) - std::min(GetDataSize(image), before)) / sizeof(short);
    const unsigned count = static_cast<unsigned>(std::min<std::size_t>(imageOptions[image].subimageLength, held));
    info.Readjust(static_cast<const short*>(getImageDataS(image, used)), count);
}

bool CStorageDoc::similar_images(unsigned a, unsigned b) const
{
    if (a >= images.size() || b >= images.size()) return false;
    const SPMDataStream &first = images[a], &second = images[b];
    if (first.get_dimensions_number() != second.get_dimensions_number()) return false;
    for (unsigned i = 0; i < first.get_dimensions_number(); ++i) {
        const SPMDataStream::dimension &one = first.get_dimension(i), &other = second.get_dimension(i);
        if (one.length != other.length || !shares_axis(one, other)) return false;
    }
    return true;
}

void CStorageDoc::AddNewImages(const SPMDataStream* streams, unsigned count)
{
    const std::size_t first = images.size();
    std::vector<SPMDataStream> added(streams, streams + count); // first: they may be images of this document
    images.insert(images.end(), std::make_move_iterator(added.begin()), std::make_move_iterator(added.end()));
    try {
        // Where one of the images is refused, none of them stays.
        imageOptions.resize(images.size());
        for (unsigned i = 0; i < count; ++i) revalidateImage(static_cast<unsigned>(first + i));
    } catch (...) {
        images.resize(first);
        imageOptions.resize(std::min(imageOptions.size(), first));
        throw;
    }
    setDisplayOnly(false);
}

CStorageDoc::image_shape CStorageDoc::revalidated(SPMDataStream& stream)
{
    if (stream.values.get_axes_number() == 0) stream.values.set_axis(0, VLAxis());

    // The product is checked against 32 bits after each factor of 32 bits, so that no step leaves 64 bits.
    std::vector<unsigned> lengths;
    std::uint64_t product = 1;
    bool isEmpty = false;
    for (unsigned i = 0; i < stream.get_dimensions_number(); ++i) isEmpty |= stream.get_dimension(i).length == 0;
    for (unsigned i = 0; i < stream.get_dimensions_number(); ++i) {
        SPMDataStream::dimension& dimension = stream.get_dimension(i);
        if (dimension.get_axes_number() == 0) dimension.set_axis(0, VLAxis());
        lengths.push_back(dimension.length);
        product *= dimension.length;
        if (product > maxElements && !isEmpty) throw std::length_error("image of over 2^32 elements");
        product = std::min(product, maxElements); // a later 0 empties it
    }
    if (isEmpty) product = 0;
    const std::uint64_t held = stream.array_length();
    // At least one sub-image, and each of them whole: what the array lacks counts as 0.
    const std::uint64_t whole =
        product == 0 ? held : std::max<std::uint64_t>((held + product - 1) / product, 1) * product;
    if (whole > maxElements) throw std::length_error("image of over 2^32 elements");
    if (whole != held) stream.set_array_len(static_cast<unsigned>(whole));

    if (stream.is_array() && stream.array_type() == SPM_ARRAY_VOID && stream.array_element_size() == 2)
        stream.set_array_type(SPM_ARRAY_INT16);
    return {static_cast<unsigned>(product), std::move(lengths)};
}

void CStorageDoc::adoptShape(unsigned image, image_shape&& shape) noexcept
{
    options& kept = imageOptions[image];
    if (shape.dimensionLengths != kept.dimensionLengths) setOverlay(image, nullptr);
    kept.subimageLength = shape.subimageLength;
    kept.dimensionLengths = std::move(shape.dimensionLengths);
}

void CStorageDoc::revalidateImage(unsigned image)
{
    if (image >= images.size() || image >= imageOptions.size()) return;
    adoptShape(image, revalidated(images[image]));
    renumber(image);
}

void CStorageDoc::closeViewsOf(unsigned first, unsigned last)
{
    const auto boundTo = [&](CView* view) {
        auto* bound = dynamic_cast<IImageBoundView*>(view);
        return bound && bound->getImageNumber() >= first && bound->getImageNumber() <= last ? bound : nullptr;
    };
    // Closing a frame may close others, so the walk begins anew after each.
    for (auto view = views().begin(); view != views().end();) {
        IImageBoundView* bound = boundTo(*view);
        if (bound) bound->closeFrame();
        view = bound ? views().begin() : view + 1;
    }
}

void CStorageDoc::RemoveImage(unsigned image)
{
    const CDocumentHold kept(*this);
    closeViewsOf(image, image);
    if (image < images.size() && image < imageOptions.size()) {
        images.erase(images.begin() + image);
        imageOptions.erase(imageOptions.begin() + image);
        noteChange();
    }
    std::vector<IImageBoundView*> renumbered;
    for (CView* view : views()) {
        auto* bound = dynamic_cast<IImageBoundView*>(view);
        if (bound) bound->imageRemoved(image);
        if (!bound || bound->getImageNumber() <= image) continue;
        bound->setImageNumber(bound->getImageNumber() - 1);
        renumbered.push_back(bound);
    }
    // Now that all agree on the numbers: loading options tells every view of an image.
    for (IImageBoundView* bound : renumbered) bound->LoadOptions();
}

bool CStorageDoc::SetDIB(const BITMAPINFOHEADER* header, const void* bits, const RGBQUAD* palette, int index)
{
    if (!header || !bits || !document::is_convertible_bitmap(*header)) return false;
    const bool replaces = index >= 0 && static_cast<unsigned>(index) < images.size();
    SPMDataStream stream;
    const unsigned count = static_cast<unsigned>(header->biWidth) * static_cast<unsigned>(header->biHeight);
    stream.Init(replaces ? images[static_cast<unsigned>(index)].get_name() : "img0",
                replaces ? images[static_cast<unsigned>(index)].get_description() : "Bitmap", SPM_VAR_ARRAY, count, 2u);
    stream.set_array_type(SPM_ARRAY_INT16);
    stream.set_dimension(0, dimension_of(header->biWidth, document::bitmap_axis(header->biXPelsPerMeter)));
    stream.set_dimension(1, dimension_of(header->biHeight, document::bitmap_axis(header->biYPelsPerMeter)));
    // A sample is the sum of three channels; the axis makes it their mean.
    stream.values.set_axis(0, VLAxis(0.0, 1.0 / 3.0, "RGB"));
    document::bitmap_heights(*header, static_cast<const std::uint8_t*>(bits), palette,
                             {static_cast<std::int16_t*>(stream.array_data()), count});
    document::packed_bitmap overlay = document::pack_bitmap(*header, bits, palette);
    if (replaces) {
        const unsigned image = static_cast<unsigned>(index);
        images[image] = std::move(stream);
        revalidateImage(image);
        noteChange();
        UpdateAllViews(nullptr, document::data_hint(image));
    } else {
        makeIdUnique(stream);
        AddNewImages(&stream, 1);
    }
    setOverlay(getImagesNumber() - 1, std::move(overlay));
    return true;
}

CStorageDoc::string_table& CStorageDoc::table(unsigned image) noexcept
{
    return image == noIndex ? documentStrings : imageOptions[image].strings;
}

const CStorageDoc::string_table& CStorageDoc::strings(unsigned image) const noexcept
{
    return image == noIndex ? documentStrings : imageOptions[image].strings;
}

void CStorageDoc::setString(const char* key, const char* value, unsigned image)
{
    string_table& to = table(image);
    const auto found = to.find(key);
    const char* const text = value ? value : "";
    if (found != to.end() && found->second == text) return;
    to.insert_or_assign(key, text);
    textsChanged();
}

const char* CStorageDoc::getString(const char* key, unsigned image) const
{
    const string_table& from = strings(image);
    const auto found = from.find(key);
    return found == from.end() ? "" : found->second.c_str();
}

unsigned CStorageDoc::getStringsNames(std::string* out, unsigned max, unsigned image) const
{
    const string_table& from = strings(image);
    if (!out) return static_cast<unsigned>(from.size());
    unsigned copied = 0;
    for (auto entry = from.begin(); entry != from.end() && copied < max; ++entry) out[copied++] = entry->first;
    return copied;
}

void CStorageDoc::clearStrings(unsigned image)
{
    if (table(image).empty()) return;
    table(image).clear();
    textsChanged();
}

void CStorageDoc::copyStrings(const CStorageDoc* source, unsigned targetImage, unsigned sourceImage)
{
    const string_table& from = source->strings(targetImage == noIndex ? noIndex : sourceImage);
    string_table& to = table(targetImage);
    if (&from == &to || from == to) return;
    to = from;
    textsChanged();
}

void CStorageDoc::DeleteContents()
{
    images.clear();
    imageOptions.clear();
    documentStrings.clear();
    CDocument::DeleteContents();
}

void CStorageDoc::SetPathName(const wchar_t* path, int addToMRU)
{
    CDocument::SetPathName(path, addToMRU);
    if (!displayTitle.empty()) SetTitle(base::widen(displayTitle).c_str());
}

void CStorageDoc::deriveTitle(CStorageDoc& target)
{
    target.derivedCount = ++derivedCount;
    if (baseTitle.empty()) baseTitle = base::narrow(platform::file_stem(GetPathName()));
    target.baseTitle = baseTitle;
    const std::string derivedTitle =
        base::formatted(string_resource(texts::copyOf), static_cast<int>(derivedCount), baseTitle.c_str());
    target.SetTitle(base::widen(derivedTitle).c_str());
}

void CStorageDoc::Derive(unsigned sourceImage, CStorageDoc& target)
{
    deriveTitle(target);
    target.copyStrings(this, noIndex, noIndex);
    target.copyStrings(this, 0, sourceImage);
}

void CStorageDoc::setTitleParts(const title_parts& parts)
{
    baseTitle = parts.base;
    displayTitle = parts.display;
    derivedCount = parts.derived;
}
