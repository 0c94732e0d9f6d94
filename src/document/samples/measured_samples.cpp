#include "document/samples/measured_samples.h"

#include "document/StorageDoc.h"
#include "formats/shared/curve_lengths.h"

#include <algorithm>

namespace vldv::document {

measured_samples::measured_samples(const CStorageDoc& document_, unsigned image_) : document(document_), image(image_)
{
    const char* const told = document.getString(formats::curveLengthsKey, image);
    if (!told || !*told) return;
    const SPMDataStream& stream = document.getImage(image);
    points = stream.get_dimensions_number() ? stream.get_dimension(0).length : 0;
    lengths = formats::curve_lengths(stream, told);
    if (std::ranges::all_of(lengths, [&](std::size_t each) { return each == points; })) lengths.clear();
}

std::span<const std::int16_t> measured_samples::of(unsigned sub)
{
    const std::span all(static_cast<const std::int16_t*>(document.getImageDataS(image, sub)),
                        document.getSubImageLength(image));
    if (lengths.empty()) return all;
    copy.clear();
    const std::size_t curves = all.size() / points;
    for (std::size_t i = 0; i < curves; ++i) {
        const auto curve = all.subspan(i * points, lengths[sub * curves + i]);
        copy.insert(copy.end(), curve.begin(), curve.end());
    }
    return copy;
}

std::optional<CMinMaxInfo> measured_samples::rangeOf(unsigned sub)
{
    CMinMaxInfo range;
    if (lengths.empty()) {
        document.getMinMaxInfo(image, range, sub);
        return range;
    }
    const auto held = of(sub);
    if (held.empty()) return std::nullopt;
    range.Readjust(held.data(), static_cast<unsigned>(held.size()));
    return range;
}

} // namespace vldv::document
