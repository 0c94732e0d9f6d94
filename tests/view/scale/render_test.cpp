// The fast drawing against its definition, bit for bit, and the definition against numbers by hand.
#include "view/scale/render.h"
#include "view/scale/render_step.h"

#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace {

constexpr std::uint8_t untouched = 0x5a;

/// One picture to draw, with its own copies of all that a drawing may change.
struct drawing {
    IppiSize size{1, 1};
    int padding = 0; ///< samples between rows
    std::vector<std::int16_t> samples;
    view::scale_state state;
    int palette = 3;
    VLAxis zAxis{0.0, 1.0, "nm"};
    bool absolute = false, highlight = false, rgb32 = true, hasRoi = false;
    RECT roi{};
};

struct drawn {
    std::vector<std::uint8_t> pixels;
    int low = -1, high = -1;
    RECT roi{};
    double start = 0, span = 0;
    std::string units;
    bool operator==(const drawn&) const = default;
};

template <class Render>
drawn draw(const drawing& source, Render render)
{
    view::scale_state state = source.state;
    drawn result;
    result.roi = source.roi;
    const std::size_t stride = view::picture_stride(source.size.width, source.rgb32);
    result.pixels.assign(stride * static_cast<std::size_t>(source.size.height) + 7, untouched);
    render(state, view::built_in_palette(source.palette),
           view::render_request{result.pixels.data(), source.samples.data(), (source.size.width + source.padding) * 2,
                                source.size, &source.zAxis, source.absolute, source.highlight,
                                source.hasRoi ? &result.roi : nullptr, source.rgb32, &result.low, &result.high});
    result.start = state.fixedStart;
    result.span = state.fixedSize;
    result.units = state.fixedUnits;
    EXPECT_EQ(state.autoScaling, source.state.autoScaling);
    return result;
}

drawn draw_fast(const drawing& source) { return draw(source, view::render_image); }
drawn draw_reference(const drawing& source) { return draw(source, view::render_reference); }

class drawing_maker {
public:
    explicit drawing_maker(unsigned seed) : random(seed) {}

    drawing next()
    {
        drawing out;
        const int sizes[] = {1, 2, 3, 16, 63, 64, 65, 130, 257};
        out.size = {sizes[pick(9)], sizes[pick(7)]};
        out.padding = static_cast<int>(pick(4));
        fill(out);
        out.palette = static_cast<int>(pick(8));
        out.state.autoScaling = static_cast<int>(pick(4));
        out.state.inverse = pick(2);
        out.state.disableScaleCheck = pick(4) == 0;
        set_window(out);
        out.absolute = pick(2);
        out.highlight = pick(4) == 0;
        out.rgb32 = pick(2);
        out.hasRoi = pick(3) == 0;
        for (std::int32_t* side : {&out.roi.left, &out.roi.top, &out.roi.right, &out.roi.bottom})
            *side = static_cast<int>(pick(300)) - 20;
        return out;
    }

private:
    unsigned pick(unsigned count) { return static_cast<unsigned>(random() % count); }

    void fill(drawing& out)
    {
        out.samples.resize(static_cast<std::size_t>(out.size.width + out.padding) *
                           static_cast<std::size_t>(out.size.height));
        const unsigned spans[] = {1, 2, 3, 34, 102, 255, 256, 510, 1530, 40000, 65536};
        const unsigned span = spans[pick(11)];
        const int base = static_cast<int>(pick(65536 - span + 1)) - 32768;
        for (auto& sample : out.samples) sample = static_cast<std::int16_t>(base + static_cast<int>(pick(span)));
        if (pick(5) == 0) out.samples[pick(static_cast<unsigned>(out.samples.size()))] = 32767;
        if (pick(5) == 0) out.samples[pick(static_cast<unsigned>(out.samples.size()))] = -32768;
    }

    void set_window(drawing& out)
    {
        const double numbers[] = {0, 1, -1, 0.1, -250.25, 33000, 1e9, -1e12, 70000};
        const double scales[] = {1, 0.01, -0.5, 1e-9, 0, std::numeric_limits<double>::quiet_NaN()};
        out.state.fixedStart = numbers[pick(9)];
        out.state.fixedSize = numbers[pick(9)];
        out.state.relativeMeanOffset = numbers[pick(9)];
        const char* units[] = {"nm", "µm", "V"};
        out.state.fixedUnits = units[pick(3)];
        out.zAxis = VLAxis(numbers[pick(5)], scales[pick(6)], "nm");
    }

    std::mt19937 random;
};

TEST(Render, EqualsItsDefinitionInEveryBit)
{
    drawing_maker make(20261);
    for (int round = 0; round < 4000; ++round) {
        const drawing source = make.next();
        drawn fast = draw_fast(source), reference = draw_reference(source);
        if (std::isnan(reference.start) && std::isnan(fast.start)) fast.start = reference.start = 0;
        if (std::isnan(reference.span) && std::isnan(fast.span)) fast.span = reference.span = 0;
        ASSERT_EQ(fast.low, reference.low) << round;
        ASSERT_EQ(fast.high, reference.high) << round;
        ASSERT_EQ(fast.roi, reference.roi) << round;
        ASSERT_EQ(fast.pixels, reference.pixels) << "round " << round << " mode " << source.state.autoScaling;
        ASSERT_EQ(fast, reference) << round;
    }
}

drawing one_row(std::vector<std::int16_t> samples)
{
    drawing out;
    out.size = {static_cast<int>(samples.size()), 1};
    out.samples = std::move(samples);
    out.palette = 1; // gray: a byte is its own colour but 255, which is (254 + 255 + 1) / 2
    return out;
}

std::vector<int> gray_of(const drawn& picture, std::size_t count)
{
    std::vector<int> levels;
    for (std::size_t i = 0; i < count; ++i) levels.push_back(picture.pixels[4 * i]);
    return levels;
}

TEST(Render, MapsTheRangeToAllColours)
{
    const drawn picture = draw_reference(one_row({0, 1, 2, 3, 4})); // 255 / 4 a step: 63.75, 127.5 to even, 191.25
    EXPECT_EQ(gray_of(picture, 5), (std::vector<int>{0, 64, 128, 191, 255}));
    EXPECT_EQ(picture.low, 0);
    EXPECT_EQ(picture.high, 4);
    EXPECT_EQ(picture.pixels[3], untouched) << "the fourth byte";
    const drawn flat = draw_reference(one_row({7, 7}));
    EXPECT_EQ(gray_of(flat, 2), (std::vector<int>{0, 0}));
    EXPECT_EQ(flat.low, flat.high);
}

TEST(Render, TheTopColourIsTheMeanOfTheTwoLastPlanes)
{
    drawing source = one_row({0, 1});
    source.palette = 6; // planes 254 and 255 of 1024 entries: index round(254 * 1023 / 255) = 1019 and 1023
    const drawn picture = draw_reference(source);
    EXPECT_EQ(picture.pixels[4], 253) << "blue: (251 + 255) / 2";
    source.state.inverse = true; // the planes end in entries 4 and 0: blue 4 and 0
    EXPECT_EQ(draw_reference(source).pixels[4], 2);
    EXPECT_EQ(draw_reference(source).pixels[0], 255) << "inverse starts with the last entry";
}

TEST(Render, FixedWindowsAreRepairedWhenTheyDoNotSuit)
{
    struct window {
        double size;
        double offset;
        bool disabled, kept;
    };
    // The data span 100 nm.
    for (const window& each :
         {window{200 * 100, 0, false, true}, window{300 * 100, 0, false, false}, window{300 * 100, 0, true, true},
          window{0.5, 10, false, true}, window{0.3, 10, false, false}, window{50, 100, false, false},
          window{50, -50, false, false}, window{50, -49, false, true}}) {
        drawing source = one_row({0, 10000});
        source.zAxis = VLAxis(5.0, 0.01, "nm");
        source.state.autoScaling = view::fixedScale;
        source.state.fixedSize = each.size;
        source.state.relativeMeanOffset = each.offset;
        source.state.disableScaleCheck = each.disabled;
        const drawn picture = draw_reference(source);
        EXPECT_EQ(picture.span, each.kept ? each.size : 100.0) << each.size << " " << each.offset;
        EXPECT_EQ(picture.low, each.kept ? each.offset * 100 : 0) << each.size << " " << each.offset;
    }
}

TEST(Render, FixedWindowsConvertTheirUnits)
{
    drawing source = one_row({0, 1000});
    source.zAxis = VLAxis(-2.0, 0.01, "nm"); // the data lie between -2 and 8 nm
    source.state.autoScaling = view::fixedScale;
    source.state.fixedUnits = "µm";
    source.state.fixedStart = 0.001;
    source.state.fixedSize = 0.004;
    source.absolute = true;
    drawn picture = draw_reference(source);
    EXPECT_EQ(picture.low, 300);
    EXPECT_EQ(picture.high, 700);
    source.state.fixedUnits = "V";
    picture = draw_reference(source);
    EXPECT_EQ(picture.units, "nm");
    EXPECT_DOUBLE_EQ(picture.start, -2.0);
    EXPECT_DOUBLE_EQ(picture.span, 10.0);
}

TEST(Render, HighlightShowsTheSlopeInModeOne)
{
    drawing source = one_row({0, 100, 50, 50});
    source.highlight = true;
    source.state.autoScaling = view::fixedScale;
    const drawn picture = draw_reference(source); // 100, -50, 0 and 0 at the border
    EXPECT_EQ(picture.low, -50);
    EXPECT_EQ(picture.high, 100);
    EXPECT_EQ(gray_of(picture, 4), (std::vector<int>{255, 0, 85, 85}));
    EXPECT_EQ(picture.start, -500.0) << "the window is left alone";
    source.samples = {-32768, 32767, -32768, 0};
    EXPECT_EQ(draw_reference(source).high, 32767) << "saturated";
    EXPECT_EQ(draw_reference(source).low, -32768);
}

TEST(Render, LinesHaveLimitsOfTheirOwn)
{
    drawing source;
    source.size = {3, 3};
    source.samples = {0, 1, 2, 50, 50, 50, -3, 0, 6};
    source.palette = 1;
    source.state.autoScaling = view::perLine;
    source.hasRoi = true; // has no effect on the mapping
    source.roi = {2, 2, 0, 0};
    drawn picture = draw_reference(source);
    EXPECT_EQ(gray_of(picture, 9), (std::vector<int>{0, 128, 255, 0, 0, 0, 0, 85, 255}));
    EXPECT_EQ(picture.low, 16) << "(0 + 50 - 3) / 3 = 15.67";
    EXPECT_EQ(picture.high, 19) << "(2 + 50 + 6) / 3 = 19.33";
    EXPECT_EQ(picture.roi, (RECT{0, 0, 2, 2})) << "crossed corners are put in order";
    source.state.autoScaling = view::perLinePlanefit;
    source.samples = {10, 20, 31, 5, 5, 5, 0, 300, 0};
    picture = draw_reference(source);
    // Row 0: the fit has slope 10.5 and leaves 1/6, -1/3, 1/6; row 2 leaves -100, 200, -100.
    EXPECT_EQ(gray_of(picture, 3), (std::vector<int>{255, 0, 255}));
    EXPECT_EQ(picture.pixels[4 * 7], 255);
    EXPECT_EQ(picture.low, -33) << "(0 + 0 - 100) / 3 = -33.3";
    EXPECT_EQ(picture.high, 67) << "(0 + 0 + 200) / 3 = 66.7";
}

TEST(Render, FailedAllocationsNameTheirPlace)
{
    static int allowed;
    const auto limited = [](std::size_t bytes) { return allowed-- > 0 ? std::aligned_alloc(64, bytes) : nullptr; };
    drawing source = one_row({1, 2, 3});
    source.highlight = true;
    const int positions[] = {753, 767, 769, 796, 803, 956};
    view::set_temporary_allocator(limited);
    for (int i = 0; i < 6; ++i) {
        allowed = i;
        try {
            draw_reference(source);
            ADD_FAILURE() << i;
        } catch (const std::runtime_error& failure) {
            EXPECT_EQ(std::string(failure.what()),
                      "Scale (" + std::to_string(positions[i]) +
                          "):  runtime error: Zero pointer exception in function: CScale::DrawImage\r\n");
        }
    }
    for (int i = 0; i < 3; ++i) { // colours, a row of bytes, a row of the derivative
        allowed = i;
        EXPECT_THROW(draw_fast(source), std::runtime_error) << i;
    }
    view::set_temporary_allocator(nullptr);
}

TEST(RangeKeeper, LeavesOutWhatWasNotMeasured)
{
    const std::int16_t image[] = {1, 90, 3,  4, //
                                  5, 80, 70, 8, //
                                  9, 10, 11, 12};
    const primitives::sample_run voids[] = {{1, 1}, {5, 2}};
    const struct {
        CRect part;
        std::span<const primitives::sample_run> left;
        primitives::height_range range;
    } cases[] = {
        {{0, 0, 4, 3}, voids, {1, 12}},
        {{1, 0, 3, 2}, voids, {3, 3}},
        {{1, 1, 3, 2}, voids, {70, 80}}, // nothing else
        {{1, 0, 3, 2}, {}, {3, 90}},
    };
    for (const auto& each : cases) EXPECT_EQ(view::range_keeper().of(image, 4, each.part, each.left), each.range);
}

} // namespace
