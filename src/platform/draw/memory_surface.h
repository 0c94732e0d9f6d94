#pragma once
#include "platform/draw/geometry.h"

class CDC;

namespace vldv::platform {

/// What a shared object with a drawing surface gives to a program that has no windows: a surface in memory, which the
/// caller destroys. It draws nothing before a bitmap is selected. On the thread that draws.
using make_memory_surface = CDC* (*)(CSize dotsAnInch);

/// The name that the shared object exports it by.
constexpr const char* memorySurfaceSymbol = "vldv_make_memory_surface";

} // namespace vldv::platform
