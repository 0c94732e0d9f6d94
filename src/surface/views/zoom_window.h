#pragma once
class CImageView;
class CStorageDoc;
struct CRect;

namespace vldv::surface {

/// A window of its own that magnifies the selection of a surface: a document with one image, the samples inside some
/// bounds. Its view is a child of the surface, so that it goes with it and is found again as long as it is there. One
/// that the user has worked on follows the surface no more.

/// The document of the surface's zoom window, or null.
CStorageDoc* zoom_document(const CImageView& surface);
/// Opens it beside the surface. Nothing for an image without samples.
void open_zoom_window(CImageView& surface, const CRect& bounds);
/// Writes the samples of the bounds into it, if it is open, and tells its views.
void refresh_zoom_window(const CImageView& surface, const CRect& bounds);

} // namespace vldv::surface
