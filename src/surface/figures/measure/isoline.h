#pragma once
#include "surface/figures/sample_frame.h"
#include "vldv_api.h"

#include <vector>

namespace vldv::surface {

/// The line around the samples that are at least as high as that of `seed`, beginning and ending at it, from sample to
/// neighbouring sample with the lower ones on the right hand as rows count upwards. Beyond the edge all is lower, and
/// so is what was not measured. Where only corners of the seed touch lower samples, the line begins beside it.
/// \return nothing where `why_no_isoline` says why
VLDV_INTERNAL_API std::vector<CPoint> trace_isoline(const sample_frame& frame, CPoint seed);

/// Why there is no line: the seed lies outside the frame, was not measured, is alone, or amid samples that are as high;
/// empty where there is.
VLDV_INTERNAL_API const char* why_no_isoline(const sample_frame& frame, CPoint seed);

/// The first point is the last one too.
inline bool is_closed(const std::vector<CPoint>& contour) noexcept
{
    return !contour.empty() && contour.front() == contour.back();
}

} // namespace vldv::surface
