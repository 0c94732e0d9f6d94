#pragma once
#include "resources/frame_templates.h"

class CFrameWnd;
class CImageView;

namespace vldv::view {

/// There is such a template, and a class for its view.
bool can_open(unsigned templateId);
/// A frame on the document of `from`, whose view is bound to the same image and sub-image, has its options and is a
/// child of `from`; not yet shown, so that the caller can tell it more.
/// \return null when it cannot be opened, with nothing left behind
CImageView* open_view(CImageView& from, unsigned templateId);
/// The same on another image of its document, and no child of `from`.
CImageView* open_view_of(CImageView& from, unsigned image, unsigned templateId);
/// Gives the view its first update and shows its frame.
void show_opened(CImageView& opened);
/// Moves a frame back into the main window's area.
void bring_inside(CFrameWnd& frame);

} // namespace vldv::view
