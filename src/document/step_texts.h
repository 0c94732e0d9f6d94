#pragma once

// Texts of the images that hold the steps of a surface.

namespace vldv::document {

/// From which side the search looked: "Left to Right" or "Right to Left".
inline constexpr const char* stepDirectionKey = "stepsearch.invert";
inline constexpr const char* stepFromLeft = "Left to Right";
/// Name of the image in which the step was found; missing in older files.
inline constexpr const char* stepImageKey = "stepsearch.image";
/// Not empty when somebody corrected the step by hand.
inline constexpr const char* correctedStepKey = "stepsearch.corrected";

} // namespace vldv::document
