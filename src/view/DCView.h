#pragma once
#include "base/SPMVarList.h"
#include "platform/app/View.h"
#include "platform/dialogs/VarListDlg.h"
#include "view/DIBImage.h"
#include "view/axes/view_geometry.h"
#include "view/frame/option_rows.h"
#include "vldv_api.h"

#include <functional>
#include <map>
#include <set>
#include <string>
#include <variant>

class CFrameWnd;

namespace vldv {
struct print_job;
struct toolbar_button;
} // namespace vldv

/// In which direction `DrawLegendText` moves on, and on which side `PositionWindowNearby` puts a window.
enum LegendOffset : int { legendUp = 0, legendDown = 1, legendRight = 2, legendLeft = 3 };

namespace vldv {

/// One argument of a legend's format.
using legend_argument = std::variant<std::wstring, std::string, double>;

} // namespace vldv

/// Base of every view: typed options with their dialog and profile section, a client area of margins and display, a
/// picture in memory, painting in data and legend, and the commands common to all views. It has no data of its own.
class VLDV_API CDCView : public CView, public SPMVarListHandler, public CVarListDlgHandler {
public:
    CDCView();
    ~CDCView() override;

    // What derived views answer
    virtual void CountDisplayRect();
    /// The picture in memory has 32 bits a pixel.
    virtual bool UseAlphaChannel() { return true; }
    virtual void RefreshDisplay() { Invalidate(false); }
    virtual std::wstring GetClipboardText(bool) { return {}; }
    /// Section of the profile and of option files.
    virtual std::string GetViewSection() { return "CommonView"; }
    virtual unsigned getSourceWidth() { return static_cast<unsigned>(sourceRect.Width()); }
    virtual unsigned getSourceHeight() { return static_cast<unsigned>(sourceRect.Height()); }
    /// Display size over source size; 1 where there is no source.
    virtual void GetAspectRatio(double& x, double& y);
    /// The size to use where `cx` by `cy` is asked for.
    virtual void GetBestSize(int& cx, int& cy);
    void adjustToBestSize(); ///< of the whole data, the frame with it
    virtual long GetToolbarIDs(unsigned* first, unsigned* second, unsigned* third);
    virtual unsigned long GetToolbarStyle() { return 5120; }
    /// Appends the buttons that the view adds to its toolbar, with pictures of its own. \return not used
    virtual long OnResetToolbar(std::vector<vldv::toolbar_button>&) { return 0; }
    virtual void SwitchFullScreen();
    virtual void OnDrawData(CDC&) {}
    virtual void OnDrawLegend(CDC&) {}
    /// With `vars` null, the number of options that the class declares; otherwise initialises at most `*count`. A
    /// derived class adds its own behind those of its base.
    virtual void GetOptionsList(SPMVar* vars, unsigned* count);
    /// Bracket each batch of changes of options.
    virtual void BeginEditOptions() {}
    virtual void EndEditOptions() {}
    virtual void updateText() {}
    virtual bool ForceFullscreenStretchMode() { return false; }

    // Options
    /// \param third  not used
    template <class View>
    void AddOptionHandler(const std::string& name, void (View::*handler)(const SPMVar&), int third = 0);
    /// Declares all options with what the profile holds. With a pattern (a regular expression), only those whose name
    /// it finds, and without defaults: what is there stays when the profile holds nothing.
    void LoadOptions(const char* pattern);
    void SaveOptions();
    bool ShowOptionsDlgWithInterface(const char* name);
    void toggle_option(const char* name);
    /// Stamps and stores a copy with this text. \return false for an unknown name or unusable text
    bool setOption(const char* name, const char* text);

    // Geometry
    int xsrc2clnt(int x) const noexcept { return geometry().xToClient(x); }
    int ysrc2clnt(int y) const noexcept { return geometry().yToClient(y); }
    int xclnt2src(int x) const noexcept { return geometry().xToSource(x); }
    int yclnt2src(int y) const noexcept { return geometry().yToSource(y); }
    void src2clnt(CPoint* points, int count) const noexcept;
    void clnt2src(CPoint* points, int count) const noexcept;
    void UpdateDisplayRect();
    /// The first hint 0 is over: what the view shows is that of its document.
    bool isOpened() const noexcept { return hasOpened; }
    void AdjustContentSize(CSize& size) { size = vldv::view::repaired_content(size); }
    /// Gives the view a display of this size, with its frame around it, as far as the frame may change.
    void AdjustParentSize(int cx, int cy, bool adjustContent);
    /// Twice the monitors together: no change by itself makes a display larger.
    static CSize largestDisplay();
    /// A display of this size, or one of its shape that leaves the frame inside the main window's area.
    CSize fittingArea(CSize display) const;
    /// Moves the frame back into that area.
    void bringFrameInside();
    /// Moves a window beside this view's frame. \param step  offset in caption heights
    void PositionWindowNearby(CWnd* window, int step, LegendOffset offset);

    /// Draws a line of legend at `point` and moves the point on. In `format` C stands for a wide text, c for a narrow
    /// one, d for a number ("%lG"); other characters for themselves.
    template <class... Arguments>
    void DrawLegendText(CDC* dc, CPoint& point, LegendOffset offset, const wchar_t* format,
                        const Arguments&... arguments)
    {
        drawLegendLine(*dc, point, offset, format, {vldv::legend_argument(arguments)...});
    }
    void DrawView(CDC* dc) { OnDraw(*dc); }
    void UpdateView(CView* sender, std::uint32_t hint, const vldv::hint_object& object)
    {
        OnUpdate(sender, hint, object);
    }
    /// In the status bar of the main window.
    void SetMessageText(const std::wstring& text);
    /// In the status bar, what stands under the pointer: it goes with the pointer, and when the view shows something
    /// else there, stops being the active one or closes.
    void setPlaceText(const std::wstring& text);
    void forgetPlace();

    std::span<std::byte> GetBits() const noexcept { return image.bits(); }
    const BITMAPINFOHEADER& GetBIH() const noexcept { return image.header(); }
    CDC* GetMemDC() const noexcept { return image.dc(); }

    /// The view is being drawn for paper now: pens are thin, and nothing is started that repaints the window.
    bool isPrinting() const noexcept { return printing; }
    /// Maps the client area onto the page within the margins, keeping its shape.
    void OnPrepareDC(CDC& dc, bool toPaper);

    // Framework
    void OnUpdate(CView* sender, std::uint32_t hint, const vldv::hint_object& object) override;
    void OnInitialUpdate() override;
    void OnDraw(CDC& dc) override;
    bool OnEraseBkgnd(CDC& dc) override;
    bool isFullScreen() const noexcept override { return fullscreenOn; }
    void OnSize(CSize size) override;
    bool OnMouseWheel(unsigned flags, int delta, CPoint point) override;
    void OnMouseMove(unsigned flags, CPoint point) override;
    void OnMouseLeave() override { forgetPlace(); }
    void OnActivateView(bool activates, CView* entered, CView* left) override;
    void OnLButtonDblClk(unsigned flags, CPoint point) override;
    /// Esc and Ctrl+F leave full screen; "+", "-" and "0" zoom.
    bool OnKeyDown(unsigned key) override;
    bool OnCmdMsg(unsigned id, CCmdUI* ui) override;
    void OnFireVariableChange(int index, const SPMVarList* list) override;
    void OnCommandMessage(const char* id, CVarListDlg* dialog) override;
    /// The user closes a view that fills the screen: it goes back into its frame.
    void OnClose() override;

    /// An option that the view has: a build with assertions stops at a name that no row declares.
    const SPMVar& option(const char* name) const;
    bool isOptionOn(const char* name) const { return static_cast<bool>(option(name)); }
    int intOption(const char* name) const { return static_cast<int>(option(name)); }
    double doubleOption(const char* name) const { return static_cast<double>(option(name)); }
    colorEntry colorOption(const char* name) const { return static_cast<colorEntry>(intOption(name)); }

    static CRect rtMargin; ///< of printed pages, thousandths of an inch

    CRect displayRect; ///< client area without the margins: where data are shown
    CRect sourceRect;  ///< part of the data on show, samples
    VLDIBImage image;
    bool fullscreenOn = false;
    SPMVarList options;

protected:
    void oh_invalidate(const SPMVar& changed);
    void oh_margin(const SPMVar& changed);
    void oh_toolbar(const SPMVar& changed);
    void oh_text_create_font(const SPMVar& changed);

    void OnShowLegend() { toggle_option("ShowLegend"); }
    void OnUpdateShowLegend(CCmdUI& ui) { ui.SetCheck(isOptionOn("ShowLegend")); }
    void OnEditCopy();
    void OnEditCopytext();
    void OnEditAddtext();
    void OnFilePrint();
    void OnFilePrintDirect();
    void OnFilePrintPreview();
    void OnViewPreferences();
    void OnViewActualpixels();
    void OnUpdateViewActualpixels(CCmdUI& ui);
    void OnFullScreen() { SwitchFullScreen(); }

    /// Options that go to the profile as soon as they change.
    std::set<std::string> instantSaveOptions;
    /// Options of the moment, which the profile does not keep.
    std::set<std::string> unsavedOptions;
    /// Options that are declared and kept but change nothing: the dialog does not offer them.
    std::set<std::string, std::less<>> idleOptions;
    CFont font;

private:
    struct full_screen_memory {
        CRect window; ///< in client coordinates of the parent
        CSize source;
    };
    vldv::view::view_geometry geometry() const noexcept { return {displayRect, sourceRect}; }
    std::vector<SPMVar> declaredOptions();
    void storeChanged(const std::vector<SPMVar>& changed);
    void storeOptions(std::vector<SPMVar>& changed, bool tellsAll);
    void drawLegendLine(CDC& dc, CPoint& point, LegendOffset offset, const wchar_t* format,
                        std::initializer_list<vldv::legend_argument> arguments);
    void createImage(bool keepDepth);
    CSize marginSize() const;
    vldv::print_job printJob(bool asks);
    bool zoomByKey(unsigned key);
    void enterFullScreen();
    void leaveFullScreen();
    void restoreDefaults();
    void loadOptionsFile();
    void saveOptionsFile();

    std::map<std::string, std::function<void(const SPMVar&)>, std::less<>> optionHandlers;
    full_screen_memory beforeFullScreen;
    static const CDCView* placeInStatus; ///< of which the status bar tells what is under the pointer; or null
    CRect titledRect, titledSource;      ///< display and source whose zoom stands in the title
    bool hasOpened = false, loadingOptions = false, printing = false, storedDefaults = false;
};

template <class View>
void CDCView::AddOptionHandler(const std::string& name, void (View::*handler)(const SPMVar&), int)
{
    optionHandlers[name] = [this, handler](const SPMVar& changed) { (static_cast<View*>(this)->*handler)(changed); };
}
