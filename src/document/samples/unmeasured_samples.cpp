#include "document/samples/unmeasured_samples.h"

#include "document/StorageDoc.h"
#include "document/samples/point_counts.h"
#include "formats/shared/void_ranges.h"

namespace vldv::document {

unmeasured_samples::unmeasured_samples(const CStorageDoc& document, unsigned image)
    : frame(document.getSubImageLength(image))
{
    const char* const told = document.getString(formats::voidRangesKey, image);
    for (const formats::void_range& each : formats::void_ranges(document.getImage(image), told))
        runs.push_back({static_cast<std::size_t>(each.first), static_cast<std::size_t>(each.count)});
    const std::size_t all = unmeasured_points(document, image), placed = primitives::count_of(runs);
    hidden = all > placed ? all - placed : 0;
}

std::vector<primitives::sample_run> unmeasured_samples::of(unsigned sub) const
{
    const std::size_t begin = sub * frame;
    std::vector<primitives::sample_run> own = primitives::runs_within(begin, begin + frame, runs);
    for (primitives::sample_run& each : own) each.first -= begin;
    return own;
}

} // namespace vldv::document
