#include "cli/pictures/surface_window.h"

#include "cli/pictures/memory_surface.h"
#include "document/StorageDoc.h"
#include "surface/views/SurfMathView.h"

#include <memory>

namespace vldv::cli {

namespace {

constexpr CSize dotsAnInch{96, 96};

/// The document outlives its only view.
class document_keeper {
public:
    explicit document_keeper(CDocument& document_) : document(document_), before(document_.autoDelete)
    {
        document.autoDelete = false;
    }
    document_keeper(const document_keeper&) = delete;
    document_keeper& operator=(const document_keeper&) = delete;
    ~document_keeper() { document.autoDelete = before; }

private:
    CDocument& document;
    bool before;
};

void set_up_view(CSurfMathView& view, const surface_window& window)
{
    window.setUpScale(view.getScale());
    if (!window.scaling.empty()) view.setOption("scaling.z", window.scaling.c_str());
    if (window.isHighlighted) view.setOption("highlight", "true");
    if (window.part) view.setRegionOfInterest(*window.part);
    view.setOption("CompactLegend", window.isCompact ? "true" : "false");
}

} // namespace

std::string draw_surface_window(CStorageDoc& document, const surface_window& window, VLDIBImage& picture)
{
    const std::unique_ptr<CDC> reference = make_memory_surface(dotsAnInch);
    const document_keeper keeper(document);
    CSurfMathView view;
    document.AddView(&view);
    view.setImageNumber(window.image);
    view.setSubImageNumber(window.sub);
    view.Create(nullptr, view.kind());
    view.OnInitialUpdate();
    set_up_view(view, window);
    if (window.size) view.MoveWindow(CRect({0, 0}, *window.size));
    const CRect client = view.GetClientRect();
    view.OnSize(client.Size());
    // Beside a picture of another shape than the window, light texts need their dark background.
    if (window.isCompact && view.displayRect != client) view.setOption("CompactLegend.transparent", "false");
    if (view.displayRect.IsRectEmpty()) return "the size leaves no room for the picture inside its margins";
    view.flushTimers();
    picture.Init(reference.get());
    if (!picture.Create(client.Width(), client.Height(), false)) return "there is no memory for a picture of this size";
    picture.dc()->FillSolidRect(client, view.colorOption("background"));
    view.DrawView(picture.dc());
    return {};
}

} // namespace vldv::cli
