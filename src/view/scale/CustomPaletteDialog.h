#pragma once
#include "platform/dialogs/Dialog.h"
#include "view/scale/ScaleSync.h"
#include "view/scale/palette_edit.h"
#include "vldv_api.h"

#include <functional>

/// The editor of the custom palette: one channel at a time is drawn with a pen over three lines. Every change goes into
/// the table at once and to who follows it; Cancel takes all of them back.
class VLDV_API CCustomPaletteDialog : public CDialog {
public:
    static constexpr unsigned linesPane = 5232, samplePane = 5233;

    /// \param table_  with at least one entry; must outlive this and changes in place
    /// \param sync_   null: nobody follows
    /// \param start   the colours to begin with, which the table takes; null: its own
    CCustomPaletteDialog(vldv::color_table& table_, IScaleSync* sync_, CWnd* parent_,
                         const vldv::color_table* start = nullptr);

    void OnCommand(unsigned id) override;
    void OnOK() override;
    void OnCancel() override;
    bool isChecked(unsigned id) const override;
    CWnd* pane(unsigned id) override;

    void OnRed() { selectChannel(vldv::view::color_channel::red); }
    void OnGreen() { selectChannel(vldv::view::color_channel::green); }
    void OnBlue() { selectChannel(vldv::view::color_channel::blue); }
    void OnSmooth();
    /// The custom palette as it was before; where there was none, the colours that the dialog began with.
    void OnRestore();
    void OnLoad();
    void OnSave();

    const vldv::color_table& working() const noexcept { return edited; }

private:
    /// A pane that leaves what it does to the dialog.
    struct drawn_pane : CWnd {
        std::function<void(CDC&, CSize)> draw;
        bool OnEraseBkgnd(CDC&) override { return true; }
        void OnPaint(CDC& dc) override { draw(dc, GetClientRect().Size()); }
    };
    /// The pane of the lines: a pen is held over it.
    struct pen_pane : drawn_pane {
        std::function<void(CPoint from, CPoint to)> stroke;
        std::function<void()> end;
        void OnLButtonDown(unsigned flags, CPoint point) override;
        void OnMouseMove(unsigned flags, CPoint point) override;
        void OnLButtonUp(unsigned flags, CPoint point) override;
        bool dragging = false;
        CPoint last;
    };

    void selectChannel(vldv::view::color_channel channel);
    void DrawLines(CDC& dc, CSize size) const;
    void DrawPalette(CDC& dc, CSize size) const;
    void UpdatePalette();
    void changed();

    vldv::color_table& table;
    IScaleSync* sync;
    vldv::color_table edited;
    const vldv::color_table restored; ///< what the table held before
    const vldv::color_table begun;    ///< what the dialog began with
    vldv::view::color_channel selected = vldv::view::color_channel::red;
    pen_pane lines;
    drawn_pane sample;
};
