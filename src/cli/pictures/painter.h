#pragma once
#include "platform/draw/DC.h"
#include "platform/draw/vector_page.h"

#include <memory>

namespace vldv::cli {

// The painter with the toolkit's libraries is loaded with the first of these, so that what needs no picture runs
// without them.

/// A drawing surface in memory. \throws std::runtime_error when the painter cannot be loaded
std::unique_ptr<CDC> make_memory_surface(CSize dotsAnInch);
/// An empty page. \throws std::runtime_error when the painter cannot be loaded
std::unique_ptr<IVectorPage> make_vector_page(const platform::vector_page_form& form);

} // namespace vldv::cli
