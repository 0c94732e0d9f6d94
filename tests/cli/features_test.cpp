// `vldv features` and `vldv steps` of documents whose areas and edges are known.
#include "document/fixtures.h"
#include "output/picture_decoders.h"
#include "program_fixture.h"

#include <algorithm>
#include <span>

namespace {

using json = nlohmann::json;

class FeatureProgramTest : public ProgramTest {
protected:
    /// The results of the only file.
    json images(const std::vector<std::string>& arguments) const { return filesOf(arguments).at(0)["images"]; }
};

/// 20 x 10 samples at 0, a bar of 5 x 2 at 100 from (3, 4), a sample of 50 at (15, 1) and a pair of 100 at (17, 7).
SPMDataStream bar_and_pair(const char* id = "Topo")
{
    SPMDataStream stream = heights(id, {20, 10});
    auto* const samples = static_cast<short*>(stream.array_data());
    std::fill_n(samples, 200, short{0});
    for (int y = 4; y < 6; ++y)
        for (int x = 3; x < 8; ++x) samples[y * 20 + x] = 100;
    samples[1 * 20 + 15] = 50;
    samples[7 * 20 + 17] = samples[7 * 20 + 18] = 100;
    return stream;
}

TEST_F(FeatureProgramTest, FeaturesAreToldWithTheirMetrics)
{
    write("bar.spm", {bar_and_pair(), heights("Curve", {5})});
    const json all = images({"features", "bar.spm", "--level", "0.25"});
    ASSERT_EQ(all.size(), 1u);
    expect_fields(all[0], {{"threshold", 25}, {"zero_level", 0}, {"dropped", 1}});
    EXPECT_EQ(all[0]["metrics"][3], json({{"name", "V_px"}, {"units", "nm^2xnm"}}));
    const json& features = all[0]["features"];
    ASSERT_EQ(features.size(), 2u);
    expect_fields(features[0], {{"bounds", json({3, 4, 8, 6})}, {"pixels", 10}, {"first", json({3, 4})}});
    EXPECT_EQ(features[1]["bounds"], json({17, 7, 19, 8}));
    // Steps of 0.25 nm; heights of 0.01 nm above -1 nm. The outline is 4 + 1 + 4 + 1 steps around an area of 4 * 1.
    const json& metrics = features[0]["metrics"];
    EXPECT_NEAR(metrics[1].get<double>(), 2.5, 1e-12);
    EXPECT_NEAR(metrics[2].get<double>(), 10 * 0.0625, 1e-12);
    EXPECT_NEAR(metrics[3].get<double>(), 10 * (1.0 - 1.0) * 0.0625, 1e-12) << "100 * 0.01 nm - 1 nm";
    EXPECT_NEAR(metrics[5].get<double>(), 2.0 * (2.0 * 0.25) * 1.772453850905516 / 2.5, 1e-12);
    EXPECT_EQ(images({"features", "bar.spm", "--level", "0.75"})[0]["dropped"], 0) << "50 is not above 75";
    const json part = images({"features", "bar.spm", "--level", "0.25", "--rect", "20,10,5,5"});
    ASSERT_EQ(part[0]["features"].size(), 2u);
    EXPECT_EQ(part[0]["features"][0]["bounds"], json({5, 5, 8, 6}));
    EXPECT_EQ(part[0]["dropped"], 0);
    const std::string text = vldv({"features", "bar.spm", "--level", "0.25"}).out;
    EXPECT_THAT(text, HasSubstr("threshold 25, zero level 0, 2 features, 1 single sample dropped"));
}

TEST_F(FeatureProgramTest, TablesForPeopleStandInUnitsThatReadWell)
{
    SPMDataStream metres = bar_and_pair();
    for (const unsigned side : {0u, 1u}) metres.get_dimension(side).set_axis(0, VLAxis(0, 2e-9, "m"));
    metres.values.set_axis(0, VLAxis(0, 1e-12, "m"));
    write("m.spm", {metres});
    const std::string text = vldv({"features", "m.spm", "--level", "0.25"}).out;
    for (const char* const head : {"P_proj, nm", "S_px, nm^2", "V_px, nm^2xpm", "RMS_Z, pm", "H_av, pm"})
        EXPECT_THAT(text, HasSubstr(head));
    EXPECT_THAT(text, HasSubstr("4000")) << "10 samples of 4 nm^2, 100 pm high";
    ASSERT_EQ(vldv({"features", "m.spm", "--level", "0.25", "--csv", "t.csv"}).status, 0);
    EXPECT_THAT(file_content(folder / "t.csv"), HasSubstr("\"V_px, m^2xm\""));
    EXPECT_EQ(images({"features", "m.spm"})[0]["metrics"][3]["units"], "m^2xm");
}

TEST_F(FeatureProgramTest, HeightsFarFromZeroAreToldApart)
{
    SPMDataStream far = bar_and_pair();
    far.values.set_axis(0, VLAxis(12000, 1e-6, "nm")); // 12 µm and up to 100 fm
    write("far.spm", {far});
    const std::string text = vldv({"features", "far.spm", "--level", "0.25"}).out;
    EXPECT_THAT(text, HasSubstr("H, fm"));
    EXPECT_THAT(text, HasSubstr(" 12000000100 "));
}

TEST_F(FeatureProgramTest, TablesAndMasksGoWhereTheyAreWanted)
{
    write("bar.spm", {bar_and_pair()});
    write("two.spm", {bar_and_pair("Topo"), bar_and_pair("Other")});
    ASSERT_EQ(vldv({"features", "bar.spm", "--level", "0.25", "--csv", "t.csv", "--mask", "m.png"}).status, 0);
    const std::string csv = file_content(folder / "t.csv");
    EXPECT_TRUE(csv.starts_with("left,top,right,bottom,pixels,first x,first y,\"L_skel, nm\",")) << csv;
    EXPECT_THAT(csv, HasSubstr("\n3,4,8,6,10,3,4,"));
    EXPECT_EQ(std::count(csv.begin(), csv.end(), '\n'), 3);
    const std::string png = file_content(folder / "m.png");
    const auto picture = test_support::decode_png(std::as_bytes(std::span(png)));
    ASSERT_EQ(picture.width, 20);
    ASSERT_EQ(picture.height, 10);
    for (int y = 0; y < 10; ++y)
        for (int x = 0; x < 20; ++x) {
            const bool isFeature = (y >= 4 && y < 6 && x >= 3 && x < 8) || (y == 7 && (x == 17 || x == 18));
            // The picture's first row is the highest.
            EXPECT_EQ(*picture.pixel(x, 9 - y), isFeature ? 255 : 0);
        }
    ASSERT_EQ(vldv({"features", "bar.spm", "two.spm", "--mask", "masks/"}).status, 0);
    for (const char* const name : {"bar.spm-0-0.png", "two.spm-0-0.png", "two.spm-1-0.png"})
        EXPECT_TRUE(std::filesystem::exists(folder / "masks" / name)) << name;
}

TEST_F(FeatureProgramTest, WrongCallsAreRefused)
{
    write("bar.spm", {bar_and_pair()});
    write("curve.spm", {heights("Curve", {5})});
    EXPECT_EQ(vldv({"features", "bar.spm", "--level", "1.5"}).status, 2);
    EXPECT_EQ(vldv({"features", "bar.spm", "--rect", "1,2,3"}).status, 2);
    EXPECT_EQ(vldv({"steps", "bar.spm", "--gap", "0"}).status, 2);
    EXPECT_EQ(vldv({"steps", "bar.spm", "--direction", "up"}).status, 2);
    tells({"features", "bar.spm", "--rect", "30,0,40,5"}, "--rect 30,0,40,5 lies outside");
    tells({"features", "bar.spm", "--rect", "5,5,5,9"}, "--rect 5,5,5,9 holds no sample");
    tells({"features", "curve.spm"}, "it is no surface");
    tells({"steps", "bar.spm", "--slope", "9999"}, "--slope 9999 is above");
    tells({"steps", "bar.spm", "--start-row", "2", "--end-row", "9999"}, "--end-row 9999 is above");
    tells({"dump", "bar.spm", "--sub", "010"}, "has no sub-image 10");
    const std::string before = file_content(folder / "bar.spm");
    EXPECT_EQ(vldv({"features", "bar.spm", "--csv", "bar.spm"}).status, 1);
    EXPECT_EQ(vldv({"steps", "bar.spm", "-o", "bar.spm"}).status, 1);
    EXPECT_EQ(file_content(folder / "bar.spm"), before) << "an input is never written";
    tells({"features", "bar.spm", "--csv", "same.png", "--mask", "./same.png"},
          "is taken by another result of this call");
    EXPECT_EQ(file_content(folder / "same.x").find("PNG"), std::string::npos) << "the table stays";
}

/// A terrace that begins at column 30 of 64, rising.
SPMDataStream terrace(const char* id)
{
    SPMDataStream stream = heights(id, {64, 26});
    for (int i = 0; i < 64 * 26; ++i)
        static_cast<short*>(stream.array_data())[i] = static_cast<short>(i % 64 < 30 ? 0 : 500);
    return stream;
}

TEST_F(FeatureProgramTest, StepsAreToldAndReplaceThoseOfEarlierSearches)
{
    write("t.spm", {heights("step9", {5}), terrace("Topo")});
    const json all = images({"steps", "t.spm", "-o", "out.spm"});
    ASSERT_EQ(all.size(), 1u);
    EXPECT_EQ(all[0]["image"], 1);
    ASSERT_EQ(all[0]["steps"].size(), 1u);
    ASSERT_EQ(all[0]["steps"][0].size(), 26u);
    EXPECT_EQ(all[0]["steps"][0][7], json({7, 29}));
    const json found = info({"--strings", "out.spm"})["files"][0]["images"];
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0]["id"], "Topo");
    expect_fields(found[1], {{"id", "step0"}, {"length", 26}});
    EXPECT_EQ(found[1]["range"][0], json({{"min", 34}, {"max", 34}})) << "64 - 29 - 1";
    EXPECT_EQ(found[1]["strings"]["stepsearch.leftBorder"], "5") << "64 / 32 to either side";
    EXPECT_TRUE(images({"steps", "t.spm", "--direction", "ltr", "-o", "none.spm"})[0]["steps"].empty());
    EXPECT_EQ(info({"none.spm"})["files"][0]["images"].size(), 1u) << "the older ones go all the same";
    const program_result text = vldv({"steps", "t.spm", "--end-row", "5"});
    EXPECT_THAT(text.out, HasSubstr("step 1: rows 0 to 20, first column 29, last column 29, mean column 29"));

    write("mine.spm", {terrace("stepped")});
    EXPECT_EQ(vldv({"steps", "mine.spm"}).status, 0);
    const program_result refused = vldv({"steps", "mine.spm", "-o", "lost.spm"});
    EXPECT_EQ(refused.status, 1) << "the image itself would go";
    EXPECT_FALSE(std::filesystem::exists(folder / "lost.spm"));
}

} // namespace
