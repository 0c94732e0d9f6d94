#pragma once
#include "platform/app/keys.h"
#include "platform/draw/DC.h"
#include "vldv_api.h"

#include <memory>
#include <string>
#include <vector>

class CWnd;

namespace vldv {

struct toolbar_button;

/// What a window is for its host.
enum class window_kind {
    frame,   ///< a document's frame in the main window
    view,    ///< the pane of a frame
    text,    ///< a pane of text
    table,   ///< a pane with a table and a field to search in it
    grid,    ///< a pane with a table whose logic is an `IGridContent`
    child,   ///< a control inside another window
    overlay, ///< hidden at first, drawn over another window, which shows through and keeps mouse and focus
    popup,   ///< a window of its own
};

/// The host's side of a window. Sizes and points are logical pixels. A geometry request is carried out at once, as far
/// as the window system allows, so that it can be read back; the window is told of a new size once, after the handler
/// that runs now, and not at all for an equal size or while it is maximised.
class VLDV_API IWindowPeer {
public:
    virtual ~IWindowPeer() = default;

    /// Origin 0, 0.
    virtual CRect clientRect() const = 0;
    /// Outer rectangle in coordinates of the screen.
    virtual CRect windowRect() const = 0;
    /// Outer rectangle in client coordinates of the parent; of the screen without one.
    virtual void place(const CRect& rect) = 0;
    /// Size that a window needs for a client area of this size.
    virtual CSize outerSize(CSize client) const = 0;
    virtual CPoint clientToScreen(CPoint point) const = 0;
    virtual void show(bool on) = 0;
    virtual bool isVisible() const = 0;
    virtual bool isMinimized() const = 0;
    virtual bool isMaximized() const = 0;
    virtual void bringToFront() = 0;
    virtual void setTitle(const std::wstring& text) = 0;
    /// Tabs along the upper edge of a frame, 20 pixels high.
    virtual void setTabs(const std::vector<std::wstring>&, int, bool) {}
    /// Tools of a frame, below its tabs: a toolbar of the resources, none for 0, and the buttons that `added` makes
    /// behind them. \return its height
    virtual int setToolbar(unsigned, bool /*large*/, const std::vector<toolbar_button>& /*added*/) { return 0; }
    /// Content of a pane of text, and of a table with its headings in row 0. Of new rows none is selected.
    virtual void setText(const std::wstring&) {}
    virtual void setTable(const std::vector<std::vector<std::wstring>>&) {}
    /// What the user has selected in a pane of text: lines end in "\n"; empty without a selection.
    virtual std::wstring selectedText() const { return {}; }
    /// In a table: rows of cells, of the selected columns alone.
    virtual std::vector<std::vector<std::wstring>> selectedCells() const { return {}; }
    virtual void selectAll() {}
    /// In a grid: all is asked for again; the selection stays with its rows.
    virtual void gridChanged() {}
    /// Makes this row the only one that is selected and brings it into sight, without telling the view.
    virtual void showGridRow(std::size_t) {}
    /// In rising order.
    virtual std::vector<std::size_t> selectedGridRows() const { return {}; }
    /// Over all of a monitor without decoration, or back where it was.
    virtual void setFullScreen(bool on, const CRect& screenRect) = 0;

    /// The region, or all when null, is painted later; with `erase` the background too.
    virtual void invalidate(const CRgn* region, bool erase) = 0;
    /// Paints now what is invalid.
    virtual void update() = 0;
    /// A surface on the window outside of painting.
    virtual std::unique_ptr<CDC> clientDC() = 0;

    virtual void setCapture(bool on) = 0;
    virtual bool hasCapture() const = 0;
    virtual void setFocus() = 0;
    virtual bool hasFocus() const = 0;
    virtual void setCursor(cursor_shape shape) = 0;

    /// A repeating timer; setting it again starts it anew.
    virtual void setTimer(unsigned id, unsigned milliseconds) = 0;
    virtual void killTimer(unsigned id) = 0;
    /// Lets all timers that wait elapse now.
    virtual void flushTimers() = 0;
};

} // namespace vldv
