#pragma once
#include <cstdint>

/// 32-bit colour 0x00BBGGRR: red in the low byte. The form of drawing, of palette files and of the profile.
using colorEntry = std::uint32_t;
