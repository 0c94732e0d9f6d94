#include "curves/figures/opening_part.h"

#include "base/SPMDataStream.h"
#include "curves/figures/force/force_analysis.h"

#include <algorithm>

namespace vldv::curves {

unsigned opening_part(const SPMDataStream& stream) noexcept
{
    const std::vector<smart_string>& names = stream.subimage_names();
    if (stream.get_dimensions_number() != 1) return 0;
    const auto travels = [](const smart_string& name) { return *name.c_str() && !is_held_part(name.c_str()); };
    const auto found = std::ranges::find_if(names, travels);
    return found == names.end() ? 0 : static_cast<unsigned>(found - names.begin());
}

} // namespace vldv::curves
