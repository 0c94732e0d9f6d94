#include "base/text.h"
#include "document/update_hints.h"
#include "platform/app/DocTemplate.h"
#include "platform/app/Document.h"
#include "platform/app/WinApp.h"
#include "platform/app/menu_item.h"
#include "resources/commands.h"
#include "view/ImageView.h"
#include "view/Scale.h"
#include "view/scale/CustomPaletteDialog.h"
#include "view/scale/strip.h"

#include <algorithm>

using namespace vldv;

namespace {

constexpr unsigned firstFilePalette = commands::firstPalette + view::builtInPalettes;

/// The scale changed, for every view or for the one with the focus.
void tell_documents(bool everyView)
{
    const CWinApp* const app = AfxGetApp();
    if (!app) return;
    for (const CDocTemplate* maker : app->docTemplates())
        for (const std::unique_ptr<CDocument>& document : maker->documents())
            document->UpdateAllViews(nullptr, document::hint{document::hintScaleChanged, 0, everyView}.packed());
}

/// The view that a strip serves: the one with the keyboard focus, or null.
CImageView* focused_view()
{
    const CWinApp* const app = AfxGetApp();
    if (!app) return nullptr;
    for (const std::unique_ptr<CFrameWnd>& frame : app->frames())
        if (auto* const shown = dynamic_cast<CImageView*>(frame->GetActiveView()); shown && shown->hasFocus())
            return shown;
    return nullptr;
}

view::data_range range_of(CImageView& shown)
{
    view::data_range range;
    shown.getBestScale(&range.low, &range.high, &range.units);
    return range;
}

/// What the menu calls a palette: built-in ones as in the strip's own menu, others by their file.
std::string palette_text(int id)
{
    if (id >= view::builtInPalettes) return menu_text(CScale::getPaletteName(id));
    const std::vector<menu_row> rows = menu_resource(scalePopup);
    const auto row = std::ranges::find(rows, commands::firstPalette + static_cast<unsigned>(id), &menu_row::id);
    return row == rows.end() ? std::string() : row->text;
}

/// Sends the commands of a strip's menu to the scale that decides: the static one where the strip follows it, or what
/// the user chose would be gone with the next update.
class strip_commands : public CCmdTarget {
public:
    explicit strip_commands(CScale& strip_) : strip(strip_) {}
    bool OnCmdMsg(unsigned id, CCmdUI* ui) override
    {
        const bool follows =
            id >= commands::firstPalette && id <= commands::lastPalette ? strip.syncPalette : strip.syncDelimiters;
        return (follows ? *CScale::GetStaticScale() : strip).OnCmdMsg(id, ui);
    }
    bool AppendMenuItems(unsigned first, std::vector<menu_item>& items) override
    {
        return strip.AppendMenuItems(first, items);
    }

private:
    CScale& strip;
};

} // namespace

bool CScale::createStrip(CWnd* parent_)
{
    if (!Create(parent_, window_kind::child)) return false;
    updateStripRect();
    return true;
}

void CScale::UpdateActiveView() { tell_documents(false); }

void CScale::SyncScale()
{
    tell_documents(true);
    Invalidate(false);
}

void CScale::DrawScale(CDC& dc, const CRect& rect, tdTileDirection along) const
{
    view::draw_strip(dc, rect, *this, table(), along, this == GetStaticScale());
}

void CScale::OnPaint(CDC& dc) { DrawScale(dc, GetClientRect()); }

bool CScale::OnCmdMsg(unsigned id, CCmdUI* ui)
{
    static constexpr command_row<CScale> rows[] = {
        {commands::firstPalette, commands::lastPalette, &CScale::OnPalette, &CScale::OnUpdatePalette},
        {commands::fixedScale, &CScale::OnScaleFixedscale, &CScale::OnUpdateMode},
        {commands::autoscaling, &CScale::OnScaleAutoscaling, &CScale::OnUpdateMode},
        {commands::perLine, &CScale::OnScalePerLineAutoscaling, &CScale::OnUpdateMode},
        {commands::perLinePlanefit, &CScale::OnScalePerLineAutoscalingWithPlanefit, &CScale::OnUpdateMode},
    };
    return dispatch_command<CScale>(*this, rows, id, ui) || CWnd::OnCmdMsg(id, ui);
}

bool CScale::AppendMenuItems(unsigned first, std::vector<menu_item>& items)
{
    if (first != commands::firstPalette && first != firstFilePalette) return false;
    const unsigned count =
        std::min(static_cast<unsigned>(GetPalettesNumber()), commands::lastPalette - commands::firstPalette + 1);
    for (unsigned i = first - commands::firstPalette; i < count; ++i)
        items.push_back({.id = commands::firstPalette + i, .text = palette_text(static_cast<int>(i))});
    return true;
}

void CScale::OnPalette(unsigned id)
{
    if (id == commands::firstPalette)
        OnCustomPalette(nullptr); // the main window is its parent
    else
        SetPaletteId(static_cast<int>(id - commands::firstPalette));
}

void CScale::OnUpdatePalette(CCmdUI& ui)
{
    const int id = static_cast<int>(ui.m_nID - commands::firstPalette);
    ui.Enable(id < GetPalettesNumber());
    ui.SetCheck(id == paletteId);
}

void CScale::OnUpdateMode(CCmdUI& ui)
{
    const int mode = ui.m_nID == commands::fixedScale    ? view::fixedScale
                     : ui.m_nID == commands::autoscaling ? view::autoScale
                     : ui.m_nID == commands::perLine     ? view::perLine
                                                         : view::perLinePlanefit;
    ui.SetCheck(mode == autoScaling);
}

void CScale::setMode(int mode)
{
    SetAutoScaling(mode);
    UpdateActiveView();
}

void CScale::SetAutoScaling(int mode)
{
    if (mode == autoScaling) return;
    autoScaling = mode;
    Invalidate(false);
}

void CScale::OnCustomPalette(CWnd* parent_)
{
    const int before = paletteId;
    // Its colours are the first strokes: what the user sees is what is changed.
    CCustomPaletteDialog dialog(m_ColorTable[view::customPalette], this, parent_, &table());
    SetPaletteId(view::customPalette);
    if (dialog.DoModal() == CDialog::resultOk) {
        if (getPeer()) UpdateActiveView();
        Invalidate(false);
    } else {
        SetPaletteId(before);
        SyncScale(); // all views have followed the strokes
    }
}

void CScale::showResizeCursor()
{
    SetCursor(direction == tdVertical ? cursor_shape::sizeVertical : cursor_shape::sizeHorizontal);
}

/// The fixed window changed by the mouse. A scale that follows hands it on, or the view's next update would take it
/// back.
void CScale::tellWindow()
{
    CScale& leader = *GetStaticScale();
    if (&leader != this && syncDelimiters) {
        leader.fixedStart = fixedStart;
        leader.fixedSize = fixedSize;
        leader.fixedUnits = fixedUnits;
        leader.relativeMeanOffset = relativeMeanOffset;
        leader.Invalidate(false);
    }
    UpdateActiveView();
}

void CScale::takeWindowOf(CImageView& shown)
{
    view::take_window(*this, range_of(shown));
    tellWindow();
}

void CScale::OnMouseMove(unsigned, CPoint point)
{
    if (!takesMouse()) return;
    if (!dragging) {
        hotDelimiter = view::delimiter_at(*this, point);
        if (hotDelimiter == view::noDelimiter)
            SetCursor(cursor_shape::arrow);
        else
            showResizeCursor();
    } else if (view::move_delimiter(*this, view::along_strip(*this, point))) {
        tellWindow();
        Invalidate(true);
    }
}

void CScale::OnMouseLeave()
{
    if (!dragging) hotDelimiter = view::noDelimiter;
}

void CScale::OnLButtonDown(unsigned flags, CPoint point)
{
    if (!takesMouse() || hotDelimiter == view::noDelimiter) {
        // The strip lies over its view, which takes what the strip does not.
        if (CWnd* const below = GetParent()) below->OnLButtonDown(flags, below->ScreenToClient(ClientToScreen(point)));
        return;
    }
    dragging = 1;
    SetCapture();
    showResizeCursor();
    CImageView* const shown = focused_view();
    if (!shown) return;
    const bool isAbsolute = shown->intOption("scaling.z") != 0;
    if (!view::window_suits(*this, range_of(*shown), isAbsolute)) takeWindowOf(*shown);
    Invalidate(false);
}

void CScale::OnLButtonUp(unsigned, CPoint)
{
    if (!dragging) return;
    dragging = 0;
    ReleaseCapture();
    hotDelimiter = view::noDelimiter;
    Invalidate(false);
    view::reset_delimiters(*this); // they are handles, not marks of values
    UpdateActiveView();
}

void CScale::OnLButtonDblClk(unsigned flags, CPoint point)
{
    if (!takesMouse()) return;
    if (CImageView* const shown = focused_view()) {
        takeWindowOf(*shown);
        Invalidate(false);
    }
    CWnd::OnLButtonDblClk(flags, point);
}

void CScale::OnContextMenu(CPoint point)
{
    CWinApp* const app = AfxGetApp();
    if (!active || !app) return;
    const std::vector<menu_row> rows = menu_resource(scalePopup);
    strip_commands target(*this);
    app->host().trackPopupMenu({rows.begin() + 1, rows.end()}, point, target); // without the popup's own title
}
