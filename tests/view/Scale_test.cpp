#include "view/Scale.h"

#include "base/SPMVarList.h"
#include "platform/app/WinApp.h"
#include "support/HeadlessHost.h"
#include "support/temporary_folder.h"
#include "view/scale/palette_file.h"

#include <gtest/gtest.h>
#include <memory>

namespace {

class ScaleTest : public testing::Test {
protected:
    CHeadlessHost host;
    CWinApp app{host};
};

TEST_F(ScaleTest, SelectsPalettesWithinWhatThereIs)
{
    CScale scale;
    EXPECT_EQ(CScale::GetPalettesNumber(), 8);
    scale.SetPaletteId(99);
    EXPECT_EQ(scale.GetPaletteId(), 7);
    EXPECT_EQ(scale.previousPaletteId, 3);
    scale.SetPaletteId(7);
    EXPECT_EQ(scale.previousPaletteId, 3) << "no change";
    scale.SetPaletteId(-5);
    scale.SetPaletteId(0);
    EXPECT_EQ(scale.previousPaletteId, 0) << "the custom palette is selected anew each time";
    EXPECT_EQ(scale.GetColor(0, 0), 0u);
    EXPECT_EQ(CScale::getPaletteName(3), "");
}

TEST_F(ScaleTest, TheLastOneSavesAndTheNextOneReads)
{
    const unsigned long colours[] = {0x010203, 0x040506};
    {
        auto first = std::make_unique<CScale>();
        CScale last;
        last.SetPaletteId(0);
        last.SetCustomPalette(colours, 2);
        last.setFixedUnits("V");
        last.SetAutoScaling(2);
        first->SetPaletteId(5);
        first.reset();
        EXPECT_FALSE(host.readString("Palette", "Values"));
    }
    EXPECT_EQ(host.readString("Palette", "Values"), "0,2,-500.000000,1000.000000,0.000000,V");
    EXPECT_EQ(host.readInt("Palette", "CustomMaxColorN"), 2);
    CScale scale;
    EXPECT_EQ(scale.GetPaletteId(), 0);
    EXPECT_EQ(scale.fixedUnits, "V");
    EXPECT_EQ(scale.GetColor(1, 1), 0x040506u);
    CScale second;
    EXPECT_EQ(second.fixedUnits, "nm") << "only the first of all reads the profile";
}

TEST_F(ScaleTest, SavingStopsAtTheFirstRefusal)
{
    const CScale scale;
    host.writesUntilFailure = 2;
    EXPECT_FALSE(scale.SaveCustomPalette());
    host.writesUntilFailure = -1;
    EXPECT_TRUE(scale.SaveCustomPalette());
}

TEST(Scale, WorksWithoutAnApplication)
{
    const CScale scale;
    EXPECT_EQ(scale.GetColor(255, 255), 0xe9ffffu) << "brown ends in 255, 255, 233";
    EXPECT_FALSE(scale.SaveCustomPalette());
}

TEST_F(ScaleTest, FollowersTakeWhatTheStaticScaleHas)
{
    CScale first, second, own;
    EXPECT_EQ(CScale::GetStaticScale(), &first);
    second.MakeStatic();
    EXPECT_EQ(CScale::GetStaticScale(), &second);
    second.SetPaletteId(6);
    second.setFixedStart(7);
    second.setFixedUnits("V");
    second.SetAutoScaling(0);
    own.syncPalette = false;
    second.UpdateAll();
    EXPECT_EQ(first.GetPaletteId(), 6);
    EXPECT_EQ(first.getFixedStart(), 7);
    EXPECT_STREQ(first.getFixedUnits(), "V");
    EXPECT_EQ(first.GetAutoScaling(), 0);
    EXPECT_EQ(own.GetPaletteId(), 3);
    first.syncDelimiters = false;
    second.setFixedStart(8);
    first.SyncDelimiters();
    EXPECT_EQ(first.getFixedStart(), 7);
}

TEST_F(ScaleTest, PaletteFilesFollowTheBuiltInOnes)
{
    temporary_folder folder;
    const auto bytes = view::write_palette_file({0x112233, 0x445566});
    write_file(folder / "Sea.pal", {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    setenv("VLDV_TEST_PALETTES", folder.path.c_str(), 1);
    SPMVar directory;
    directory.Init("directory.palettes,string");
    directory.set_string("$VLDV_TEST_PALETTES");
    VLGlobalVarList* options = VLGlobalVarList::GetVarList("global_options");
    options->set_var(directory);
    host.writeString("Palette", "Values", "8,1,0,1,0,nm");
    {
        CScale scale;
        EXPECT_EQ(CScale::GetPalettesNumber(), 9);
        EXPECT_EQ(CScale::getPaletteName(8), "Sea");
        EXPECT_EQ(scale.GetPaletteId(), 7) << "a saved id is one of the built-in ones";
        scale.SetPaletteId(8);
        EXPECT_EQ(scale.GetColor(255, 255), 0x445566u);
    }
    directory.set_string("");
    options->set_var(directory);
    options->ReleaseList();
}

TEST(ScaleDrawing, AnEmptyImageDrawsNothingInAnyMode)
{
    CScale scale;
    const short sample = 5;
    for (const int mode : {0, 1, 2, 3})
        for (const IppiSize size : {IppiSize{0, 3}, IppiSize{3, 0}, IppiSize{-1, 1}}) {
            scale.SetAutoScaling(mode);
            int low = 77, high = 78;
            unsigned char pixel = 9;
            scale.DrawImage(&pixel, &sample, 6, size, VLAxis(0.0, 1.0, "nm"), false, false, nullptr, true, &low, &high);
            EXPECT_EQ(pixel, 9);
            EXPECT_EQ(low, 77);
            EXPECT_EQ(high, 78);
        }
}

} // namespace
