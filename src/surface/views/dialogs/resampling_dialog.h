#pragma once

class CStorageDoc;
class CWnd;

namespace vldv::surface {

/// Asks for size or step and method, and resamples. Sides and steps follow each other; so do both sides while
/// proportions are kept. A refusal is told in a message box.
/// \param axisX, axisY  of the dimensions, whose steps are shown
/// \return whether the image was changed
bool run_resample(CStorageDoc& document, unsigned image, unsigned axisX, unsigned axisY, CWnd* parent);

} // namespace vldv::surface
