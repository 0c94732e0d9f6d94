// Pictures that vldv writes, read back with the formats' usual libraries.
#include "picture_fixture.h"

namespace {

TEST_F(PictureTest, PicturesAreTheRightWayUp)
{
    write_file(folder / "m.txt", smallMatrix);
    const auto drawn = [this](std::vector<std::string> more, const char* name = "g.bmp", int width = 2) {
        more.insert(more.begin(), {"render", "m.txt", "-o", name});
        EXPECT_EQ(vldv(more).status, 0);
        return pixels(name, width, 2);
    };
    using colours = std::vector<unsigned>;
    // 1 2 over 3 4 in gray: 0, 85, 170 and the top
    EXPECT_EQ(drawn({"--palette", "1"}), (colours{0x000000, 0x555555, 0xaaaaaa, 0xffffff}));
    EXPECT_EQ(drawn({"--palette", "1", "--inverse"}), (colours{0xffffff, 0xaaaaaa, 0x555555, 0x010101}))
        << "byte 255 is half way between the two last planes, 1 and 0";
    EXPECT_EQ(drawn({}, "d.bmp").at(0), 0x160000u) << "brown starts in 22, 0, 0";
    EXPECT_EQ(drawn({}, "d.png"), drawn({}, "d.bmp"));
    EXPECT_EQ(drawn({"--palette", "3", "--mode", "auto"}), drawn({}, "d.bmp")) << "the defaults";
    const colours lines = drawn({"--palette", "1", "--mode", "line"}),
                  large = drawn({"--palette", "1", "--size", "4x2"}, "s.bmp", 4);
    EXPECT_EQ(lines.at(0), lines.at(2)) << "each line has its own mean";
    EXPECT_EQ(large.at(1), 0x000000u);
    EXPECT_EQ(large.at(7), 0xffffffu);
    EXPECT_EQ(drawn({"--palette", "1", "--fixed", "0,255,nm", "--absolute"}),
              (colours{0x010101, 0x020202, 0x030303, 0x040404}));
    EXPECT_EQ(drawn({"--palette", "1", "--roi", "0,0,2,1"}), (colours{0x000000, 0x000000, 0x000000, 0xffffff}))
        << "the lowest row, 3 and 4, gives the range";
}

TEST_F(PictureTest, ALegendStandsAroundThePictureOrOnIt)
{
    write_file(folder / "m.txt", smallMatrix);
    const std::vector<std::string> call = {"render", "m.txt", "--palette", "1"};
    const auto drawn = [&](std::vector<std::string> more, const char* name, int width, int height) {
        std::vector<std::string> all = call;
        all.insert(all.end(), more.begin(), more.end());
        all.insert(all.end(), {"-o", name});
        EXPECT_EQ(vldv(all).status, 0);
        const std::vector<unsigned> found = pixels(name, width, height);
        EXPECT_FALSE(found.empty()) << name;
        return [found, width](int x, int y) {
            const auto at = static_cast<std::size_t>(y * width + x);
            return at < found.size() ? found[at] : 0x123456u;
        };
    };
    const auto full = drawn({"--legend", "full", "--size", "400x300"}, "full.png", 400, 300);
    // Margins of 50, 10, 90 and 65 leave 260 x 225 pixels: a square of 225 in their middle, 67 to 292 and 10 to 235.
    const unsigned corners[] = {full(75, 20), full(280, 20), full(75, 225), full(280, 225)};
    EXPECT_THAT(corners, testing::ElementsAre(0x000000u, 0x555555u, 0xaaaaaau, 0xffffffu));
    EXPECT_EQ(full(66, 120), 0u) << "the axis";
    EXPECT_EQ(full(30, 238), 0xffffffu);
    // The strip of 7 pixels ends 5 before the right edge, 15 to 230: white above black.
    EXPECT_GT(full(391, 17), 0xf0f0f0u);
    EXPECT_LT(full(391, 227), 0x0f0f0fu);
    const auto compact = drawn({"--legend", "compact", "--size", "200x200"}, "compact.png", 200, 200);
    EXPECT_EQ(compact(90, 5), 0x000000u);
    EXPECT_EQ(compact(199, 199), 0xffffffu) << "no margins";
    const auto wide = drawn({"--legend", "compact", "--size", "600x200"}, "wide.png", 600, 200);
    EXPECT_EQ(wide(1, 199), 0x000000u) << "texts beside the picture stand on black";
    EXPECT_EQ(wide(190, 100), 0xffffffu);
    const auto region = drawn({"--legend", "Full", "--size", "400x300", "--roi", "0,0,2,1"}, "roi.png", 400, 300);
    EXPECT_EQ(region(280, 20), 0x000000u) << "below all that the lowest row holds";
    EXPECT_EQ(region(75, 225), 0x000000u);
    const auto usual = drawn({"--legend", "full"}, "usual.png", 512 + 140, 512 + 75);
    EXPECT_EQ(usual(51, 11), 0x000000u);
    EXPECT_EQ(vldv({"render", "m.txt", "--legend", "both", "-o", "x.png"}).status, 2);
    EXPECT_EQ(vldv({"render", "m.txt", "--legend", "full", "--size", "100x60", "-o", "x.png"}).status, 1)
        << "smaller than its margins";
    EXPECT_FALSE(std::filesystem::exists(folder / "x.png"));
}

TEST_F(PictureTest, ColoursAreTheSameWithAndWithoutALegend)
{
    std::string text = "# Channel: Height\n# Width: 300 nm\n# Height: 300 nm\n# Value units: nm\n";
    for (int y = 0; y < 300; ++y)
        for (int x = 0; x < 300; ++x) {
            text += x == 210 && y == 120 ? "400" : x < 150 ? "0" : "100"; // one sample stands out
            text += x < 299 ? ' ' : '\n';
        }
    write_file(folder / "m.txt", text);
    ASSERT_EQ(vldv({"render", "m.txt", "-o", "plain.png", "--palette", "1"}).status, 0);
    ASSERT_EQ(
        vldv({"render", "m.txt", "-o", "legend.png", "--palette", "1", "--legend", "compact", "--size", "100x100"})
            .status,
        0);
    const std::vector<unsigned> plain = pixels("plain.png", 300, 300), legend = pixels("legend.png", 100, 100);
    ASSERT_FALSE(plain.empty() || legend.empty());
    EXPECT_EQ(plain[300 * 150 + 290], 0x404040u) << "byte 63.75";
    EXPECT_EQ(legend[100 * 50 + 90], 0x404040u);
}

TEST_F(PictureTest, SeveralPicturesGetNamesOfTheirOwn)
{
    examples();
    std::filesystem::create_directories(folder / "copy");
    std::filesystem::copy_file(folder / "ex/forward-reverse.spm", folder / "copy/forward-reverse.spm");
    ASSERT_EQ(
        vldv({"render", "ex/forward-reverse.spm", "copy/forward-reverse.spm", "ex/section.spm", "-o", "p/"}).status, 0);
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder / "p")) ++count;
    EXPECT_EQ(count, 9u) << "two files of two images of two sub-images, and a curve";
    std::filesystem::remove(folder / "p/section.spm-0-0.png");
    EXPECT_TRUE(std::filesystem::exists(folder / "p/forward-reverse.spm-1-1.png"));
    for (const auto& entry : std::filesystem::directory_iterator(folder / "p"))
        EXPECT_EQ(pixels("p/" + entry.path().filename().native(), 256, 256).size(), 256u * 256u) << entry;
    const program_result unknown = vldv({"render", "ex/grains.spm", "-o", "x.gif"});
    EXPECT_EQ(unknown.status, 2);
    EXPECT_FALSE(std::filesystem::exists(folder / "x.gif"));
    tells({"render", "ex/section.spm", "-o", "x.png", "--image", "0", "--view", "surface"}, "image 0 is no surface");
    tells({"render", "ex/section.spm", "-o", "x.png", "--view", "surface"}, "there is no surface to draw");
    EXPECT_EQ(vldv({"render", "ex/grains.spm", "-o", "x.png", "--image", "0", "--sub", "1"}).status, 1);
    EXPECT_FALSE(std::filesystem::exists(folder / "x.png"));
}

TEST_F(PictureTest, APictureNeverReplacesWhatItWasMadeOf)
{
    write_file(folder / "m.txt", smallMatrix);
    ASSERT_EQ(vldv({"render", "m.txt", "-o", "scan.bmp"}).status, 0);
    std::filesystem::create_symlink("scan.bmp", folder / "link.bmp");
    const std::string before = file_content(folder / "scan.bmp");
    for (const char* output : {"scan.bmp", "./scan.bmp", "link.bmp"}) {
        tells({"render", "scan.bmp", "-o", output, "--palette", "1"}, "is an input of this call");
        EXPECT_EQ(file_content(folder / "scan.bmp"), before) << output;
    }
    EXPECT_EQ(vldv({"render", "scan.bmp", "-o", "again.bmp"}).status, 0);
}

TEST_F(PictureTest, AWindowOfAnotherQuantityIsRefused)
{
    write_file(folder / "m.txt", smallMatrix);
    write_file(folder / "counts.txt", "# Channel: Counts\n# Width: 2 nm\n# Height: 2 nm\n1 2\n3 4\n");
    const struct {
        const char *file, *window, *reason;
    } rows[] = {
        {"m.txt", "0,10,V", "the window of --fixed is in V, the heights of the image are in nm"},
        {"m.txt", "0,10,", "the window of --fixed is without a unit, the heights of the image are in nm"},
        {"counts.txt", "0,10,nm", "the window of --fixed is in nm, the heights of the image are without a unit"},
        {"m.txt", "0,0.01,um", ""},
        {"counts.txt", "0,10,", ""}};
    for (const auto& row : rows)
        for (const char* legend : {"--legend=full", "--highlight"}) {
            tells({"render", row.file, "-o", "x.png", "--fixed", row.window, legend}, row.reason, *row.reason ? 1 : 0);
            EXPECT_EQ(std::filesystem::remove(folder / "x.png"), !*row.reason);
        }
}

TEST_F(PictureTest, ARegionOutsideTheSurfaceIsCut)
{
    write_file(folder / "m.txt", smallMatrix);
    ASSERT_EQ(vldv({"render", "m.txt", "-o", "all.bmp", "--palette", "1", "--roi", "-5,-5,99,99"}).status, 0);
    EXPECT_EQ(pixels("all.bmp", 2, 2), (std::vector<unsigned>{0x000000, 0x555555, 0xaaaaaa, 0xffffff}));
    for (const std::vector<std::string>& legend : {std::vector<std::string>{}, {"--legend", "full"}}) {
        const auto drawn = [&](const char* region) {
            std::vector<std::string> call = {"render", "m.txt", "-o", "p.bmp", "--size", "300x300", "--roi", region};
            call.insert(call.end(), legend.begin(), legend.end());
            std::filesystem::remove(folder / "p.bmp");
            return vldv(call);
        };
        EXPECT_EQ(drawn("0,0,2,1").status, 0);
        const std::string inOrder = file_content(folder / "p.bmp");
        EXPECT_EQ(drawn("2,1,0,0").status, 0);
        EXPECT_EQ(file_content(folder / "p.bmp"), inOrder) << "crossed corners";
        for (const auto& [region, why] : {std::pair{"7,7,9,9", "lies outside of the image of 2 x 2 samples"},
                                          std::pair{"1,0,1,2", "holds no sample"}}) {
            const program_result refused = drawn(region);
            EXPECT_EQ(refused.status, 1);
            EXPECT_THAT(refused.err, HasSubstr(std::string("--roi ") + region + ' ' + why));
            EXPECT_FALSE(std::filesystem::exists(folder / "p.bmp"));
        }
    }
}

TEST_F(PictureTest, SmallerPicturesShowMeansOfHeights)
{
    const std::string head = "# Channel: Height\n# Width: 2 nm\n# Height: 2 nm\n# Value units: nm\n";
    write_file(folder / "large.txt", head + "0 200 10 30\n40 0 30 10\n255 1 70 71\n1 255 72 75\n");
    write_file(folder / "means.txt", head + "60 20\n128 72\n");
    const auto drawn = [&](const char* input, std::vector<std::string> more) {
        std::vector<std::string> call = {"render", input, "-o", "p.bmp", "--palette", "zebra"};
        call.insert(call.end(), more.begin(), more.end());
        EXPECT_EQ(vldv(call).status, 0);
        return pixels("p.bmp", 2, 2);
    };
    EXPECT_EQ(drawn("large.txt", {"--size", "2x2", "--fixed", "0,255,nm", "--absolute"}),
              drawn("means.txt", {"--fixed", "0,255,nm", "--absolute"}));
    EXPECT_EQ(drawn("large.txt", {"--size", "2x2"}), drawn("means.txt", {"--fixed", "0,255,nm", "--absolute"}))
        << "the range is that of all samples";
}

} // namespace
