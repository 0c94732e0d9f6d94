// `vldv histogram` and `vldv fourier` of documents whose figures are known.
#include "document/fixtures.h"
#include "program_fixture.h"

#include <cmath>
#include <numbers>

namespace {

using json = nlohmann::json;

class SpectraProgramTest : public ProgramTest {
protected:
    std::vector<int> samples(const std::string& name, unsigned image, unsigned sub) const
    {
        const program_result result =
            vldv({"dump", name, "--image", std::to_string(image), "--sub", std::to_string(sub), "--raw"});
        std::vector<int> out;
        std::istringstream in(result.out);
        for (int each; in >> each;) out.push_back(each);
        return out;
    }
};

/// Two waves along x, of 2 and of 10 periods; the middle of the frame is a mirror of both, so that no plane lies in
/// them.
constexpr int side = 40;
double slow(int x) { return 4000.0 * std::cos(2.0 * std::numbers::pi * 2.0 * (x + 0.5) / side); }
double fast(int x) { return 1000.0 * std::cos(2.0 * std::numbers::pi * 10.0 * (x + 0.5) / side); }

SPMDataStream waves(unsigned subs)
{
    SPMDataStream stream = heights("Topo", {side, side}, subs);
    auto* to = static_cast<short*>(stream.array_data());
    for (unsigned i = 0; i < side * side * subs; ++i) {
        const int x = static_cast<int>(i % side);
        to[i] = static_cast<short>(std::lround(slow(x) + fast(x)));
    }
    return stream;
}

TEST_F(SpectraProgramTest, HistogramCountsEveryFrame)
{
    SPMDataStream surface = heights("Topo", {3, 3}, 2);
    surface.values.set_axis(0, VLAxis(-1.0, 0.5, "nm"));
    write("h.spm", {surface, heights("Curve", {5})});
    const program_result result =
        vldv({"histogram", "--json", "--bars", "3", "--window", "0.5,1", "h.spm", "none.spm"});
    EXPECT_EQ(result.status, 1) << "one file is not there";
    const json files = json::parse(result.out)["files"];
    ASSERT_EQ(files.size(), 2u);
    EXPECT_TRUE(files[1].contains("error"));
    ASSERT_EQ(files[0]["images"].size(), 3u);
    // Raw 9 … 17 are values 3.5 … 7.5 nm; the bins are round((z - 9) * 2 / 8).
    json told = files[0]["images"][1];
    for (const auto& [name, value] : {std::pair{"min", 3.5e-9}, {"max", 7.5e-9}, {"x0", 5.5e-9}, {"x1", 7.5e-9}}) {
        EXPECT_DOUBLE_EQ(told[name].get<double>(), value) << name;
        told.erase(name);
    }
    EXPECT_EQ(told, json::parse(
                        R"({"id":"Topo","image":0,"subimage":1,"units":"m","bins":[2,4,3],"total":9,"peak":4,
        "selected":7,"not_measured":0,"not_measured_included":0})"));
    EXPECT_EQ(files[0]["images"][2]["bins"], json({1, 2, 2}));

    const json one = json::parse(vldv({"histogram", "--json", "--image", "0", "--sub", "1", "h.spm"}).out);
    ASSERT_EQ(one["files"][0]["images"].size(), 1u);
    EXPECT_EQ(one["files"][0]["images"][0]["bins"].size(), 2u) << "half the root of 9, halves up";
    EXPECT_THAT(vldv({"histogram", "--bars", "2", "h.spm"}).out, HasSubstr("    3.5\t4\n    7.5\t5\n"));
    surface.values.set_axis(0, VLAxis(2e-6, 5e-10, "m")); // for people in the unit in which 4 nm read well
    write("m.spm", {surface});
    EXPECT_THAT(vldv({"histogram", "m.spm", "--sub", "1", "--window", "0,1"}).out,
                HasSubstr("X0: 2004.5000 nm\tX1: 2008.5000 nm"));
    EXPECT_EQ(vldv({"histogram", "h.spm", "--image", "7"}).status, 1);
    for (const char* const window : {"0.5", "0.5,1.5", "a,b", "0.1,0.2,0.3"})
        EXPECT_EQ(vldv({"histogram", "h.spm", "--window", window}).status, 2) << window;
    EXPECT_EQ(vldv({"histogram", "h.spm", "--bars", "1"}).status, 2);
}

TEST_F(SpectraProgramTest, FourierTakesWavesAway)
{
    write("w.spm", {waves(2), heights("Curve", {5})});
    ASSERT_EQ(
        vldv({"fourier", "w.spm", "--image", "0", "--sub", "1", "--rect", "-3,-1,-1,1", "--zero-inner", "-o", "e.spm"})
            .status,
        0);
    EXPECT_EQ(samples("e.spm", 0, 0), samples("w.spm", 0, 0)) << "only sub-image 1 was asked for";
    EXPECT_EQ(samples("e.spm", 1, 0), samples("w.spm", 1, 0));
    const std::vector<int> left = samples("e.spm", 0, 1);
    ASSERT_EQ(left.size(), std::size_t{side * side});
    for (int x = 0; x < side; ++x) EXPECT_NEAR(left[static_cast<std::size_t>(x)], fast(x), 1.0) << x;
    ASSERT_EQ(
        vldv({"fourier", "w.spm", "--image", "0", "--rect", "9,0,11,0", "--elliptic", "--scale", "3", "-o", "f.spm"})
            .status,
        0);
    const std::vector<int> scaled = samples("f.spm", 0, 0);
    for (int x = 0; x < side; ++x) EXPECT_NEAR(scaled[static_cast<std::size_t>(x)], slow(x) + 3.0 * fast(x), 2.0) << x;
    EXPECT_EQ(samples("f.spm", 0, 1), scaled) << "all sub-images";
}

TEST_F(SpectraProgramTest, FourierShowsTheSpectrumInFrequencies)
{
    write("w.spm", {waves(1)});
    write("v.spm", {waves(1)});
    ASSERT_EQ(
        vldv({"fourier", "w.spm", "v.spm", "--spectrum", "made", "--mode", "magnitude", "--contrast", "1"}).status, 0);
    ASSERT_TRUE(std::filesystem::exists(folder / "made" / "v.spm-spectrum.spm"));
    std::filesystem::rename(folder / "made" / "w.spm-spectrum.spm", folder / "s.spm");
    const json image = info({"s.spm"})["files"][0]["images"][0];
    EXPECT_EQ(image["id"], "Topo_Spectrum");
    const json axis = image["dimensions"][0]["axes"][0];
    EXPECT_EQ(axis["units"], "1/nm");
    EXPECT_NEAR(axis["scale"].get<double>(), 1.0 / (side * 0.25), 1e-6);
    EXPECT_NEAR(axis["start"].get<double>(), -0.5 / 0.25, 1e-6);
    const std::vector<int> shown = samples("s.spm", 0, 0);
    const auto at = [&](int u, int v) { return shown[static_cast<std::size_t>((20 + v) * side + 20 + u)]; };
    EXPECT_EQ(at(2, 0), 32767);
    EXPECT_EQ(at(-2, 0), 32767);
    EXPECT_NEAR(at(10, 0), 65535 / 4 - 32768, 20) << "a quarter of the amplitude";
    EXPECT_LT(at(0, 5), -32700);
}

TEST_F(SpectraProgramTest, FourierRefusesWhatMakesNoSense)
{
    write("w.spm", {waves(1), heights("Curve", {5})});
    const std::string before = file_content(folder / "w.spm");
    const auto called = [](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"fourier", "w.spm"});
        return arguments;
    };
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{},
                                               {"-o", "e.spm"},
                                               {"--rect", "1,1,2,2", "-o", "e.spm"},
                                               {"--zero-inner", "-o", "e.spm"},
                                               {"--rect", "1,1,2", "--zero-inner", "-o", "e.spm"},
                                               {"--rect", "1,1,2,2", "--zero-inner", "--scale", "2", "-o", "e.spm"},
                                               {"--rect", "1,1,2,2", "--scale", "inf", "-o", "e.spm"},
                                               {"--spectrum", "e.spm", "--contrast", "0"}})
        tells(called(arguments), "", 2);
    const struct {
        std::vector<std::string> arguments;
        const char* reason;
    } cases[] = {
        {{"--rect", "30,0,40,1", "--zero-inner", "-o", "e.spm"}, "columns -20 to 19"},
        {{"--rect", "1,1,2,2", "--zero-inner", "-o", "w.spm"}, "is an input of this call"},
        {{"--image", "1", "--rect", "1,1,2,2", "--zero-inner", "-o", "e.spm"}, "image 1: it is no surface"},
    };
    for (const auto& [arguments, reason] : cases) tells(called(arguments), reason);
    EXPECT_FALSE(std::filesystem::exists(folder / "e.spm"));
    EXPECT_EQ(file_content(folder / "w.spm"), before);
}

} // namespace
