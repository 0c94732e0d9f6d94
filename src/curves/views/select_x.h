#pragma once

class CImageView;
class CParametricCurveView;

namespace vldv::curves {

/// Some window shows a curve that the curve of `view` can be measured against.
bool has_x_for(const CImageView& view);
/// Shows small pictures of these curves. \return the window whose curve was chosen; null when the user cancels
CImageView* ask_for_x(const CImageView& view);
/// Measures the curve of `view` against the one that `chosen` shows, with what is known of its samples.
void take_x(CParametricCurveView& view, const CImageView& chosen);

} // namespace vldv::curves
