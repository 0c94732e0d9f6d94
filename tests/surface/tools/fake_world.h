#pragma once
#include "platform/app/keys.h"
#include "surface/overlay/overlay_geometry.h"
#include "surface/tools/cursor_machine.h"
#include "view/ImageView.h"
#include "view/image/SectionSource.h"

#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <set>

/// A section that only keeps its points.
struct FakeSection : ISection {
    CImageView view;
    CSize size;
    std::vector<CPoint> points;
    bool line = false, horizontal = false;
    int reloads = 0;

    explicit FakeSection(CSize size_, std::vector<CPoint> points_) : size(size_), points(std::move(points_)) {}
    CImageView& sectionView() override { return view; }
    CSize sourceSize() const override { return size; }
    unsigned getPointsNumber() const override { return static_cast<unsigned>(points.size()); }
    CPoint getSectionPoint(unsigned index) const override { return points[index]; }
    void setSectionPoint(unsigned index, CPoint point) override { points.at(index) = point; }
    bool isLine() const override { return line; }
    bool isHorizontal() const override { return horizontal; }
    void reloadSection() override { ++reloads; }
    void drawOn(CImageView&, CDC&, int, int, const CPen&, const CPen&, bool) override {}
};

/// An image of 60 by 40 samples of 10 by 10 pixels at (100, 50), flat at first, 2 nm a column and 3 nm a row.
struct FakeWorld : surface::ICursorWorld {
    CSize size{60, 40};
    CRect window{0, 0, 60, 40};
    std::vector<std::int16_t> samples = std::vector<std::int16_t>(60 * 40);
    VLAxis x{0, 2, "nm"}, y{0, 3, "nm"};
    std::map<std::string, double> options{{"section.line.solid.width", 1},
                                          {"text.compact_length", 14},
                                          {"SelectionSynchr", 1},
                                          {"SelectionFill", 2},
                                          {"cursor_snap.radius", 10}};
    document::decorations drawings;
    std::vector<ISection*> shown;
    ISection* line = nullptr;
    std::optional<surface::volume_mark> volume;
    std::set<unsigned> keys;
    CPoint at;

    struct sent {
        std::uint32_t code;
        CPoint point;
        bool operator==(const sent&) const = default;
    };
    bool isCaptured = false;
    int cursor = 0, shares = 0, zooms = 0, statistics = 0, volumeDrags = 0, waits = 0;
    std::vector<sent> hints, features;
    std::vector<std::vector<CPoint>> openedLines, objects;
    std::vector<std::pair<std::size_t, std::size_t>> toggled;
    std::vector<ISection*> fronted;
    std::vector<CPoint> status;
    std::optional<CPoint> unmeasured; ///< the sample without a height
    mutable std::vector<primitives::sample_run> hole;
    std::vector<std::string> notices;
    CRgn repainted;

    std::int16_t& sample(int column, int row) { return samples[static_cast<std::size_t>(row * size.cx + column)]; }
    CPoint client(CPoint source) const { return surface::to_client(source, geometry()); }

    surface::sample_frame frame() const override
    {
        surface::sample_frame whole{samples, size.cx, size.cy};
        hole.clear();
        if (unmeasured) hole.push_back({whole.index(*unmeasured), 1});
        whole.unmeasured = hole;
        return whole;
    }
    view::view_geometry geometry() const override { return {CRect(100, 50, 700, 450), window}; }
    const VLAxis& axisX() const override { return x; }
    const VLAxis& axisY() const override { return y; }
    double option(const char* name) const override
    {
        const auto found = options.find(name);
        return found == options.end() ? 0.0 : found->second;
    }
    const document::decorations* decorations() const override { return &drawings; }
    surface::drawing_axes drawingAxes() const override { return {x, y}; }
    std::vector<ISection*> sections() const override { return shown; }
    ISection* firstLine() const override { return line; }
    std::optional<surface::volume_mark> volumeMark() const override { return volume; }
    CSize textExtent(std::wstring_view text) const override { return {static_cast<int>(text.size()) * 6, 12}; }
    int textAscent() const override { return 10; }
    bool marksNumbered() const override { return true; }
    int marksStyle() const override { return 0; }
    bool isKeyDown(unsigned key) const override { return keys.contains(key); }
    std::optional<CPoint> pointer() const override { return at; }
    void setCapture(bool on) override { isCaptured = on; }
    void setCursor(const surface::tool_pointer& pointer_) override { cursor = pointer_.number; }
    void showWait(bool on) override { waits += on; }
    void invalidate(const CRgn& region, bool) override { repainted.CombineRgn(repainted, region, RGN_OR); }
    void invalidateAll() override {}
    void setSourceWindow(const CRect& window_) override { window = window_; }
    void showStatus(CPoint source) override { status.push_back(source); }
    void showNotice(const char* text) override { notices.push_back(text); }
    void rebuildStatistics() override { ++statistics; }
    void sendHint(std::uint32_t code, CPoint point) override { hints.push_back({code, point}); }
    void sendToFeatures(std::uint32_t code, CPoint point) override { features.push_back({code, point}); }
    void toggleDecoration(std::size_t group, std::size_t member) override { toggled.push_back({group, member}); }
    void openSection(std::span<const CPoint>) override {}
    void openLine(CPoint from, CPoint to) override { openedLines.push_back({from, to}); }
    void bringToFront(ISection& section) override { fronted.push_back(&section); }
    void beginVolumeDrag() override { ++volumeDrags; }
    void moveVolumeMark(double fractionX, double fractionY) override
    {
        volume->x = fractionX;
        volume->y = fractionY;
    }
    void endVolumeDrag() override { --volumeDrags; }
    void shareSelection() override { ++shares; }
    void refreshZoomWindow() override { ++zooms; }
    void storeLengthyObject(std::span<const CPoint> path) override { objects.emplace_back(path.begin(), path.end()); }
};

/// A user with a mouse over such a world. Points are samples.
class CursorTest : public testing::Test {
protected:
    surface::selection_state state;
    FakeWorld world;
    surface::cursor_machine machine{state, world};

    void choose(surface::cursor_mode mode) { machine.setMode(static_cast<int>(mode)); }
    void hover(CPoint at, unsigned flags = 0)
    {
        world.at = world.client(at);
        machine.move(flags, world.at);
    }
    /// Over the point, then the button down.
    void press(CPoint at, unsigned flags = 0)
    {
        hover(at, flags);
        machine.press(flags | MK_LBUTTON, world.at);
    }
    void drag(CPoint at, unsigned flags = 0)
    {
        world.at = world.client(at);
        machine.move(flags | MK_LBUTTON, world.at);
    }
    void release(CPoint at, unsigned flags = 0)
    {
        world.at = world.client(at);
        machine.release(flags, world.at);
    }
    void draw(CPoint from, CPoint to, unsigned flags = 0)
    {
        press(from, flags);
        drag(to, flags);
        release(to, flags);
    }
    void click(CPoint at, unsigned flags = 0) { draw(at, at, flags); }
    CRect box() const { return state.region.GetRgnBox(); }
    void raise(const CRect& part, std::int16_t height = 100)
    {
        for (int row = part.top; row < part.bottom; ++row)
            for (int column = part.left; column < part.right; ++column) world.sample(column, row) = height;
    }
};
