#include "document/update_hints.h"
#include "surface/views/SurfMathView.h"
#include "surface/views/surface_options.h"
#include "view/axes/axis_options.h"

#include "document/StorageDoc.h"

#include <algorithm>

using namespace vldv;

void CSurfMathView::GetOptionsList(SPMVar* vars, unsigned* count)
{
    unsigned before = 0;
    CImageView::GetOptionsList(nullptr, &before);
    const std::vector<SPMVar> own = surface::surface_options(stream());
    const unsigned all = before + static_cast<unsigned>(own.size());
    if (!vars) {
        *count = all;
        return;
    }
    CImageView::GetOptionsList(vars, count);
    view::tie_margins(vars, std::min(before, *count));
    for (unsigned i = before; i < std::min(all, *count); ++i) vars[i] = own[i - before];
}

void CSurfMathView::sendShapeHint()
{
    if (GetDocument()) GetDocument()->UpdateAllViews(nullptr, document::shape_hint(imageNumber));
}

void CSurfMathView::oh_compact(const SPMVar&) { sendShapeHint(); }

void CSurfMathView::oh_additional_legend(const SPMVar&)
{
    if (isCompact())
        Invalidate(true);
    else
        sendShapeHint();
}

void CSurfMathView::oh_z_scale(const SPMVar&)
{
    Invalidate(!isCompact());
    UpdateZScale(true);
    if (!isCompact()) sendShapeHint();
}

void CSurfMathView::oh_panel(const SPMVar&)
{
    Invalidate(true);
    UpdateZScale(true);
    sendShapeHint();
}

void CSurfMathView::oh_statistics(const SPMVar& changed)
{
    oh_panel(changed);
    updateStatisticsLater();
}

/// The colours of a fixed window, and which heights the strip stands for, depend on it.
void CSurfMathView::oh_z_scaling(const SPMVar& changed)
{
    oh_invalidate(changed);
    RefreshDisplay();
}

void CSurfMathView::oh_length_axis(const SPMVar& changed)
{
    remeasure();
    oh_invalidate(changed);
}

void CSurfMathView::oh_z_axis(const SPMVar& changed)
{
    oh_z_scaling(changed);
    if (isOptionOn("ShowStatistics")) updateStatisticsLater();
}

void CSurfMathView::oh_reload(const SPMVar&)
{
    if (GetDocument()) GetDocument()->UpdateAllViews(nullptr, document::data_hint(imageNumber));
}

void CSurfMathView::oh_section_pens(const SPMVar&)
{
    rebuildSectionPens();
    Invalidate(false);
}

void CSurfMathView::rebuildSectionPens()
{
    pens = surface::make_section_pens(intOption("section.line.style"), intOption("section.line.solid.width"),
                                      colorOption("section.line.color"));
}
