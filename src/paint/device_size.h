#pragma once
#include "platform/draw/geometry.h"

class QPaintDevice;

namespace vldv::paint {

/// Pixels of the device itself.
CSize pixel_size(const QPaintDevice& device);

} // namespace vldv::paint
