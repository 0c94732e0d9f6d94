#pragma once
#include "base/text.h"
#include "platform/draw/DC.h"

#include <string>
#include <utility>
#include <vector>

/// One operation that reached a drawing surface, with the tools that it used.
struct drawn {
    enum class kind { lines, outline, polygons, rectangle, ellipse, region, pixels, pixel, text, rim };
    kind what;
    std::vector<CPoint> points; ///< lines: the points; polygons: of all figures; text: left end of the baseline
    CRect box;                  ///< of a shape, region or blit; of a text: its line box
    std::string text;
    platform::dc_state tools;
    CBrush brush;       ///< of a filled region
    colorEntry color{}; ///< of a pixel
    raster_op3 operation = SRCCOPY;
};

/// A drawing surface that keeps the list of what was drawn. Every character is 6 pixels wide and a line 12 high, 10 of
/// them above the baseline, whatever the font.
class RecordingDC : public CDC {
public:
    static constexpr int characterWidth = 6, lineHeight = 12, ascent = 10;

    explicit RecordingDC(CSize size_ = {1000, 1000}) : size(size_) {}

    std::unique_ptr<CDC> CreateCompatibleDC() override { return std::make_unique<RecordingDC>(CSize{}); }
    CSize dotsPerInch() const override { return {96, 96}; }
    CSize deviceSize() const override { return selectedBitmap() ? CDC::deviceSize() : size; }

    /// The operations of one kind, in order.
    std::vector<drawn> all(drawn::kind what) const
    {
        std::vector<drawn> out;
        for (const drawn& operation : operations)
            if (operation.what == what) out.push_back(operation);
        return out;
    }

    std::vector<drawn> operations;

protected:
    void strokeLines(std::span<const CPoint> points, bool closed) override
    {
        add(closed ? drawn::kind::outline : drawn::kind::lines).points.assign(points.begin(), points.end());
    }
    void paintPolygons(std::span<const std::vector<CPoint>> figures) override
    {
        drawn& operation = add(drawn::kind::polygons);
        for (const std::vector<CPoint>& figure : figures)
            operation.points.insert(operation.points.end(), figure.begin(), figure.end());
    }
    void paintRectangle(const CRect& rect) override { add(drawn::kind::rectangle).box = rect; }
    void paintEllipse(const CRect& rect) override { add(drawn::kind::ellipse).box = rect; }
    void fillRegion(const CRgn& region, const CBrush& brush, raster_op3 operation) override
    {
        drawn& filled = add(drawn::kind::region);
        filled.box = region.GetRgnBox();
        filled.brush = brush;
        filled.operation = operation;
    }
    void drawPixels(const CRect& to, const CBitmap&, const CRect&, raster_op3 operation) override
    {
        drawn& blit = add(drawn::kind::pixels);
        blit.box = to;
        blit.operation = operation;
    }
    void drawPixel(CPoint point, colorEntry color) override
    {
        drawn& pixel = add(drawn::kind::pixel);
        pixel.points = {point};
        pixel.color = color;
    }
    void drawText(int left, int baseline, std::wstring_view text) override
    {
        drawn& run = add(drawn::kind::text);
        run.points = {{left, baseline}};
        run.box = CRect({left, baseline - ascent}, CSize{textWidth(text), lineHeight});
        run.text = base::narrow(text);
    }
    void drawTextRim(int left, int baseline, std::wstring_view text) override
    {
        drawText(left, baseline, text);
        operations.back().what = drawn::kind::rim;
    }
    int textWidth(std::wstring_view text) const override { return characterWidth * static_cast<int>(text.size()); }
    TEXTMETRIC fontMetrics() const override
    {
        return {.tmHeight = lineHeight,
                .tmAscent = ascent,
                .tmDescent = lineHeight - ascent,
                .tmAveCharWidth = characterWidth};
    }

private:
    drawn& add(drawn::kind what)
    {
        operations.push_back({.what = what,
                              .points = {},
                              .box = {},
                              .text = {},
                              .tools = state(),
                              .brush = {},
                              .color = 0,
                              .operation = SRCCOPY});
        return operations.back();
    }

    CSize size;
};
