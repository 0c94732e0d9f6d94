#pragma once
#include "surface/tools/cursor_world.h"

class CSurfMathView;

namespace vldv::surface {

/// A surface view and its document as the world of a cursor machine.
class view_world final : public ICursorWorld {
public:
    /// \param view_  outlives this
    explicit view_world(CSurfMathView& view_) noexcept : view(view_) {}

    // What is shown
    sample_frame frame() const override;
    view::view_geometry geometry() const override;
    const VLAxis& axisX() const override;
    const VLAxis& axisY() const override;
    double option(const char* name) const override;
    const document::decorations* decorations() const override;
    drawing_axes drawingAxes() const override;
    std::vector<ISection*> sections() const override;
    ISection* firstLine() const override;
    std::optional<volume_mark> volumeMark() const override;
    CSize textExtent(std::wstring_view text) const override;
    int textAscent() const override;
    bool marksNumbered() const override;
    int marksStyle() const override;

    // Mouse and keyboard
    bool isKeyDown(unsigned key) const override;
    std::optional<CPoint> pointer() const override;
    void setCapture(bool on) override;
    void setCursor(const tool_pointer& shown) override;
    void showWait(bool on) override;

    // What the machine causes
    void invalidate(const CRgn& region, bool erase) override;
    void invalidateAll() override;
    void setSourceWindow(const CRect& window) override;
    void showStatus(CPoint source) override;
    void showNotice(const char* text) override;
    void rebuildStatistics() override;
    void sendHint(std::uint32_t code, CPoint point) override;
    void sendToFeatures(std::uint32_t code, CPoint point) override;
    void toggleDecoration(std::size_t group, std::size_t member) override;
    void openSection(std::span<const CPoint> points) override;
    void openLine(CPoint from, CPoint to) override;
    void bringToFront(ISection& section) override;
    void beginVolumeDrag() override;
    void moveVolumeMark(double x, double y) override;
    void endVolumeDrag() override;
    void shareSelection() override;
    void refreshZoomWindow() override;
    void storeLengthyObject(std::span<const CPoint> path) override;

private:
    void openProfile(unsigned templateId, std::span<const CPoint> points);

    CSurfMathView& view;
};

} // namespace vldv::surface
