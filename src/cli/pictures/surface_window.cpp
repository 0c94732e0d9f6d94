#include "cli/pictures/surface_window.h"

#include "cli/pictures/document_keeper.h"
#include "document/StorageDoc.h"
#include "surface/views/SurfMathView.h"

namespace vldv::cli {

namespace {

void set_up_view(CSurfMathView& view, const surface_window& window)
{
    window.setUpScale(view.getScale());
    if (!window.scaling.empty()) view.setOption("scaling.z", window.scaling.c_str());
    if (window.isHighlighted) view.setOption("highlight", "true");
    if (window.part) view.setRegionOfInterest(*window.part);
    view.setOption("CompactLegend", window.isCompact ? "true" : "false");
}

} // namespace

std::string draw_surface_window(CStorageDoc& document, const surface_window& window, const drawing_user& use)
{
    const document_keeper keeper(document);
    CSurfMathView view;
    document.AddView(&view);
    view.setImageNumber(window.image);
    view.setSubImageNumber(window.sub);
    view.Create(nullptr, view.kind());
    view.OnInitialUpdate();
    set_up_view(view, window);
    if (std::string reason = window.setOptions(view); !reason.empty()) return reason;
    if (window.size) view.MoveWindow(CRect({0, 0}, *window.size));
    const CRect client = view.GetClientRect();
    view.OnSize(client.Size());
    // Beside a picture of another shape than the window, light texts need their dark background.
    if (window.isCompact && view.displayRect != client) view.setOption("CompactLegend.transparent", "false");
    if (view.displayRect.IsRectEmpty()) return "the size leaves no room for the picture inside its margins";
    view.flushTimers();
    use({client.Size(), view.colorOption("background"), [&](CDC& dc) { view.DrawView(&dc); }});
    return {};
}

} // namespace vldv::cli
