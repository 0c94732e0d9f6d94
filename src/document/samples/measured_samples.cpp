#include "document/samples/measured_samples.h"

#include "document/StorageDoc.h"
#include "formats/shared/force/curve_lengths.h"

#include <algorithm>

namespace vldv::document {

measured_samples::measured_samples(const CStorageDoc& document_, unsigned image_)
    : document(document_), image(image_), voids(document_, image_)
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
    const std::vector<primitives::sample_run> leftOut = voids.of(sub);
    if (lengths.empty() && leftOut.empty()) return all;
    copy.clear();
    // A sub-image holds its curves one after the other, `points` samples each, of which the first lengths[i] were
    // measured; `lengths` counts through all sub-images. Without lengths it is taken as one stretch.
    const std::size_t curves = lengths.empty() ? 1 : all.size() / points;
    const std::size_t each = lengths.empty() ? all.size() : points;
    for (std::size_t i = 0; i < curves; ++i) {
        const std::size_t begin = i * each, length = lengths.empty() ? each : lengths[sub * curves + i];
        primitives::for_each_kept(begin, begin + length, leftOut, [&](std::size_t first, std::size_t count) {
            const auto kept = all.subspan(first, count);
            copy.insert(copy.end(), kept.begin(), kept.end());
        });
    }
    return copy;
}

std::optional<CMinMaxInfo> measured_samples::rangeOf(unsigned sub)
{
    CMinMaxInfo range;
    if (lengths.empty() && voids.of(sub).empty()) {
        document.getMinMaxInfo(image, range, sub);
        return range;
    }
    const auto held = of(sub);
    if (held.empty()) return std::nullopt;
    range.Readjust(held.data(), static_cast<unsigned>(held.size()));
    return range;
}

} // namespace vldv::document
