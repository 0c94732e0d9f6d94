#include "cli/pictures/memory_surface.h"

#include "platform/draw/memory_surface.h"

#include <dlfcn.h>
#include <stdexcept>
#include <string>

namespace vldv::cli {

namespace {

/// Stays loaded until the program ends: the toolkit does not bear being unloaded.
platform::make_memory_surface load_painter()
{
    void* const painter = dlopen(VLDV_PAINTER, RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    void* const function = painter ? dlsym(painter, platform::memorySurfaceSymbol) : nullptr;
    if (!function) throw std::runtime_error(std::string("pictures with a legend cannot be drawn: ") + dlerror());
    return reinterpret_cast<platform::make_memory_surface>(function);
}

} // namespace

std::unique_ptr<CDC> make_memory_surface(CSize dotsAnInch)
{
    static const platform::make_memory_surface make = load_painter();
    return std::unique_ptr<CDC>(make(dotsAnInch));
}

} // namespace vldv::cli
