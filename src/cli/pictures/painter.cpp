#include "cli/pictures/painter.h"

#include "platform/draw/memory_surface.h"

#include <dlfcn.h>
#include <stdexcept>
#include <string>

namespace vldv::cli {

namespace {

/// A function of the painter, which stays loaded until the program ends: the toolkit does not bear being unloaded.
template <class Function>
Function painter_function(const char* name)
{
    void* const painter = dlopen(VLDV_PAINTER, RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    void* const function = painter ? dlsym(painter, name) : nullptr;
    if (!function) throw std::runtime_error(std::string("windows cannot be drawn: ") + dlerror());
    return reinterpret_cast<Function>(function);
}

} // namespace

std::unique_ptr<CDC> make_memory_surface(CSize dotsAnInch)
{
    static const auto make = painter_function<platform::make_memory_surface>(platform::memorySurfaceSymbol);
    return std::unique_ptr<CDC>(make(dotsAnInch));
}

std::unique_ptr<IVectorPage> make_vector_page(const platform::vector_page_form& form)
{
    static const auto make = painter_function<platform::make_vector_page>(platform::vectorPageSymbol);
    return std::unique_ptr<IVectorPage>(make(form));
}

} // namespace vldv::cli
