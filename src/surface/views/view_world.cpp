// What the machine asks of the view.
#include "surface/views/view_world.h"

#include "document/StorageDoc.h"
#include "platform/app/WinApp.h"
#include "surface/views/SurfMathView.h"
#include "view/image/SectionSource.h"
#include "view/image/VolumeSource.h"

#include <algorithm>

namespace vldv::surface {

namespace {

IScreen* screen()
{
    CWinApp* const app = AfxGetApp();
    return app ? app->host().screen() : nullptr;
}

/// Whether a choice, a truth or a number: as a number.
double number_of(const SPMVar& option)
{
    return option.type == SPM_VAR_ENUM || option.type == SPM_VAR_BOOLEAN ? static_cast<int>(option)
                                                                         : static_cast<double>(option);
}

} // namespace

sample_frame view_world::frame() const { return view.shownFrame(); }

view::view_geometry view_world::geometry() const { return {view.displayRect, view.sourceRect}; }
const VLAxis& view_world::axisX() const { return view.axisX(); }
const VLAxis& view_world::axisY() const { return view.axisY(); }
double view_world::option(const char* name) const { return number_of(view.option(name)); }

const document::decorations* view_world::decorations() const
{
    return view.stream() ? &view.storageDoc()->decorations(view.getImageNumber()) : nullptr;
}

drawing_axes view_world::drawingAxes() const { return view.drawingAxes(); }
std::vector<ISection*> view_world::sections() const { return view.sections(); }

ISection* view_world::firstLine() const
{
    if (!view.storageDoc()) return nullptr;
    for (CView* const each : view.storageDoc()->views())
        if (auto* const section = dynamic_cast<ISection*>(each); section && section->isLine())
            return section->sectionView().getImageNumber() == view.getImageNumber() ? section : nullptr;
    return nullptr;
}

std::optional<volume_mark> view_world::volumeMark() const
{
    IVolumeSource* const cloud = view.Get3DCloudView();
    auto* const shown = dynamic_cast<CDCView*>(cloud);
    if (!shown || cloud->getVolume().get_dimensions_number() < 2) return std::nullopt;
    const auto length = [cloud](unsigned dimension) {
        return static_cast<int>(cloud->getVolume().get_dimension(dimension).length);
    };
    return volume_mark{shown, {length(0), length(1)}, shown->doubleOption("mark.x"), shown->doubleOption("mark.y")};
}

CSize view_world::textExtent(std::wstring_view text) const
{
    const std::unique_ptr<CDC> dc = view.legendDC();
    return dc ? dc->GetTextExtent(text) : CSize{};
}

int view_world::textAscent() const
{
    const std::unique_ptr<CDC> dc = view.legendDC();
    return dc ? dc->GetTextMetrics().tmAscent : 0;
}

bool view_world::marksNumbered() const { return view.areMarksNumbered(); }
int view_world::marksStyle() const { return view.getMarksStyle(); }

bool view_world::isKeyDown(unsigned key) const { return screen() && screen()->isKeyDown(key); }

std::optional<CPoint> view_world::pointer() const
{
    if (!screen() || !view.getPeer()) return std::nullopt;
    const CPoint at = view.ScreenToClient(screen()->pointer());
    return view.GetClientRect().PtInRect(at) ? std::optional(at) : std::nullopt;
}

void view_world::setCapture(bool on)
{
    if (on)
        view.SetCapture();
    else if (view.hasCapture())
        view.ReleaseCapture();
}

void view_world::setCursor(const tool_pointer& shown) { view.SetCursor(shown.shape); }

void view_world::showWait(bool on)
{
    if (CWinApp* const app = AfxGetApp()) app->host().waitCursor(on);
}

} // namespace vldv::surface
