#pragma once
#include "base/VLAxis.h"
#include "platform/app/Window.h"
#include "view/scale/ColorTable.h"
#include "view/scale/ScaleSync.h"
#include "view/scale/scale_state.h"
#include "vldv_api.h"

#include <deque>
#include <string>
#include <vector>

class CImageView;
namespace vldv::view {
struct render_request;
}

/// A colour scale: which values a picture shows and in which colours, and the strip that shows it where it has a
/// window. All scales of the process share the colour tables, which exist from the first scale to the last; the first
/// in the list is the static scale that others follow. Interface thread only.
class VLDV_API CScale : public CWnd, public vldv::view::scale_state, public IScaleSync {
public:
    /// The first one computes the tables and reads palette, mode and window from the profile.
    CScale();
    CScale(const CScale&) = delete;
    CScale& operator=(const CScale&) = delete;
    /// The last one saves the custom palette and its own values.
    ~CScale() override;

    /// Turns samples into pixels, the rows in the order of the source.
    /// \param bits      blue, green, red per pixel, see `rgb32`
    /// \param src       width * height samples, `srcStep` bytes from row to row; an empty image draws nothing
    /// \param zAxis     physical value of a sample
    /// \param absolute  fixed mode: the window starts at `fixedStart`, else `relativeMeanOffset` above the lowest
    /// sample
    /// \param highlight shows the difference between neighbours in a row, for this drawing in mode 1
    /// \param roi       where the global range is taken from, or null; put in order in place
    /// \param rgb32     4 bytes a pixel, the fourth left as it is, rows without padding; else 3, rows padded to 4 bytes
    /// \param lowOut,highOut  receive the raw limits that were used; may be null
    /// A fixed window that lies off the data or is more than 256 times larger or smaller is replaced by their range.
    /// \throws std::runtime_error when a temporary cannot be had
    void DrawImage(void* bits, const short* src, int srcStep, IppiSize size, const VLAxis& zAxis, bool absolute,
                   bool highlight, RECT* roi, bool rgb32, int* lowOut, int* highOut);

    /// A drawing with all that can be told about it.
    void DrawImage(const vldv::view::render_request& request);

    /// Colour of position i of n steps; the table's last entry at i = n.
    unsigned long GetColor(int i, int n) const noexcept;
    unsigned long GetColor(int i, int n, double gamma) const noexcept;

    /// Draws the strip; on an active one in fixed mode its delimiters, and on the static scale's an axis.
    void DrawScale(CDC& dc, const CRect& rect, tdTileDirection along = tdOwn) const;

    int GetPaletteId() const noexcept { return paletteId; }
    /// Clamped to the palettes there are. Selecting the custom palette again counts as a change: its colours may have
    /// changed. With a window, views are told.
    void SetPaletteId(int id);
    /// Edits the custom palette, which all views show meanwhile.
    void OnCustomPalette(CWnd* parent_);
    /// Built-in and file palettes.
    static int GetPalettesNumber() noexcept;
    /// Name of a file palette; empty for the built-in ones and unknown ids.
    static std::string getPaletteName(int id);
    /// Null for unknown ids; good until the palettes change.
    static const vldv::color_table* getPalette(int id) noexcept;
    /// Reads the palette files again: their folder is another now. Scales keep to the palettes that are left.
    static void reloadFilePalettes();
    /// Replaces the custom palette of all scales. At least one colour.
    void SetCustomPalette(const unsigned long* colors, int count);
    /// \return false without application or when the profile refuses
    bool SaveCustomPalette() const;

    int GetAutoScaling() const noexcept { return autoScaling; }
    /// Tells no view.
    void SetAutoScaling(int mode);
    double getFixedSize() const noexcept { return fixedSize; }
    void setFixedSize(double size) noexcept { fixedSize = size; }
    double getFixedStart() const noexcept { return fixedStart; }
    void setFixedStart(double start) noexcept { fixedStart = start; }
    const char* getFixedUnits() const noexcept { return fixedUnits.c_str(); }
    void setFixedUnits(const char* units) { fixedUnits = units ? units : ""; }
    double getRelativeMeanOffset() const noexcept { return relativeMeanOffset; }
    void setRelativeMeanOffset(double offset) noexcept { relativeMeanOffset = offset; }
    bool getInverse() const noexcept { return inverse; }
    void setInverse(bool on) noexcept { inverse = on; }
    void setDisableScaleCheck(bool on) noexcept { disableScaleCheck = on; }

    tdTileDirection GetDirection() const noexcept { return direction; }
    virtual void SetDirection(tdTileDirection newDirection);
    /// Sets the strip's sides, those of its window too, and puts the delimiters at its quarters.
    void SetDimensions(int length, int width);
    CSize GetSize() const noexcept;
    /// A delimiter is under the pointer; is being moved.
    bool IsActive() const noexcept { return hotDelimiter != 0; }
    bool IsChanging() const noexcept { return hotDelimiter != 0 && dragging != 0; }

    /// Makes the strip's window, of `GetSize`. \return false when the host has no windows
    bool createStrip(CWnd* parent_);

    /// The first in the list, or null when there is no scale.
    static CScale* GetStaticScale() noexcept;
    void MakeStatic();
    /// Takes window and mode of the static scale, when `syncDelimiters` allows.
    void SyncDelimiters();
    /// Takes window, mode and palette of the static scale, when `syncPalette` allows.
    void SyncWithStatic();
    /// Makes all others that follow take what the static scale has.
    void UpdateAll();
    /// Tells all documents that the scale changed; the view with the focus takes it.
    static void UpdateActiveView();
    /// The custom palette changed under the editor, which has the focus: all views take it.
    void SyncScale() override;

    /// Palettes (12001 to 12100, the first one edits) and modes.
    bool OnCmdMsg(unsigned id, CCmdUI* ui) override;
    bool AppendMenuItems(unsigned first, std::vector<vldv::menu_item>& items) override;
    void OnPaint(CDC& dc) override;
    bool OnEraseBkgnd(CDC&) override { return true; }
    void OnMouseMove(unsigned flags, CPoint point) override;
    void OnMouseLeave() override;
    void OnLButtonDown(unsigned flags, CPoint point) override;
    void OnLButtonUp(unsigned flags, CPoint point) override;
    void OnLButtonDblClk(unsigned flags, CPoint point) override;
    void OnContextMenu(CPoint point) override;

private:
    const vldv::color_table& table() const noexcept;
    void updateStripRect();
    void InitColorTable();
    void DestroyColorTable();

    void OnPalette(unsigned id);
    void OnUpdatePalette(CCmdUI& ui);
    void OnScaleFixedscale() { setMode(vldv::view::fixedScale); }
    void OnScaleAutoscaling() { setMode(vldv::view::autoScale); }
    void OnScalePerLineAutoscaling() { setMode(vldv::view::perLine); }
    void OnScalePerLineAutoscalingWithPlanefit() { setMode(vldv::view::perLinePlanefit); }
    void OnUpdateMode(CCmdUI& ui);
    void setMode(int mode);
    bool takesMouse() const noexcept { return active && autoScaling == vldv::view::fixedScale; }
    void showResizeCursor();
    void takeWindowOf(CImageView& view);
    void tellWindow();

    static std::deque<vldv::color_table> m_ColorTable; ///< whose places stay while file palettes come and go
    static std::vector<std::string> file_names;
    static std::vector<CScale*> m_PalList;
};
