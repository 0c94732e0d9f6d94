#include "view/scale/CustomPaletteDialog.h"

#include "platform/app/WinApp.h"
#include "platform/files/Exceptions.h"
#include "platform/files/atomic_file.h"
#include "platform/files/paths.h"
#include "view/scale/palette_file.h"
#include "view/scale/palette_folder.h"

#include <algorithm>

using namespace vldv;

namespace {

enum control : unsigned {
    loadButton = 5230,
    saveButton = 5231,
    smoothButton = 5234,
    redChoice = 5235,
    greenChoice = 5236,
    blueChoice = 5237,
    restoreButton = 5191,
};
constexpr const char* filter = "Palette Files (*.pal)|*.pal||";

struct channel_look {
    view::color_channel channel;
    colorEntry color;
};
constexpr channel_look channelLooks[] = {
    {view::color_channel::red, 0x0000ff},
    {view::color_channel::green, 0x00c000},
    {view::color_channel::blue, 0xc00000},
};

} // namespace

CCustomPaletteDialog::CCustomPaletteDialog(color_table& table_, IScaleSync* sync_, CWnd* parent_,
                                           const color_table* start)
    : CDialog(customPaletteDialog, parent_),
      table(table_),
      sync(sync_),
      edited(start && !start->empty() ? *start : table_),
      restored(table_),
      begun(edited)
{
    // The palette that all views use takes the strokes at once. Cancel brings `restored` back to it; `begun` is where a
    // palette that was never made starts again.
    table = edited;
    lines.draw = [this](CDC& dc, CSize size) { DrawLines(dc, size); };
    lines.stroke = [this](CPoint from, CPoint to) {
        view::draw_stroke(edited, selected, from, to, lines.GetClientRect());
        changed();
    };
    lines.end = [this] { changed(); };
    sample.draw = [this](CDC& dc, CSize size) { DrawPalette(dc, size); };
}

void CCustomPaletteDialog::OnCommand(unsigned id)
{
    switch (id) {
    case redChoice:
        return OnRed();
    case greenChoice:
        return OnGreen();
    case blueChoice:
        return OnBlue();
    case smoothButton:
        return OnSmooth();
    case restoreButton:
        return OnRestore();
    case loadButton:
        return OnLoad();
    case saveButton:
        return OnSave();
    default:
        return CDialog::OnCommand(id);
    }
}

bool CCustomPaletteDialog::isChecked(unsigned id) const
{
    return id == (selected == view::color_channel::red     ? redChoice
                  : selected == view::color_channel::green ? greenChoice
                                                           : blueChoice);
}

CWnd* CCustomPaletteDialog::pane(unsigned id)
{
    if (id == linesPane) return &lines;
    return id == samplePane ? &sample : nullptr;
}

void CCustomPaletteDialog::OnOK()
{
    table = edited;
    CDialog::OnOK();
}

void CCustomPaletteDialog::OnCancel()
{
    table = restored;
    CDialog::OnCancel();
}

void CCustomPaletteDialog::selectChannel(view::color_channel channel)
{
    selected = channel;
    lines.Invalidate(false);
}

/// The three channels, the selected one on top and wider.
void CCustomPaletteDialog::DrawLines(CDC& dc, CSize size) const
{
    dc.FillSolidRect(CRect({}, size), 0xffffff);
    const auto draw = [&](const channel_look& look, int width) {
        dc.SelectObject(CPen::solid(width, look.color));
        dc.Polyline(view::channel_line(edited, look.channel, size));
    };
    for (const channel_look& look : channelLooks)
        if (look.channel != selected) draw(look, 1);
    for (const channel_look& look : channelLooks)
        if (look.channel == selected) draw(look, 2);
}

void CCustomPaletteDialog::DrawPalette(CDC& dc, CSize size) const
{
    for (int x = 0; x < size.cx; ++x) dc.FillSolidRect({x, 0, x + 1, size.cy}, view::column_color(edited, x, size.cx));
}

/// Shows the working copy, here and wherever the palette is used.
void CCustomPaletteDialog::UpdatePalette()
{
    sample.Invalidate(false);
    if (!sync) return;
    table = edited;
    sync->SyncScale();
}

void CCustomPaletteDialog::changed()
{
    lines.Invalidate(false);
    UpdatePalette();
}

void CCustomPaletteDialog::OnSmooth()
{
    view::smooth(edited);
    changed();
}

void CCustomPaletteDialog::OnRestore()
{
    // One that was never made is black.
    const bool isMade = std::ranges::any_of(restored, [](colorEntry color) { return color != 0; });
    edited = isMade ? restored : begun;
    changed();
}

void CCustomPaletteDialog::OnLoad()
{
    CWinApp* const app = AfxGetApp();
    if (!app) return;
    open_prompt prompt;
    prompt.folder = view::palette_folder().wstring();
    prompt.filter = filter;
    const std::vector<std::wstring> chosen = app->host().askOpenPaths(prompt);
    if (chosen.empty()) return;
    if (auto loaded = view::load_palette(platform::to_path(chosen.front()))) {
        edited = std::move(*loaded);
        changed();
    } else {
        app->host().messageBox("Failed to load palette.", message_icon::warning);
    }
}

void CCustomPaletteDialog::OnSave()
{
    CWinApp* const app = AfxGetApp();
    if (!app) return;
    // Where the menus look for palettes.
    const std::wstring suggested = platform::to_wide(view::palette_folder() / "Custom.pal");
    const auto path = app->host().askSavePath({.suggestedPath = suggested, .filter = filter, .extension = "pal"});
    if (!path) return;
    try {
        platform::atomic_file file(platform::to_path(*path));
        file.write(view::write_palette_file(edited));
        file.commit();
    } catch (const CException& failure) {
        app->host().messageBox(failure.what(), message_icon::error);
    }
}

void CCustomPaletteDialog::pen_pane::OnLButtonDown(unsigned, CPoint point)
{
    dragging = true;
    last = point;
    SetCapture();
    SetCursor(cursor_shape::pen);
}

void CCustomPaletteDialog::pen_pane::OnMouseMove(unsigned, CPoint point)
{
    SetCursor(cursor_shape::pen);
    if (!dragging) return;
    stroke(last, point);
    last = point;
}

void CCustomPaletteDialog::pen_pane::OnLButtonUp(unsigned, CPoint)
{
    if (!dragging) return;
    dragging = false;
    ReleaseCapture();
    end();
}
