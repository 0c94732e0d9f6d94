#include "curves/force_source.h"

#include "base/text.h"
#include "curves/profile.h"
#include "document/StorageDoc.h"
#include "document/formats/curve_lengths.h"
#include "document/formats/force_order.h"
#include "document/formats/void_points.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <stdexcept>

namespace curves {

namespace {

unsigned image_named(const CStorageDoc& document, const char* name, unsigned except)
{
    for (unsigned i = 0; name && *name && i < document.getImagesNumber(); ++i)
        if (i != except && document.isImageOk(i) && !std::strcmp(document.getImage(i).get_name(), name)) return i;
    return noImage;
}

/// A stream of 16-bit samples: itself, or its conversion.
const SPMDataStream& as_16_bits(const CStorageDoc& document, unsigned image, SPMDataStream& converted)
{
    const SPMDataStream& stream = document.getImage(image);
    if (stream.array_type() == SPM_ARRAY_INT16) return stream;
    converted = stream;
    formats::convert_measured(converted);
    if (converted.array_type() != SPM_ARRAY_INT16)
        throw std::runtime_error(base::formatted("the samples of image %u have no type", image));
    return converted;
}

/// Curves of a stream, one behind the other, as far as they were measured.
struct curve_rows {
    const std::int16_t* samples;
    std::size_t points;
    std::vector<std::size_t> lengths;

    curve_rows(const CStorageDoc& document, unsigned image, const SPMDataStream& stream)
        : samples(static_cast<const std::int16_t*>(stream.array_data())),
          points(stream.get_dimension(0).length),
          lengths(formats::curve_lengths(stream, document.getString(formats::curveLengthsKey, image)))
    {
    }
    std::span<const std::int16_t> at(std::size_t curve) const { return {samples + curve * points, lengths[curve]}; }
};

} // namespace

unsigned parameter_of(const CStorageDoc& document, unsigned image)
{
    const SPMDataStream& stream = document.getImage(image);
    const unsigned number = image_named(document, stream.get_parameter_stream(), image);
    if (number == noImage) return noImage;
    const grid own(stream), other(document.getImage(number));
    if (other.isEmpty() || own.dimensions() != other.dimensions()) return noImage;
    for (std::size_t d = 1; d < own.dimensions(); ++d)
        if (own.lengths[d] != other.lengths[d]) return noImage;
    return other.subImages == own.subImages || other.subImages == 1 ? number : noImage;
}

bool is_parameter(const CStorageDoc& document, unsigned image)
{
    const char* const parameter = document.getImage(image).get_parameter_stream();
    if (parameter && *parameter) return false;
    for (unsigned i = 0; i < document.getImagesNumber(); ++i)
        if (i != image && document.isImageOk(i) && parameter_of(document, i) == image) return true;
    return false;
}

bool is_force_image(const CStorageDoc& document, unsigned image)
{
    if (!document.isImageOk(image)) return false;
    const SPMDataStream& stream = document.getImage(image);
    const unsigned dimensions = stream.get_dimensions_number();
    return (dimensions == 1 || dimensions == 3) && formats::holds_forces(stream) && !is_parameter(document, image);
}

force_image force_curves_of(const CStorageDoc& document, unsigned image)
{
    force_image out;
    out.image = image;
    const SPMDataStream& stream = as_16_bits(document, image, out.converted);
    out.values = stream.values.get_axis(0);
    out.x = document.getAxis(image, 0, 0);
    const grid grid(stream);
    const curve_rows rows(document, image, stream);
    std::optional<curve_rows> places;
    if (const unsigned number = parameter_of(document, image); number != noImage) {
        const SPMDataStream& parameter = as_16_bits(document, number, out.convertedX);
        places.emplace(document, number, parameter);
        out.parameter = parameter.get_description();
        out.x = parameter.values.get_axis(0);
    }
    const auto each = static_cast<std::size_t>(grid.subLength / grid.lengths[0]);
    const bool isVolume = grid.dimensions() == 3;
    const auto columns = isVolume ? static_cast<std::size_t>(grid.lengths[1]) : 1;
    const auto& names = stream.subimage_names();
    for (std::size_t i = 0; i < rows.lengths.size(); ++i) {
        placed_curve curve;
        curve.sub = static_cast<unsigned>(i / each);
        if (isVolume) {
            curve.column = static_cast<int>(i % each % columns);
            curve.row = static_cast<int>(i % each / columns);
        }
        curve.isHeld = curve.sub < names.size() && is_held_part(names[curve.sub].c_str());
        curve.samples = {rows.at(i), out.values, {}, out.x};
        if (places) { // pairs end with the shorter of both
            curve.samples.places = places->at(i % places->lengths.size());
            const std::size_t both = std::min(curve.samples.raw.size(), curve.samples.places.size());
            curve.samples.raw = curve.samples.raw.first(both);
            curve.samples.places = curve.samples.places.first(both);
        }
        out.curves.push_back(curve);
    }
    return out;
}

} // namespace curves
