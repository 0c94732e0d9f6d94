#include "base/SPMVarList.h"
#include "support/HeadlessHost.h"
#include "support/temporary_folder.h"
#include "view/scale/palette_file.h"
#include "view/scale/palette_folder.h"
#include "view/scale/palette_profile.h"

#include <gtest/gtest.h>

namespace {

std::string le32(std::uint32_t number)
{
    std::string out;
    for (int i = 0; i < 4; ++i) out += static_cast<char>(number >> 8 * i);
    return out;
}

base::read_result<color_table> read(const std::string& text)
{
    return view::read_palette_file(std::as_bytes(std::span(text)));
}

TEST(PaletteFile, TakesTheCountFromTheRiffSizeAndDropsFlags)
{
    const std::string entries = "\x01\x02\x03\x7f" + std::string("\xff\xfe\xfd\x00", 4);
    const auto table = read("RIFF" + le32(20) + "PAL data" + le32(999) + entries + "tail");
    ASSERT_TRUE(table);
    EXPECT_EQ(*table, (color_table{0x030201, 0xfdfeff}));
}

struct bad_palette {
    const char* name;
    std::string bytes;
};

TEST(PaletteFile, RefusesWhatIsNoneOrCutShort)
{
    const bad_palette cases[] = {
        {"empty", ""},
        {"huge size", "RIFF" + le32(~0u) + "PAL data" + le32(0)},
        {"size below its header", "RIFF" + le32(11) + "PAL data" + le32(0) + "abcd"},
        {"other chunk", "RIFF" + le32(16) + "PAL list" + le32(4) + "abcd"},
        {"other kind", "RIFF" + le32(16) + "WAVEdata" + le32(4) + "abcd"},
        {"cut", "RIFF" + le32(20) + "PAL data" + le32(8) + "abcdefg"},
    };
    for (const bad_palette& each : cases) EXPECT_FALSE(read(each.bytes)) << each.name;
}

TEST(PaletteFile, IsWrittenAsItIsRead)
{
    const color_table table = {0x7f030201, 0xffffff};
    const std::vector<std::byte> bytes = view::write_palette_file(table);
    const std::string expected = "RIFF" + le32(20) + "PAL data" + le32(8) + "\x01\x02\x03\x7f\xff\xff\xff" + '\0';
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size()), expected);
}

TEST(PaletteProfile, ReadsWhatIsThereAndKeepsTheRest)
{
    struct saved_values {
        const char* text;
        int palette, mode;
        double start;
        const char* units;
    };
    const saved_values cases[] = {
        {"5,2,-1.5,20,3,V", 5, 2, -1.5, "V"},
        {"9,7,1,2,3,mm", 7, 3, 1, "mm"}, // clamped
        {"5", 5, 1, -500, "nm"},
        {"5,0,1", 5, 0, 1, "nm"},
        {"5,0,x,2,3,V", 5, 0, -500, "nm"}, // what follows an unreadable field is not looked at
        {"", 3, 1, -500, "nm"},
        {"-4,0,1,2,3,", 0, 0, 1, "nm"},
    };
    for (const saved_values& each : cases) {
        CHeadlessHost host;
        host.writeString("Palette", "Values", each.text);
        view::scale_state state;
        view::read_scale_values(host, state);
        EXPECT_EQ(state.paletteId, each.palette) << each.text;
        EXPECT_EQ(state.autoScaling, each.mode) << each.text;
        EXPECT_EQ(state.fixedStart, each.start) << each.text;
        EXPECT_EQ(state.fixedUnits, each.units) << each.text;
    }
    CHeadlessHost host;
    host.writeString("Palette", "Values", "1,1,1,1,1," + std::string(300, 'u'));
    view::scale_state state;
    view::read_scale_values(host, state);
    EXPECT_EQ(state.fixedUnits.size(), 99u);
    EXPECT_TRUE(view::write_scale_values(host, state));
    EXPECT_EQ(host.readString("Palette", "Values")->substr(0, 40), "1,1,1.000000,1.000000,1.000000,uuuuuuuuu");
}

TEST(PaletteProfile, TheBinaryValueOverrulesTheCount)
{
    CHeadlessHost host;
    EXPECT_EQ(view::read_custom_palette(host), color_table(255));
    host.writeInt("Palette", "CustomMaxColorN", 7);
    EXPECT_EQ(view::read_custom_palette(host).size(), 7u);
    host.writeBinary("Palette", "CustomColorTable", std::vector<std::byte>(1024, std::byte{1}));
    EXPECT_EQ(view::read_custom_palette(host).size(), 256u);
    EXPECT_EQ(view::read_custom_palette(host)[255], 0x01010101u);
    host.writeInt("Palette", "CustomMaxColorN", -5);
    EXPECT_TRUE(view::write_custom_palette(host, {1, 2}));
    EXPECT_EQ(host.readInt("Palette", "CustomMaxColorN"), 2);
    EXPECT_EQ(view::read_custom_palette(host), (color_table{1, 2}));
}

TEST(PaletteFolder, TakesReadableFilesAndPassesOverOthers)
{
    temporary_folder folder;
    const auto bytes = view::write_palette_file({1, 2, 3});
    write_file(folder / "warm.pal", {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    write_file(folder / "broken.pal", "RIFF");
    write_file(folder / "other.txt", {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    std::filesystem::create_directory(folder / "folder.pal");
    const auto palettes = view::read_palette_folder(folder.path);
    ASSERT_EQ(palettes.size(), 1u);
    EXPECT_EQ(palettes[0].name, "warm");
    EXPECT_EQ(palettes[0].table, (color_table{1, 2, 3}));
    EXPECT_TRUE(view::read_palette_folder(folder / "missing").empty());
    EXPECT_TRUE(view::read_palette_folder("").empty());
}

TEST(PaletteFolder, ExpandsTheEnvironment)
{
    setenv("VLDV_TEST_HOME", "/home/x", 1);
    EXPECT_EQ(view::expanded_environment("$VLDV_TEST_HOME/p"), "/home/x/p");
    EXPECT_EQ(view::expanded_environment("${VLDV_TEST_HOME}p%VLDV_TEST_HOME%"), "/home/xp/home/x");
    EXPECT_EQ(view::expanded_environment("50%/$VLDV_TEST_HOME/x%"), "50%//home/x/x%");
    EXPECT_EQ(view::expanded_environment("a$VLDV_NO_SUCH/50%b$"), "a$VLDV_NO_SUCH/50%b$");
}

} // namespace
