#pragma once
#include "platform/draw/geometry.h"

class QPaintDevice;

namespace vldv::paint {

/// Pixels of the device itself.
CSize pixel_size(const QPaintDevice& device);
/// Pixels as the interface counts them; on a screen of high density one of them is several of the device.
CSize logical_size(const QPaintDevice& device);

} // namespace vldv::paint
