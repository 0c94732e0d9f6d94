#include "spectra/figures/frame_edit.h"

#include "document/StorageDoc.h"
#include "document/samples/point_counts.h"
#include "document/update_hints.h"

#include <cassert>
#include <stdexcept>

namespace vldv::spectra {

namespace {

void write(CStorageDoc& document, unsigned image, unsigned sub, std::span<const std::int16_t> samples,
           bool isOtherShape)
{
    SPMDataStream& stream = document.getImage(image);
    const std::size_t first = samples.size() * sub, end = first + samples.size();
    if (end > UINT32_MAX) throw std::length_error("image of over 2^32 elements");
    document.pushUndo(image, true);
    if (isOtherShape || stream.array_length() < end) document::state_counted_points(document, image);
    if (stream.array_length() < end) stream.set_array_len(static_cast<unsigned>(end));
    stream.set_array(samples.data(), static_cast<unsigned>(samples.size()), static_cast<unsigned>(first));
}

void tell(CStorageDoc& document, unsigned image)
{
    document.SetModifiedFlag(true);
    document.UpdateAllViews(nullptr, document::data_hint(image));
}

} // namespace

void replace_frame(CStorageDoc& document, unsigned image, unsigned sub, std::span<const std::int16_t> samples)
{
    write(document, image, sub, samples, false);
    tell(document, image);
}

void replace_frame(CStorageDoc& document, unsigned image, unsigned sub, std::span<const std::int16_t> samples,
                   unsigned width, unsigned height)
{
    SPMDataStream& stream = document.getImage(image);
    assert(samples.size() == std::size_t{width} * height && stream.get_dimensions_number() == 2);
    const bool isOtherShape = stream.get_dimension(0).length != width || stream.get_dimension(1).length != height;
    write(document, image, sub, samples, isOtherShape);
    if (isOtherShape) {
        stream.get_dimension(0).length = width;
        stream.get_dimension(1).length = height;
        document.revalidateImage(image);
        document.UpdateAllViews(nullptr, document::shape_hint(image));
    }
    tell(document, image);
}

} // namespace vldv::spectra
