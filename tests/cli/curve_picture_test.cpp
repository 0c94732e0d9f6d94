// Pictures of curves that vldv writes. Windows open with 512 x 160 pixels for the curves, of which the first lies at
// (50, 10), 25 to their right and 45 below.
#include "picture_fixture.h"
#include "support/streams.h"

#include <regex>
#include <zlib.h>

namespace {

using test_support::made_stream;
using testing::Not;

constexpr short triangle[] = {0, 53, 159, 53, 0}; // as many steps as the pane has rows, less one

SPMDataStream curve(const char* id, const std::vector<short>& samples, unsigned subs = 1)
{
    return made_stream(
        id, {{static_cast<unsigned>(samples.size()) / subs, VLAxis(0, 3, "nm")}}, VLAxis(0, 1, "nm"),
        [&](unsigned i) { return samples[i]; }, subs);
}

/// The triangle in row 1, above and below nothing.
SPMDataStream ridge()
{
    return made_stream("Ridge", {{5, VLAxis(0, 3, "nm")}, {3, VLAxis(0, 3, "nm")}}, VLAxis(0, 1, "nm"),
                       [](unsigned i) { return i / 5 == 1 ? triangle[i % 5] : 0; });
}

/// The streams of a document, inflated.
std::string inflated(const std::string& pdf)
{
    std::string out;
    for (std::size_t at = pdf.find("stream\n"); at != std::string::npos; at = pdf.find("stream\n", at)) {
        at += 7;
        std::vector<unsigned char> plain(1 << 20);
        uLongf length = static_cast<uLongf>(plain.size());
        if (uncompress(plain.data(), &length, reinterpret_cast<const unsigned char*>(pdf.data() + at),
                       static_cast<uLong>(pdf.size() - at)) == Z_OK)
            out.append(reinterpret_cast<const char*>(plain.data()), length);
        at = pdf.find("endstream", at);
    }
    return out;
}

class CurvePictures : public PictureTest {
protected:
    void SetUp() override
    {
        write("t.spm", {curve("T", {std::begin(triangle), std::end(triangle)})});
        write("ridge.spm", {ridge()});
        SPMDataStream over = curve("Y", {0, 319, 0, 319}, 2);
        over.set_parameter_stream("X");
        write("pairs.spm", {over, curve("X", {0, 511})});
    }
    /// What a call draws as lines; empty where it fails.
    std::string svg(std::vector<std::string> call) const
    {
        std::filesystem::remove(folder / "p.svg");
        call.insert(call.begin(), "render");
        call.insert(call.end(), {"-o", "p.svg"});
        const program_result result = vldv(call);
        EXPECT_EQ(result.status, 0) << result.err << testing::PrintToString(call);
        return result.status == 0 ? file_content(folder / "p.svg") : std::string();
    }
};

// A sample is 511 / 4 pixels behind the one before, and lines run through the middles of pixels.
constexpr const char* trianglePath = "d=\"M50.5,169.5 L178.25,116.5 L306,10.5 L433.75,116.5 L561.5,169.5\"";

TEST_F(CurvePictures, AreThoseOfTheirWindow)
{
    ASSERT_EQ(vldv({"render", "t.spm", "-o", "t.png"}).status, 0);
    const std::vector<unsigned> found = pixels("t.png", 512 + 75, 160 + 55);
    ASSERT_FALSE(found.empty());
    const auto at = [&](int x, int y) { return found[static_cast<std::size_t>(y * 587 + x)]; };
    EXPECT_EQ(at(178, 116), 0x008000u) << "sample 1";
    EXPECT_EQ(at(433, 116), 0x008000u) << "sample 3";
    EXPECT_EQ(at(178, 100), 0xffffffu);
    EXPECT_EQ(at(300, 171), 0x000000u) << "axes run a pixel outside: below 10 + 160";
    EXPECT_EQ(at(49, 90), 0x000000u) << "left of 50";
    EXPECT_EQ(at(50, 90), 0xffffffu);
    // Marks stand at thirds, 511 / 3 and twice that, dotted.
    EXPECT_TRUE(at(220, 60) == 0x0000ffu || at(220, 62) == 0x0000ffu || at(220, 64) == 0x0000ffu);
}

TEST_F(CurvePictures, KeepLinesAndTextsInDocuments)
{
    const std::string lines = svg({"t.spm"});
    EXPECT_THAT(lines, HasSubstr("viewBox=\"0 0 587 215\""));
    EXPECT_THAT(lines, HasSubstr(trianglePath));
    EXPECT_THAT(lines, HasSubstr("stroke=\"#008000\""));
    // From sample 4/3 to 8/3, both at 53 + 106 / 3.
    EXPECT_THAT(lines, HasSubstr(">dX: 4 nm</text>"));
    EXPECT_THAT(lines, HasSubstr(">dY: 0 nm</text>"));
    EXPECT_THAT(lines, Not(HasSubstr("<image")));
    ASSERT_EQ(vldv({"render", "t.spm", "-o", "t.pdf"}).status, 0);
    const std::string pdf = file_content(folder / "t.pdf");
    EXPECT_TRUE(pdf.starts_with("%PDF-"));
    const std::string content = inflated(pdf);
    const std::regex way(
        R"(\n50\.50* 169\.50* m\n178\.250* 116\.50* l\n306[.0]* 10\.50* l\n433\.750* 116\.50* l\n561\.50* 169\.50* l\n)");
    EXPECT_TRUE(std::regex_search(content, way)) << content;
    EXPECT_THAT(content, HasSubstr("BT\n")) << "runs of text";
}

TEST_F(CurvePictures, RunAlongPointsOfASurface)
{
    EXPECT_THAT(svg({"ridge.spm", "--points", "0,1;4,1"}), HasSubstr(trianglePath));
    EXPECT_THAT(svg({"ridge.spm", "--view", "section", "--points", "4,1;0,1"}), HasSubstr(trianglePath)) << "symmetric";
    // Down to the row below at the end: one sample more, and an upright line where the parts meet.
    const std::string bent = svg({"ridge.spm", "--points", "0,1;4,1;4,0"});
    EXPECT_THAT(bent, HasSubstr("d=\"M459.5,10.5 L459.5,170\"")) << "sample 4 of 6, 511 * 4 / 5, to the pane's edge";
    EXPECT_THAT(bent, Not(HasSubstr(trianglePath)));
    tells({"render", "ridge.spm", "-o", "x.png", "--view", "section"}, "surfaces and volumes need --points");
    tells({"render", "ridge.spm", "-o", "x.png", "--points", "0,0,0;1,1,1"},
          "there is no image with as many dimensions as the points of --points have numbers");
    tells({"render", "t.spm", "-o", "x.png", "--image", "0", "--points", "0,0;1,1"},
          "image 0 has 1 dimensions; --points must have as many numbers a point");
}

TEST_F(CurvePictures, HaveTheSpectrumBelow)
{
    const std::string both = svg({"t.spm", "--view", "spectrum"});
    EXPECT_THAT(both, HasSubstr("viewBox=\"0 0 587 420\"")) << "as high again, and the margin between";
    EXPECT_THAT(both, HasSubstr(trianglePath));
    EXPECT_THAT(both, HasSubstr(">1/nm</text>"));
}

TEST_F(CurvePictures, AreHistogramsOfCurvesAndSurfaces)
{
    // Five samples from 0 to 159 nm make one bar, which has them all; delimiters at a quarter and three quarters.
    const std::string bars = svg({"t.spm", "--view", "histogram"});
    EXPECT_THAT(bars, HasSubstr("viewBox=\"0 0 331 183\"")) << "256 x 128 and the margins";
    EXPECT_THAT(bars, HasSubstr(">X0: 39.7500 nm</text>"));
    EXPECT_THAT(bars, HasSubstr("%: 100.0</text>"));
    EXPECT_THAT(svg({"ridge.spm", "--view", "histogram"}), HasSubstr("X1-X0: "));
    tells({"render", "t.spm", "-o", "x.png", "--view", "histogram", "--points", "0;1"}, "--points", 2);
}

TEST_F(CurvePictures, StandOverTheImageThatTheyAreMeasuredAgainst)
{
    // 512 x 320 pixels: from (0, 0) to (511, 319).
    const std::string pairs = svg({"pairs.spm"});
    EXPECT_THAT(pairs, HasSubstr("viewBox=\"0 0 587 375\""));
    EXPECT_THAT(pairs, HasSubstr("M50.5,329.5 L561.5,10.5"));
    ASSERT_EQ(vldv({"render", "pairs.spm", "-o", "all/"}).status, 0);
    EXPECT_TRUE(std::filesystem::exists(folder / "all/pairs.spm-0-0.png"));
    EXPECT_FALSE(std::filesystem::exists(folder / "all/pairs.spm-1-0.png")) << "the axis of the other";
    EXPECT_THAT(svg({"pairs.spm", "--image", "1"}), HasSubstr("M50.5,169.5 L561.5,10.5"));
    EXPECT_THAT(svg({"pairs.spm", "--image", "0", "--view", "section"}), HasSubstr("viewBox=\"0 0 587 215\""));
    tells({"render", "t.spm", "-o", "x.png", "--view", "parametric"},
          "there is no curve that is measured against another image");
}

TEST_F(CurvePictures, StandAloneWhereThereIsNoRoomForMargins)
{
    const char* const alone = "d=\"M0.5,99.5 L27.75,66.5 L55,0.5 L82.25,66.5 L109.5,99.5\"";
    const std::string small = svg({"t.spm", "--size", "110x100"});
    EXPECT_THAT(small, HasSubstr(alone)) << "27.25 columns a sample; 53 of 159 are 33 of 99 rows";
    EXPECT_THAT(small, Not(HasSubstr("<text")));
    EXPECT_EQ(svg({"t.spm", "--size", "110x100", "--legend", "none"}), small);
    EXPECT_THAT(svg({"t.spm", "--size", "110x100", "--legend", "full"}), HasSubstr("<text"));
    EXPECT_THAT(svg({"t.spm", "--size", "150x110"}), HasSubstr("<text")) << "margins take just a half";
    EXPECT_THAT(svg({"t.spm", "--legend", "none"}), HasSubstr("viewBox=\"0 0 512 160\""));
}

TEST_F(CurvePictures, TakeOptionsOfTheirView)
{
    const auto widths = [](const std::string& lines) {
        return lines.find("stroke=\"#008000\" stroke-opacity=\"1\" stroke-width=\"3\"") != std::string::npos;
    };
    EXPECT_FALSE(widths(svg({"t.spm"})));
    EXPECT_TRUE(widths(svg({"t.spm", "--set", "line.width=3"})));
    EXPECT_THAT(svg({"t.spm", "--set", "marks_mode=None", "--set", "LeftMarginOpt=60"}),
                HasSubstr("M60.5,169.5 L188.25,116.5"));
    EXPECT_THAT(svg({"ridge.spm", "--set", "text_size=20"}), HasSubstr("font-size=\"20\"")) << "a surface's window";
    const struct {
        std::vector<std::string> options;
        const char* reason;
        int status;
    } rows[] = {
        {{"--set", "line.widht=3"}, "the view has no option \"line.widht\"; near are line.width", 1},
        {{"--set", "highlight=true"}, "the view has no option \"highlight\"", 1},
        {{"--set", "marks_mode=Cross"}, "no value of \"marks_mode\"; there are \"Vertical Lines\", \"Crossbar\"", 1},
        {{"--set", "line.width"}, "expected NAME=VALUE, not \"line.width\"", 2},
        {{"--size", "60x60", "--legend", "full"}, "the size leaves no room for the curves inside their margins", 1},
        {{"--size", "300x200", "--set", "HorizontalAxis=Fixed Scale"}, "a width of its own", 1},
        {{"--legend", "none", "--view", "spectrum"}, "none leaves the curves alone", 2},
        {{"--points", "1,1"}, "needs two points for a line", 2},
        {{"--points", "0,0;4,1", "--view", "surface"}, "another view is given", 2},
        {{"--view", "volume"}, "expected surface, section, spectrum, parametric, histogram, fourier or features", 2},
        {{"--sub", "1"}, "there is no such image or sub-image", 1},
    };
    for (const char* const output : {"x.svg", "x.png"})
        for (const auto& row : rows) {
            std::vector<std::string> call = {"render", "t.spm", "-o", output};
            call.insert(call.end(), row.options.begin(), row.options.end());
            tells(call, row.reason, row.status);
            EXPECT_FALSE(std::filesystem::exists(folder / output)) << testing::PrintToString(row.options);
        }
}

TEST_F(CurvePictures, DrawTheLinesOfForceCurves)
{
    examples();
    const auto reds = [](const std::string& lines) { // solid lines of the statistics
        const std::regex straight(R"(stroke="#ff0000"[^>]*>\s*<path [^>]*d="M[-0-9.]+,[-0-9.]+ L[-0-9.]+,[-0-9.]+")");
        return std::distance(std::sregex_iterator(lines.begin(), lines.end(), straight), std::sregex_iterator());
    };
    const std::string with = svg({"ex/force-curve.spm", "--statistics"}), without = svg({"ex/force-curve.spm"});
    EXPECT_EQ(reds(with) - reds(without), 2) << "the slant and the zero line";
    EXPECT_THAT(with, HasSubstr(">dF/dZ: "));
    EXPECT_THAT(without, Not(HasSubstr("dF/dZ")));
    EXPECT_THAT(svg({"ex/force-curve.spm", "--statistics", "--size", "110x110"}), HasSubstr(">dF/dZ: "))
        << "lines that were asked for are drawn in any size";
}

TEST_F(CurvePictures, SurfacesGoIntoDocumentsToo)
{
    const std::string plain = svg({"ridge.spm", "--size", "50x30"}), whole = svg({"ridge.spm", "--legend", "full"});
    EXPECT_THAT(plain, HasSubstr("viewBox=\"0 0 50 30\""));
    EXPECT_THAT(plain, HasSubstr("<image x=\"0\" y=\"0\" width=\"50\" height=\"30\""));
    EXPECT_THAT(whole, HasSubstr("<image"));
    EXPECT_THAT(whole, HasSubstr(">nm</text>"));
}

} // namespace
