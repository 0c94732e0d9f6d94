#include "spectra/views/items_windows.h"

#include "platform/app/DocTemplate.h"
#include "platform/app/FrameWnd.h"
#include "platform/app/WinApp.h"
#include "resources/frame_templates.h"
#include "spectra/views/ItemsHistogramView.h"
#include "spectra/views/ItemsTableView.h"
#include "view/frame/open_view.h"

#include <memory>
#include <utility>

namespace vldv::spectra {

void open_items(CImageView& from, items_table items)
{
    if (items.rows() == 0) return;
    const auto shared = std::make_shared<const items_table>(std::move(items));
    auto* const histogram = dynamic_cast<CItemsHistogramView*>(view::open_view(from, itemsFrame));
    if (!histogram) return;
    view::show_opened(*histogram);
    histogram->setItems(shared);
    from.PositionWindowNearby(histogram->GetParentFrame(), 0, legendRight);
    histogram->bringFrameInside();

    const CWinApp* const app = AfxGetApp();
    CDocTemplate* const maker = app->findTemplate(itemsTableFrame);
    CFrameWnd* const frame = maker ? maker->CreateNewFrame(from.GetDocument(), nullptr) : nullptr;
    if (!frame) return;
    maker->InitialUpdateFrame(frame, from.GetDocument(), true);
    if (auto* const table = dynamic_cast<CItemsTableView*>(frame->GetActiveView())) table->setItems(shared);
    histogram->PositionWindowNearby(frame, 0, legendDown);
    view::bring_inside(*frame);
}

} // namespace vldv::spectra
