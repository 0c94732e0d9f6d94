#include "cli/pictures/curve_window.h"

#include "cli/pictures/document_keeper.h"
#include "curves/views/ParametricCurveView.h"
#include "curves/views/SectionView.h"
#include "document/StorageDoc.h"
#include "spectra/views/FeaturesHistogramView.h"
#include "spectra/views/FourierView.h"
#include "spectra/views/HistogramView.h"

#include <memory>

namespace vldv::cli {

namespace {

std::unique_ptr<CImageView> attached_view(CStorageDoc& document, const curve_window& window)
{
    const auto attach = [&](CImageView& view) {
        document.AddView(&view);
        view.setImageNumber(window.image);
        view.setSubImageNumber(window.sub);
    };
    if (window.kind == curve_view::parametric) {
        auto made = std::make_unique<CParametricCurveView>();
        attach(*made);
        made->setXDataStream(window.positions);
        return made;
    }
    const auto plain = [&]<class View>(std::unique_ptr<View> made) -> std::unique_ptr<CImageView> {
        attach(*made);
        return made;
    };
    if (window.kind == curve_view::histogram) return plain(std::make_unique<CHistogramView>());
    if (window.kind == curve_view::fourier) return plain(std::make_unique<CFourierView>());
    if (window.kind == curve_view::features) return plain(std::make_unique<CFeaturesHistogramView>());
    auto made = std::make_unique<CSectionView>();
    attach(*made);
    for (std::size_t i = 0; i < window.points.size(); ++i) made->setPoint(static_cast<unsigned>(i), window.points[i]);
    return made;
}

bool shows_curves(const CImageView& view)
{
    if (const auto* const pairs = dynamic_cast<const CParametricCurveView*>(&view)) return pairs->IsGood();
    if (const auto* const bars = dynamic_cast<const CHistogramView*>(&view)) return bars->IsGood();
    if (const auto* const spectrum = dynamic_cast<const CFourierView*>(&view)) return spectrum->IsGood();
    return !dynamic_cast<const CSectionView&>(view).getSection().isEmpty();
}

void set_up_view(CImageView& view, const curve_window& window)
{
    const bool isParametric = window.kind == curve_view::parametric;
    if (window.kind == curve_view::spectrum) view.setOption("ShowSpectrum", "true");
    if (window.showsForceLines)
        view.setOption(isParametric ? "ShowParametricCurveStats" : "ShowForceCurveStats", "true");
}

/// What stands around the display.
CSize margins_of(const CDCView& view)
{
    return {view.intOption("LeftMargin") + view.intOption("RightMargin"),
            view.intOption("TopMargin") + view.intOption("BottomMargin")};
}

bool is_bare(const CImageView& view, const curve_window& window)
{
    if (window.legend != curve_legend::whereItFits) return window.legend == curve_legend::never;
    const CSize margins = margins_of(view);
    return window.size && window.kind != curve_view::spectrum && !window.showsForceLines &&
           (2 * margins.cx > window.size->cx || 2 * margins.cy > window.size->cy);
}

/// The curves alone: of a window that is larger by its margins, what lies inside of them.
drawing bare_drawing(CImageView& view)
{
    if (dynamic_cast<CParametricCurveView*>(&view)) view.setOption("ShowMarks", "false");
    if (dynamic_cast<CSectionView*>(&view)) view.setOption("marks_mode", "None");
    const CRect shown = view.displayRect;
    return {shown.Size(), view.colorOption("background"), [&view, shown](CDC& dc) {
                const int saved = dc.SaveDC();
                dc.IntersectClipRect(CRect({0, 0}, shown.Size()));
                dc.SetViewportOrg({-shown.left, -shown.top});
                view.OnDrawData(dc);
                dc.RestoreDC(saved);
            }};
}

drawing whole_drawing(CImageView& view)
{
    return {view.GetClientRect().Size(), view.colorOption("background"), [&view](CDC& dc) { view.DrawView(&dc); }};
}

} // namespace

std::string draw_curve_window(CStorageDoc& document, const curve_window& window, const drawing_user& use)
{
    const document_keeper keeper(document);
    const std::unique_ptr<CImageView> view = attached_view(document, window);
    view->Create(nullptr, view->kind());
    view->OnInitialUpdate();
    view->setActiveSubimage(window.sub);
    if (!shows_curves(*view)) return "there are no samples to draw";
    set_up_view(*view, window);
    if (auto* const spectrum = dynamic_cast<CFourierView*>(view.get())) window.setUpScale(spectrum->getScale());
    if (std::string reason = window.setOptions(*view); !reason.empty()) return reason;
    const bool isBare = is_bare(*view, window);
    if (window.size) {
        const CSize around = isBare ? margins_of(*view) : CSize();
        view->MoveWindow(CRect(0, 0, window.size->cx + around.cx, window.size->cy + around.cy));
    }
    view->OnSize(view->GetClientRect().Size());
    if (view->displayRect.IsRectEmpty()) return "the size leaves no room for the curves inside their margins";
    view->flushTimers();
    const drawing made = isBare ? bare_drawing(*view) : whole_drawing(*view);
    if (window.size && made.size != *window.size)
        return "a fixed scale along X gives the picture a width of its own, which no other can be asked for with";
    use(made);
    return {};
}

} // namespace vldv::cli
