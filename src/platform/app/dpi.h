#pragma once
#include "vldv_api.h"

/// Dots per inch of the system against 96, which all sizes are written for. Asked once for each application; 1 when the
/// system cannot tell or there is no application.
VLDV_API double GetSystemDPIMultiplyer();

/// A size in pixels of 96 dots per inch as pixels of this system, to the nearest integer.
VLDV_API int CorrectDPISize(int size);
