#include "paint/device_size.h"

#include <QPaintDevice>
#include <cmath>

namespace vldv::paint {

namespace {

/// Pictures tell their size in their own pixels, windows in those of the interface.
bool counts_own_pixels(const QPaintDevice& device)
{
    return device.devType() == QInternal::Image || device.devType() == QInternal::Pixmap;
}

CSize scaled_size(const QPaintDevice& device, double by)
{
    return {static_cast<int>(std::lround(device.width() * by)), static_cast<int>(std::lround(device.height() * by))};
}

} // namespace

CSize pixel_size(const QPaintDevice& device)
{
    return scaled_size(device, counts_own_pixels(device) ? 1.0 : device.devicePixelRatioF());
}

} // namespace vldv::paint
