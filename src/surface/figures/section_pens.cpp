#include "surface/figures/section_pens.h"

#include <algorithm>

namespace vldv::surface {

section_pens make_section_pens(int style, int width, colorEntry color)
{
    width = std::max(width, 1);
    const auto w = static_cast<std::uint32_t>(width);
    const std::uint32_t dash = 2 * w + 2, gap = 2 * w;
    std::vector<std::uint32_t> pattern;
    switch (style) {
    case 1:
        pattern = {dash, dash};
        break;
    case 2:
        pattern = {1, gap};
        break;
    case 3:
        pattern = {dash, gap, 1, gap};
        break;
    case 4:
        pattern = {dash, gap, 1, gap, 1, gap};
        break;
    default:
        return {{PS_SOLID | PS_GEOMETRIC, width, color, {}}, CPen::null()};
    }
    // The other pen begins with a gap as long as the first dash, and ends with no dash.
    std::vector<std::uint32_t> complement{0};
    complement.insert(complement.end(), pattern.begin(), pattern.end());
    complement.push_back(0);
    constexpr colorEntry white = 0xFFFFFF;
    return {{PS_USERSTYLE | PS_GEOMETRIC | PS_ENDCAP_FLAT, width, color, pattern},
            {PS_USERSTYLE | PS_GEOMETRIC | PS_ENDCAP_FLAT, width, white, complement}};
}

} // namespace vldv::surface
