// What the commands tell of images of which some samples were not measured.
#include "document/fixtures.h"
#include "program_fixture.h"

#include <algorithm>
#include <cmath>

namespace {

using json = nlohmann::json;

constexpr const char* head = "# Channel: Height\n# Width: 3 nm\n# Height: 3 nm\n# Value units: nm\n";

class VoidsTest : public ProgramTest {
protected:
    /// Four corners of 3 x 3, 0 but one of 4: the best plane leaves 1, -1, -1, 1.
    void corners() const { write_file(folder / "corners.txt", head + std::string("0 nan 4\nnan nan nan\n0 nan 0\n")); }
    json image(std::vector<std::string> arguments) const { return filesOf(std::move(arguments)).at(0)["images"][0]; }
};

TEST_F(VoidsTest, StatisticsLeaveThemOutAndSaySo)
{
    corners();
    const json told = image({"stats", "corners.txt"});
    expect_fields(told, {{"not_measured", 5}, {"not_measured_included", 0}});
    const double expected[] = {4e-9, 0.0, 4e-9, 1e-9, 1e-9, 0.0, 1.0}; // Zmax, Zmin, Rmax, Rq, Ra, Rsk, Rku
    ASSERT_EQ(told["rows"].size(), std::size(expected));
    for (std::size_t i = 0; i < std::size(expected); ++i)
        EXPECT_NEAR(told["rows"][i]["value"].get<double>(), expected[i], 1e-12 * (expected[i] == 1.0 ? 1 : 1e-6)) << i;
    const std::string text = vldv({"stats", "corners.txt"}).out;
    EXPECT_THAT(text, HasSubstr("    Rq: 1 nm\n"));
    EXPECT_THAT(text, HasSubstr("    not measured, left out: 5\n"));

    ASSERT_EQ(vldv({"convert", "corners.txt", "-o", "corners.spm"}).status, 0);
    EXPECT_EQ(image({"stats", "corners.spm"}), told) << "a container keeps which they are";
    write_file(folder / "none.txt", head + std::string("nan nan\nnan nan\n"));
    const std::string csv = vldv({"stats", "none.txt", "corners.spm", "--csv", "-"}).out;
    EXPECT_THAT(csv, HasSubstr(",,,,,,,,4,0\n")) << "no figures of what was not measured at all\n";
    EXPECT_TRUE(csv.ends_with(",5,0\n")) << csv;
}

TEST_F(VoidsTest, HistogramsCountWhatWasMeasured)
{
    corners();
    const json told = image({"histogram", "corners.txt", "--bars", "3"});
    expect_fields(told, {{"bins", json({3, 0, 1})}, {"total", 4}, {"not_measured", 5}});
    EXPECT_THAT(vldv({"histogram", "corners.txt"}).out, HasSubstr("    not measured, left out: 5\n"));
}

TEST_F(VoidsTest, FeaturesAndTheirLevelsKnowMeasuredHeightsOnly)
{
    // 12 samples of 100 and 2 of 300: mean 128.57, (300 + mean) / 2 = 214.29; with ten more of 100 it were 208.33.
    write_file(folder / "pair.txt", head + std::string("100 100 100 100 100 100\n100 300 300 100 100 100\n"
                                                       "100 100 nan nan nan nan\nnan nan nan nan nan nan\n"));
    json told = image({"features", "pair.txt"});
    expect_fields(told, {{"threshold", 214}, {"zero_level", 100}, {"not_measured", 10}});
    EXPECT_EQ(told["features"].size(), 1u);
    EXPECT_EQ(image({"features", "pair.txt", "--rect", "0,2,6,4"})["not_measured"], 0) << "rows are counted from below";

    // Marked samples that hold the highest number, as those of a container may: 2 beside a pair, 2 on their own.
    writeDocument("marked.spm", [](CStorageDoc& document) {
        SPMDataStream stream = heights("Topo", {8, 2});
        std::ranges::copy(std::vector<short>{0, 50, 50, 90, 90, 0, 0, 0, 0, 0, 0, 0, 0, 90, 90, 0},
                          static_cast<short*>(stream.array_data()));
        document.AddNewImages(&stream, 1);
        document.setString("\\Void points", "4", 0);
        document.setString("\\Void samples", "of 16: 3-4 13-14", 0);
    });
    told = image({"features", "marked.spm", "--level", "0.5"});
    EXPECT_EQ(told["threshold"], 25) << "half of 50";
    ASSERT_EQ(told["features"].size(), 1u);
    EXPECT_EQ(told["features"][0]["bounds"], json({1, 0, 3, 1}));
    EXPECT_NEAR(told["features"][0]["metrics"][7].get<double>(), 50 * 0.01 - 1.0, 1e-12);
}

TEST_F(VoidsTest, WhatCannotLeaveThemOutSaysThatTheyWentIn)
{
    corners();
    const std::vector<std::string> command{"fourier", "corners.txt", "--spectrum", "s.spm"};
    EXPECT_THAT(vldv(command).out, HasSubstr("    not measured, but counted: 5\n"));
    expect_fields(image(command), {{"not_measured", 0}, {"not_measured_included", 5}});
    // A container that tells how many and not which.
    writeDocument("old.spm", [](CStorageDoc& document) {
        const SPMDataStream stream = heights("Topo", {3, 3});
        document.AddNewImages(&stream, 1);
        document.setString("\\Void points", "2", 0);
    });
    for (const char* const old : {"stats", "histogram", "features", "steps"}) {
        EXPECT_EQ(image({old, "old.spm"})["not_measured_included"], 2) << old;
        EXPECT_THAT(vldv({old, "old.spm"}).out, HasSubstr("    not measured, but counted: 2\n"));
    }
}

TEST_F(VoidsTest, IsolinesKeepOffThem)
{
    corners();
    tells({"isoline", "corners.txt", "--at", "1,1"}, "--at 1,1 was not measured");
    const program_result alone = vldv({"isoline", "corners.txt", "--at", "0,0"});
    EXPECT_EQ(alone.out, "");
    EXPECT_THAT(alone.err, HasSubstr("No isoline: all samples around are lower or were not measured"));
    // Around the three that were measured, with the others on the right hand.
    write_file(folder / "pair.txt", head + std::string("nan nan nan\n0 0 nan\n5 nan nan\n"));
    EXPECT_EQ(vldv({"isoline", "pair.txt", "--at", "1,1"}).out, "1\t1\n0\t1\n0\t0\n1\t1\n");
}

TEST_F(VoidsTest, TrendsOfCurvesLeaveThemOut)
{
    const auto curve = [&](const char* name, const std::string& rows) {
        write_file(folder / name, "Z (nm)\tForce (nN)\n" + rows);
    };
    curve("gap.txt", "0\t0\n1\t2\n2\tnan\n3\tnan\n4\t1\n5\t3\n6\tnan\n7\tnan\n");
    // By hand over i = 0, 1, 4, 5: means 2.5 and 1.5, Sxx 17, Sxy 6, SST 5, SSE 5 - 36 / 17.
    const json told = filesOf({"curve", "--op", "trend", "gap.txt"}).at(0)["curves"][0];
    EXPECT_EQ(told["not_measured"], 4);
    EXPECT_NEAR(told["b"].get<double>(), 6.0 / 17.0, 1e-4) << "within the steps of the samples";
    EXPECT_NEAR(told["a"].get<double>(), 1.5 - 2.5 * 6.0 / 17.0, 1e-4);
    EXPECT_NEAR(told["r2"].get<double>(), 36.0 / 17.0 / 5.0, 1e-4);
    EXPECT_NEAR(told["sd"].get<double>(), std::sqrt((5.0 - 36.0 / 17.0) / 3.0), 1e-4);
    for (const char* const operation : {"spectrum", "differentiate", "structure"})
        EXPECT_EQ(filesOf({"curve", "--op", operation, "gap.txt"}).at(0)["curves"][0],
                  json::parse(R"({"subimage":0,"measured":false,"not_measured":4})"))
            << operation;
    EXPECT_THAT(vldv({"curve", "--op", "trend", "gap.txt"}).out, HasSubstr("\n\tnot measured, left out: 4\n"));
}

} // namespace
