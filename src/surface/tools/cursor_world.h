#pragma once
#include "base/VLAxis.h"
#include "document/update_hints.h"
#include "platform/draw/Region.h"
#include "surface/figures/drawing_axes.h"
#include "surface/figures/sample_frame.h"
#include "surface/tools/tool_pointer.h"
#include "view/axes/view_geometry.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

class CView;

namespace vldv {
class ISection;
}

namespace vldv::surface {

/// Where a volume shows its curve, as fractions of its sides.
struct volume_mark {
    CView* view = nullptr;
    CSize size; ///< columns and rows of the volume
    double x = 0.0, y = 0.0;
};

using enum document::feature_hint; // what the machine tells, with a point of the source

/// The view around a cursor machine, as far as the machine needs it. Points are samples of the image unless they are
/// called client points. Each answer is that of the moment.
class ICursorWorld {
public:
    // What is shown
    virtual sample_frame frame() const = 0;
    virtual view::view_geometry geometry() const = 0;
    virtual const VLAxis& axisX() const = 0; ///< as the options choose
    virtual const VLAxis& axisY() const = 0;
    /// The number of a choice, 1 or 0 of a truth, else the value.
    virtual double option(const char* name) const = 0;
    /// The drawings of the image, or null.
    virtual const document::decorations* decorations() const = 0;
    virtual drawing_axes drawingAxes() const = 0;
    /// Sections on this image and, as "SelectionSynchr" says, on similar ones, in the order of the document's views.
    virtual std::vector<ISection*> sections() const = 0;
    /// The document's first line profile, when it lies on this image; or null.
    virtual ISection* firstLine() const = 0;
    virtual std::optional<volume_mark> volumeMark() const = 0;
    /// Size of a text in the legend's font, and the height of its baseline.
    virtual CSize textExtent(std::wstring_view text) const = 0;
    virtual int textAscent() const = 0;
    virtual bool marksNumbered() const = 0;
    virtual int marksStyle() const = 0;

    // Mouse and keyboard
    virtual bool isKeyDown(unsigned key) const = 0; ///< \param key  a `key_code`
    /// Client point of the pointer while it is inside the client area.
    virtual std::optional<CPoint> pointer() const = 0;
    virtual void setCapture(bool on) = 0;
    virtual void setCursor(const tool_pointer& shown) = 0;
    virtual void showWait(bool on) = 0; ///< what follows takes long

    // What the machine causes
    virtual void invalidate(const CRgn& region, bool erase) = 0; ///< client pixels
    virtual void invalidateAll() = 0;                            ///< with erase
    /// Shows another part of the image and renders it.
    virtual void setSourceWindow(const CRect& window) = 0;
    virtual void showStatus(CPoint source) = 0;    ///< what `GetMouseText` says of the point
    virtual void showNotice(const char* text) = 0; ///< in the same place, in UTF-8
    virtual void rebuildStatistics() = 0;
    virtual void sendHint(std::uint32_t code, CPoint point) = 0; ///< to all views of the document, for this image
    /// Sends a hint to the view that enumerates features; nothing where there is none.
    virtual void sendToFeatures(std::uint32_t code, CPoint point) = 0;
    /// Flips the selected bit of one decoration and has all views redraw.
    /// \param group, member  the group's position among the groups in order of their keys, and the place in it
    virtual void toggleDecoration(std::size_t group, std::size_t member) = 0;
    /// A section through the points, or a profile of a row or column, in a frame of its own beside the others.
    virtual void openSection(std::span<const CPoint> points) = 0;
    virtual void openLine(CPoint from, CPoint to) = 0;
    /// Makes the section's view the document's first and shows it in front.
    virtual void bringToFront(ISection& section) = 0;
    virtual void beginVolumeDrag() = 0;
    virtual void moveVolumeMark(double x, double y) = 0; ///< and shows the curve there
    virtual void endVolumeDrag() = 0;
    /// Other surfaces of the document with similar images take the selection over.
    virtual void shareSelection() = 0;
    virtual void refreshZoomWindow() = 0; ///< nothing while there is none
    /// Keeps a traced object with the image, see `lengthy_mask`.
    virtual void storeLengthyObject(std::span<const CPoint> path) = 0;

protected:
    ~ICursorWorld() = default;
};

} // namespace vldv::surface
