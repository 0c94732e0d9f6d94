#include "surface/views/steps_search_context.h"

#include "base/text.h"
#include "document/StorageDoc.h"
#include "document/step_texts.h"
#include "platform/app/FrameWnd.h"
#include "platform/app/WinApp.h"
#include "surface/figures/mask_group.h"
#include "surface/figures/measure/step_results.h"
#include "surface/figures/measure/step_variables.h"
#include "surface/views/SurfMathView.h"
#include "view/frame/open_view.h"
#include "view/image/SectionSource.h"

#include <algorithm>
#include <string_view>
#include <utility>

using namespace vldv;

namespace {

constexpr const char* dialogName = "StepsSearch";
/// Windows of one search: a threshold that lets everything pass finds hundreds of steps.
constexpr std::size_t mostWindows = 40;

} // namespace

surface::step_settings steps_search_context::proposed() const
{
    const CSize size = view.shownFrame().size();
    return surface::step_settings::proposed(size.cx, size.cy);
}

void steps_search_context::run()
{
    std::vector<SPMVar> variables = surface::step_variables(proposed(), view.shownFrame().size());
    // These two name rows of one image; the others suit the next one as well.
    const char* ofThisImage[] = {surface::stepStartRow, surface::stepEndRow, nullptr};
    if (view.CallParametersDialog(variables.data(), static_cast<unsigned>(variables.size()), dialogName, this, this,
                                  true, ofThisImage) &&
        mayReplace())
        deliver();
}

/// One edit may change several variables; what they mean together is searched for once.
void steps_search_context::OnFireVariableChange(int, const SPMVarList* list)
{
    const std::optional<surface::step_settings> wanted = surface::settings_of(*list);
    if (!wanted || (hasSearched && *wanted == settings)) return;
    settings = *wanted;
    search();
}

void steps_search_context::OnCommandMessage(const char* id, CVarListDlg* dialog)
{
    if (std::string_view(id) != "default") return;
    SPMVarList& list = dialog->list();
    list.batch([&] {
        for (const SPMVar& each : surface::step_variables(proposed(), view.shownFrame().size()))
            list.set_var(each.get_name(), each.as_string().c_str());
    });
}

void steps_search_context::search()
{
    const CWaitCursor wait;
    steps = surface::find_steps(view.shownFrame(), settings);
    hasSearched = true;
    showMask();
    tellCount();
}

void steps_search_context::showMask()
{
    surface::step_mask mask(steps, view.shownFrame().size());
    const surface::drawing_axes axes = view.drawingAxes();
    surface::store_mask(*view.storageDoc(), view.getImageNumber(), mask.record(axes.x, axes.y));
}

void steps_search_context::tellCount() const
{
    const int rows = view.shownFrame().size().cy - settings.startRow - settings.endRow;
    view.SetMessageText(base::widen(rows > 0 ? base::formatted("Steps: %d", static_cast<int>(steps.size()))
                                             : std::string("Steps: no row lies between start row and end row")));
}

bool steps_search_context::mayReplace() const
{
    const CStorageDoc& document = *view.storageDoc();
    const std::vector<unsigned> older = surface::step_images(document, view.getImageNumber());
    const bool areCorrected = std::ranges::any_of(older, [&document](unsigned image) {
        return document.canUndo(image) || *document.getString(vldv::document::correctedStepKey, image) != '\0';
    });
    return !areCorrected || AfxGetApp()->host().askYesNo("Steps of an earlier search have been corrected by hand. "
                                                         "Replace them?");
}

void steps_search_context::deliver()
{
    CStorageDoc& document = *view.storageDoc();
    surface::remove_step_images(document, view.getImageNumber());
    const unsigned first = document.getImagesNumber();
    const auto chosen = [this](const char* option) { return static_cast<unsigned>(view.intOption(option)); };
    surface::add_step_images(document, view.getImageNumber(), steps, settings, 0, chosen("AxisX"), chosen("AxisY"));
    const std::size_t shown = std::min(steps.size(), mostWindows);
    for (std::size_t i = 0; i < shown; ++i) openWindow(first + static_cast<unsigned>(i), static_cast<int>(i));
    tellCount();
}

void steps_search_context::openWindow(unsigned image, int place)
{
    CImageView* const opened = view::open_view_of(view, image, sectionFrame);
    auto* const section = dynamic_cast<ISection*>(opened);
    if (!section) {
        if (opened) opened->closeFrame();
        return;
    }
    const auto length = static_cast<int>(view.storageDoc()->getImage(image).get_dimension(0).length);
    section->setSectionPoint(0, {0, 0});
    section->setSectionPoint(1, {length - 1, 0});
    section->setStepOrigin({view.getImageNumber(), settings.direction == surface::steps_direction::leftToRight});
    view::show_opened(*opened);
    view.PositionWindowNearby(opened->GetParentFrame(), place, legendRight);
    opened->bringFrameInside();
    for (const char* const axis : {"AxisX", "AxisZ"}) opened->setOption(axis, "line");
    opened->setOption("marks_mode", "Crossbar");
}
