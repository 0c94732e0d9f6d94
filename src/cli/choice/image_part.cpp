#include "cli/choice/image_part.h"

#include "base/text.h"

#include <stdexcept>

namespace vldv::cli {

CRect part_of_image(const char* option, const std::vector<int>& sides, CSize image)
{
    CRect rect(sides[0], sides[1], sides[2], sides[3]), common;
    rect.NormalizeRect();
    if (common.IntersectRect(rect, CRect({0, 0}, image))) return common;
    const std::string asked = base::formatted("%s %d,%d,%d,%d ", option, sides[0], sides[1], sides[2], sides[3]);
    if (rect.IsRectEmpty()) throw std::runtime_error(asked + "holds no sample: right and bottom lie outside");
    throw std::runtime_error(asked +
                             base::formatted("lies outside of the image of %d x %d samples", image.cx, image.cy));
}

} // namespace vldv::cli
