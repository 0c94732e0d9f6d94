#pragma once

namespace vldv {

/// Templates by the number of their strings and frame menu: each kind of window has one.
enum frame_template : unsigned {
    sectionFrame = 101,
    surfaceFrame = 102, ///< opens files
    lineFrame = 103,
    sceneFrame = 105, ///< a surface in three dimensions
    histogramFrame = 106,
    quickViewFrame = 107, ///< strings of the quick view, whose frames the surface template makes
    parametersFrame = 108,
    fourierFrame = 109,
    captureFrame = 112,
    featuresFrame = 113, ///< histogram of features
    featuresTableFrame = 114,
    textFrame = 115,
    volumeFrame = 118,
    parametricFrame = 119,
    itemsFrame = 120, ///< histogram of items
    itemsTableFrame = 121,
    collageFrame = 125,
};

} // namespace vldv
