#include "cli/choice/frame_voids.h"

#include "base/text.h"

#include <nlohmann/json.hpp>
#include <utility>

namespace vldv::cli {

frame_voids voids_of(const CStorageDoc& document, const frame& which)
{
    const document::unmeasured_samples voids(document, which.image);
    frame_voids made{voids.of(which.sub), 0, voids.unplaced()};
    made.leftOut = primitives::count_of(made.runs);
    return made;
}

frame_voids all_included(frame_voids voids)
{
    voids.included += std::exchange(voids.leftOut, 0);
    return voids;
}

void add_voids(nlohmann::ordered_json& entry, const frame_voids& voids)
{
    entry["not_measured"] = voids.leftOut;
    entry["not_measured_included"] = voids.included;
}

std::string voids_text(const frame_voids& voids)
{
    std::string text;
    if (voids.leftOut != 0) text += base::formatted("    not measured, left out: %zu\n", voids.leftOut);
    if (voids.included != 0) text += base::formatted("    not measured, but counted: %zu\n", voids.included);
    return text;
}

} // namespace vldv::cli
