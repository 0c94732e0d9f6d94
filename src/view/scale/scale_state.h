#pragma once
#include "platform/draw/geometry.h"

#include <string>

/// Which way a strip runs.
enum tdTileDirection : int { tdOwn = -1, tdHorizontal = 0, tdVertical = 1 };

namespace vldv::view {

/// What `autoScaling` says.
enum scale_mode : int { fixedScale = 0, autoScale = 1, perLine = 2, perLinePlanefit = 3 };

/// What a scale knows: plain data that rendering, strips, the profile and the command line work on.
struct scale_state {
    bool active = true;         ///< the strip reacts to the mouse
    bool syncDelimiters = true; ///< takes the window of the static scale
    bool syncPalette = true;    ///< takes the palette of the static scale
    std::string fixedUnits = "nm";
    double fixedSize = 1000.0;       ///< span of the fixed window, in fixedUnits
    double fixedStart = -500.0;      ///< its start
    double relativeMeanOffset = 0.0; ///< its start relative to the data
    int scaleLength = 256;           ///< long side of the strip, pixels
    int scaleWidth = 22;             ///< short side
    tdTileDirection direction = tdHorizontal;
    int upperDelimiter = 64, lowerDelimiter = 192; ///< along the strip, pixels
    RECT stripRect = {0, 0, 22, 256};
    int grabTolerance = 3; ///< pixels
    int dragging = 0;
    int hotDelimiter = 0; ///< 0 none, 1 upper, 2 lower
    int paletteId = 3;
    int previousPaletteId = 3;
    int autoScaling = autoScale;
    bool inverse = false;
    bool disableScaleCheck = false; ///< never replace the fixed window by the range of the data
};

} // namespace vldv::view
