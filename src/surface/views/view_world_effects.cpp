// What the machine causes around the view.
#include "base/text.h"
#include "document/StorageDoc.h"
#include "document/update_hints.h"
#include "platform/app/FrameWnd.h"
#include "surface/figures/mask_group.h"
#include "surface/figures/measure/lengthy_object.h"
#include "surface/views/SurfMathView.h"
#include "surface/views/view_world.h"
#include "view/frame/open_view.h"
#include "view/image/SectionSource.h"
#include "view/image/VolumeSource.h"

namespace vldv::surface {

void view_world::invalidate(const CRgn& region, bool erase)
{
    view.InvalidateRgn(region, erase);
    view.refreshMeasureRows();
}

void view_world::invalidateAll() { view.Invalidate(true); }
void view_world::setSourceWindow(const CRect& window) { view.showPart(window); }
void view_world::showStatus(CPoint source) { view.setPlaceText(view.GetMouseText(source)); }
void view_world::showNotice(const char* text) { view.SetMessageText(base::widen(text)); }
void view_world::rebuildStatistics() { view.updateStatistics(); }

void view_world::sendHint(std::uint32_t code, CPoint point)
{
    view.GetDocument()->UpdateAllViews(nullptr, document::hint{code, view.getImageNumber()}.packed(), point);
}

void view_world::sendToFeatures(std::uint32_t code, CPoint point)
{
    if (CImageView* const features = view.featuresView())
        features->UpdateView(&view, document::hint{code, view.getImageNumber()}.packed(), point);
}

void view_world::toggleDecoration(std::size_t group, std::size_t member)
{
    view.storageDoc()->toggleDecoration(view.getImageNumber(), group, member);
}

void view_world::openProfile(unsigned templateId, std::span<const CPoint> points)
{
    CImageView* const opened = view::open_view(view, templateId);
    auto* const section = dynamic_cast<ISection*>(opened);
    if (!section) {
        if (opened) opened->closeFrame();
        return;
    }
    for (std::size_t i = 0; i < points.size(); ++i) section->setSectionPoint(static_cast<unsigned>(i), points[i]);
    view::show_opened(*opened);
    int alike = 0;
    for (CView* const each : view.storageDoc()->views()) {
        const auto* const other = dynamic_cast<const ISection*>(each);
        alike += other && (other->isLine() || !section->isLine());
    }
    view.PositionWindowNearby(opened->GetParentFrame(), alike - 1, legendRight);
    opened->bringFrameInside();
}

void view_world::openSection(std::span<const CPoint> points) { openProfile(sectionFrame, points); }

void view_world::openLine(CPoint from, CPoint to)
{
    const CPoint ends[] = {from, to};
    openProfile(lineFrame, ends);
}

void view_world::bringToFront(ISection& section)
{
    view.storageDoc()->setFirstView(&section.sectionView());
    section.sectionView().BringToFront();
}

void view_world::beginVolumeDrag()
{
    if (IVolumeSource* const cloud = view.Get3DCloudView()) cloud->beginMarkDrag();
}

void view_world::moveVolumeMark(double x, double y)
{
    IVolumeSource* const cloud = view.Get3DCloudView();
    auto* const shown = dynamic_cast<CDCView*>(cloud);
    if (!shown) return;
    shown->setOption("mark.x", base::shortest(x).c_str());
    shown->setOption("mark.y", base::shortest(y).c_str());
    cloud->DrawSection();
}

void view_world::endVolumeDrag()
{
    if (IVolumeSource* const cloud = view.Get3DCloudView()) cloud->endMarkDrag();
}

void view_world::shareSelection()
{
    const CStorageDoc& document = *view.storageDoc();
    for (CView* const each : document.views()) {
        auto* const other = dynamic_cast<CSurfMathView*>(each);
        if (other && other != &view && document.similar_images(other->getImageNumber(), view.getImageNumber()))
            other->adoptSelection(view.getDrawn());
    }
}

void view_world::refreshZoomWindow() { view.refreshZoomWindow(); }

void view_world::storeLengthyObject(std::span<const CPoint> path)
{
    const drawing_axes axes = drawingAxes();
    lengthy_mask mask(decorations(), axes);
    mask.add(path);
    store_mask(*view.storageDoc(), view.getImageNumber(), mask.record(axes.x, axes.y));
}

} // namespace vldv::surface
