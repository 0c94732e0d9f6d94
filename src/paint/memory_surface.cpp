#include "platform/draw/memory_surface.h"

#include "paint/QtDC.h"
#include "paint/windowless_toolkit.h"

using namespace vldv;

extern "C" VLDV_INTERNAL_API CDC* vldv_make_memory_surface(CSize dotsAnInch)
{
    paint::start_windowless_toolkit();
    return new paint::CQtDC(dotsAnInch);
}

static_assert(std::is_same_v<decltype(&vldv_make_memory_surface), platform::make_memory_surface>);
