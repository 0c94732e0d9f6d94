#include "paint/drawing_surface.h"

#include <cmath>

namespace vldv::paint {

double scale_of(const platform::dc_state& state) noexcept
{
    return std::sqrt(std::fabs(state.mapping.toDevice().determinant()));
}

QTransform turn_of(const blit& picture)
{
    const QPointF start(picture.topLeft.x, picture.topLeft.y);
    const QPointF x = (QPointF(picture.topRight.x, picture.topRight.y) - start) / picture.from.Width();
    const QPointF y = (QPointF(picture.bottomLeft.x, picture.bottomLeft.y) - start) / picture.from.Height();
    return {x.x(), x.y(), y.x(), y.y(), start.x(), start.y()};
}

} // namespace vldv::paint
