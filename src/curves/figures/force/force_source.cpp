#include "curves/figures/force/force_source.h"

#include "base/text.h"
#include "curves/figures/profile.h"
#include "document/StorageDoc.h"
#include "formats/shared/force/curve_lengths.h"
#include "formats/shared/force/force_order.h"
#include "formats/shared/void_points.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <stdexcept>

namespace vldv::curves {

namespace {

unsigned image_named(const CStorageDoc& document, const char* name, unsigned except)
{
    for (unsigned i = 0; name && *name && i < document.getImagesNumber(); ++i)
        if (i != except && document.isImageOk(i) && !std::strcmp(document.getImage(i).get_name(), name)) return i;
    return noImage;
}

/// A stream of 16-bit samples: itself, or its conversion.
/// \param voids  gets what of its curves was not measured
const SPMDataStream& as_16_bits(const CStorageDoc& document, unsigned image, SPMDataStream& converted,
                                std::vector<formats::void_range>& voids)
{
    const SPMDataStream& stream = document.getImage(image);
    const char* const told = document.getString(formats::voidRangesKey, image);
    voids = formats::void_ranges(stream, told);
    if (stream.array_type() == SPM_ARRAY_INT16) return stream;
    converted = stream;
    voids = formats::convert_measured(converted, told);
    if (converted.array_type() != SPM_ARRAY_INT16)
        throw std::runtime_error(base::formatted("the samples of image %u have no type", image));
    return converted;
}

/// Curves of a stream, one behind the other, as far as they were measured.
struct curve_rows {
    const std::int16_t* samples;
    std::size_t points;
    std::vector<std::size_t> lengths;
    std::vector<formats::void_range> voids;

    /// \param converted  takes the samples when they are not 16-bit
    curve_rows(const CStorageDoc& document, unsigned image, SPMDataStream& converted)
    {
        const SPMDataStream& stream = as_16_bits(document, image, converted, voids);
        samples = static_cast<const std::int16_t*>(stream.array_data());
        points = stream.get_dimension(0).length;
        lengths = formats::curve_lengths(stream, document.getString(formats::curveLengthsKey, image));
        values = stream.values.get_axis(0);
    }
    VLAxis values;
    std::span<const std::int16_t> at(std::size_t curve, std::size_t first, std::size_t end) const
    {
        return {samples + curve * points + first, end - first};
    }
    formats::curve_voids voidsOf(std::size_t curve) const { return {voids, curve * points}; }
};

/// What both a curve and, where there are any, its places have. Pairs end with the shorter of both.
void take_curve(const curve_rows& rows, std::size_t curve, const curve_rows* places, placed_curve& out)
{
    const std::size_t place = places ? curve % places->lengths.size() : 0;
    const std::size_t length = places ? std::min(rows.lengths[curve], places->lengths[place]) : rows.lengths[curve];
    const formats::curve_voids none;
    formats::measured_part part =
        formats::measured_part_of(length, {rows.voidsOf(curve), places ? places->voidsOf(place) : none});
    out.samples.raw = rows.at(curve, part.first, part.end);
    if (places) out.samples.places = places->at(place, part.first, part.end);
    out.samples.first = part.first;
    out.samples.gaps = std::move(part.gaps);
    out.voids = part.voids;
}

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
    const SPMDataStream& stream = document.getImage(image);
    const curve_rows rows(document, image, out.converted);
    out.values = rows.values;
    out.x = document.getAxis(image, 0, 0);
    const grid grid(stream);
    std::optional<curve_rows> places;
    if (const unsigned number = parameter_of(document, image); number != noImage) {
        places.emplace(document, number, out.convertedX);
        out.parameter = document.getImage(number).get_description();
        out.x = places->values;
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
        curve.samples.values = out.values;
        curve.samples.x = out.x;
        take_curve(rows, i, places ? &*places : nullptr, curve);
        out.curves.push_back(std::move(curve));
    }
    return out;
}

} // namespace vldv::curves
