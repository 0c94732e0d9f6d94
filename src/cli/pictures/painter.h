#pragma once
#include "platform/draw/DC.h"

#include <memory>

namespace vldv::cli {

/// A drawing surface in memory. The painter with the toolkit's libraries is loaded with the first one, so that what
/// needs no picture runs without them. \throws std::runtime_error when it cannot be loaded
std::unique_ptr<CDC> make_memory_surface(CSize dotsAnInch);

} // namespace vldv::cli
