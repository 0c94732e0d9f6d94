// `vldv stats` of a document whose figures are known.
#include "document/fixtures.h"
#include "program_fixture.h"

#include <algorithm>
#include <cmath>

namespace {

using json = nlohmann::json;

/// A peak of 9 on nothing in the middle of 3 x 3, then a plane; and a curve, which has no rows.
std::vector<SPMDataStream> surfaces()
{
    SPMDataStream surface = heights("Topo", {3, 3}, 2);
    surface.values.set_axis(0, VLAxis(-1, 0.002, "um"));
    auto* samples = static_cast<short*>(surface.array_data());
    for (int i = 0; i < 18; ++i) samples[i] = static_cast<short>(i < 9 ? (i == 4 ? 9 : 0) : 10 + i % 3);
    return {surface, heights("Curve", {5})};
}

TEST_F(ProgramTest, StatsTellHeightsAndRoughnessOfEverySubImage)
{
    write("known.spm", surfaces());
    const program_result result = vldv({"stats", "--json", "known.spm", "none.spm"});
    EXPECT_EQ(result.status, 1) << "one file is not there";
    const json files = json::parse(result.out)["files"];
    ASSERT_EQ(files.size(), 2u);
    EXPECT_TRUE(files[1].contains("error"));
    const json& images = files[0]["images"];
    ASSERT_EQ(images.size(), 2u);
    // Steps of 0.002 um are 2e-9 m, the start is -1e-6 m. The mean is 1: eight residuals are -1, one is 8.
    const double rq = std::sqrt(8.0);
    const std::tuple<const char*, double, const char*> expected[2][7] = {{{"Zmax", -982e-9, "m"},
                                                                          {"Zmin", -1e-6, "m"},
                                                                          {"Rmax", 18e-9, "m"},
                                                                          {"Rq", 2e-9 * rq, "m"},
                                                                          {"Ra", 2e-9 * 16.0 / 9.0, "m"},
                                                                          {"Rsk", 504.0 / 9.0 / (8.0 * rq), ""},
                                                                          {"Rku", 4104.0 / 9.0 / 64.0, ""}},
                                                                         {{"Zmax", -976e-9, "m"},
                                                                          {"Zmin", -980e-9, "m"},
                                                                          {"Rmax", 4e-9, "m"},
                                                                          {"Rq", 0.0, "m"},
                                                                          {"Ra", 0.0, "m"},
                                                                          {"Rsk", 0.0, ""},
                                                                          {"Rku", 0.0, ""}}};
    for (std::size_t sub = 0; sub < 2; ++sub) {
        expect_fields(images[sub], {{"id", "Topo"}, {"subimage", sub}});
        ASSERT_EQ(images[sub]["rows"].size(), 7u);
        for (std::size_t i = 0; i < 7; ++i) {
            const auto& [name, value, units] = expected[sub][i];
            const json& row = images[sub]["rows"][i];
            EXPECT_EQ(row["name"], name);
            EXPECT_NEAR(row["value"].get<double>(), value, row["units"] == "m" ? 1e-17 : 1e-9) << name;
            EXPECT_EQ(row["units"], units) << name;
        }
    }
    const std::string text = vldv({"stats", "known.spm"}).out;
    EXPECT_THAT(text, HasSubstr("    Zmax: -982 nm\n    Zmin: -1 \u00b5m\n    Rmax: 18 nm\n"))
        << "each in the unit in which it reads well\n";
    EXPECT_THAT(text, HasSubstr("    Rku: 7.125\n")) << "456 / 64, without a unit";
    EXPECT_EQ(vldv({"stats"}).status, 2);
}

TEST_F(ProgramTest, SmallHeightsFarFromZeroAreToldApart)
{
    // 12 um and up to 300 pm more.
    write_file(folder / "far.txt", "# Channel: Height\n# Width: 2 nm\n# Height: 2 nm\n# Value units: m\n"
                                   "1.2e-5 1.20001e-5\n1.20002e-5 1.20003e-5\n");
    const std::string bins = vldv({"histogram", "far.txt", "--bars", "4"}).out;
    for (const char* const middle : {"12000000\t", "12000100\t", "12000200\t", "12000300\t"})
        EXPECT_THAT(bins, HasSubstr(middle));
    EXPECT_THAT(vldv({"info", "far.txt"}).out, HasSubstr("12 to 12.0003 \u00b5m"));
    const std::string figures = vldv({"stats", "far.txt"}).out;
    EXPECT_THAT(figures, HasSubstr("Zmax: 12.0003 \u00b5m"));
}

TEST_F(ProgramTest, StatsWriteATableWithALineForEachSubImage)
{
    write("a,b.spm", surfaces());
    const std::string path = (std::filesystem::canonical(folder.path) / "a,b.spm").native();
    const program_result result = vldv({"stats", "a,b.spm", "a,b.spm", "--image", "0", "--sub", "1", "--csv", "-"});
    ASSERT_EQ(result.status, 0) << result.err;
    const std::size_t firstEnd = result.out.find('\n') + 1;
    EXPECT_EQ(result.out.substr(0, firstEnd), "file,image,id,subimage,name,units,Zmax,Zmin,Rmax,Rq,Ra,Rsk,Rku,"
                                              "not_measured,not_measured_included\n");
    const std::string line = result.out.substr(firstEnd, result.out.find('\n', firstEnd) + 1 - firstEnd);
    EXPECT_TRUE(line.starts_with('"' + path + "\",0,Topo,1,,m,-9.76e-07,")) << line;
    EXPECT_EQ(result.out.substr(firstEnd), line + line) << "one for each file";
    ASSERT_EQ(vldv({"stats", "a,b.spm", "--csv", "t.csv"}).status, 0);
    EXPECT_EQ(std::ranges::count(file_content(folder / "t.csv"), '\n'), 3) << "names and two sub-images";
    EXPECT_EQ(vldv({"stats", "gone.di", "--csv", "t.csv"}).status, 1);
    EXPECT_EQ(std::ranges::count(file_content(folder / "t.csv"), '\n'), 3) << "without a row the earlier table stays";
    EXPECT_EQ(vldv({"stats", "a,b.spm", "--csv", "a,b.spm"}).status, 1) << "never over what is read";
    EXPECT_EQ(vldv({"stats", "a,b.spm", "--json", "--csv", "-"}).status, 2) << "two texts on one output";
    EXPECT_EQ(vldv({"stats", "a,b.spm", "--image", "1"}).status, 1) << "a curve";
}

} // namespace
