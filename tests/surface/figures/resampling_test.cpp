#include "document/fixtures.h"
#include "document/samples/point_counts.h"
#include "surface/figures/resampling.h"
#include "surface/figures/resolution.h"

namespace {

using namespace surface;
using primitives::interpolation;

class ResamplingTest : public DocumentTest {
protected:
    /// 8 x 4, two sub-images: raw 20 * column + 100 * row, the second 1000 higher.
    ResamplingTest()
    {
        SPMDataStream stream = heights("Topo", {8, 4}, 2);
        auto* samples = static_cast<short*>(stream.array_data());
        for (int i = 0; i < 64; ++i)
            samples[i] = static_cast<short>(20 * (i % 8) + 100 * (i / 8 % 4) + (i >= 32 ? 1000 : 0));
        stream.get_dimension(0).set_axis(1, VLAxis(7, 2, "ms"));
        document.AddNewImages(&stream, 1);
        document.SetModifiedFlag(false);
    }
    /// Raw height of the plane at a place of axis 0.
    double heightAt(double x, double y) const { return 20.0 * x / 0.25 + 100.0 * (y - 0.5) / 0.25; }
    void edit(CVarListDlg& dialog, const char* name, const char* text)
    {
        for (unsigned i = 0; i < dialog.rowCount(); ++i)
            if (std::string(dialog.row(i).get_name()) == name) {
                EXPECT_TRUE(dialog.edit(i, text)) << name;
                return;
            }
        ADD_FAILURE() << name;
    }
};

TEST_F(ResamplingTest, FeaturesKeepTheirPlaceAndUndoBringsAllBack)
{
    const SPMDataStream before = document.getImage(0);
    document.setString("\\Void points", "5", 0);
    const auto textsBefore = document.contentState().texts;
    for (const resample_choice& choice : {resample_choice{4, 2, interpolation::nearest},
                                          {4, 2, interpolation::linear},
                                          {16, 8, interpolation::linear},
                                          {16, 8, interpolation::cubic},
                                          {11, 4, interpolation::cubic}}) {
        ASSERT_EQ(resample_image(document, 0, choice), "");
        const SPMDataStream& made = document.getImage(0);
        EXPECT_EQ(document.getSubImagesNumber(0), 2u);
        EXPECT_EQ(document::unmeasured_points(document, 0), 0u);
        const VLAxis& x = document.getAxis(0, 0, 0);
        const VLAxis& y = document.getAxis(0, 0, 1);
        EXPECT_DOUBLE_EQ(x.scale * choice.width, 2.0) << "the whole stays as wide";
        EXPECT_DOUBLE_EQ(document.getAxis(0, 1, 0).scale * choice.width, 16.0);
        EXPECT_EQ(made.values, before.values);
        for (const unsigned sub : {0u, 1u}) { // away from the edges
            const int column = choice.width / 2, row = choice.height / 2;
            if (choice.height < 4) continue;
            EXPECT_NEAR(document.getDataPoint2S(0, column, row, sub), heightAt(x.at(column), y.at(row)) + 1000.0 * sub,
                        0.51);
        }
        if (choice.method == interpolation::nearest) {
            EXPECT_EQ(document.getDataPoint2S(0, 1, 1, 0), (40 + 60 + 200 + 100) / 2 + 100) << "mean of four";
        }
        EXPECT_TRUE(document.IsModified());
        document.undo(0);
        EXPECT_EQ(document.getImage(0).get_dimension(0), before.get_dimension(0));
        EXPECT_EQ(document.getImage(0).get_dimension(1), before.get_dimension(1));
        EXPECT_EQ(document.getDataPoint2S(0, 7, 3, 1), 1440);
        EXPECT_EQ(document::unmeasured_points(document, 0), 5u);
        EXPECT_STREQ(document.getString("\\Void points", 0), "5");
        EXPECT_EQ(document.contentState().texts, textsBefore) << "as in its file";
        document.redo(0);
        EXPECT_EQ(document::unmeasured_points(document, 0), 0u);
        document.undo(0);
    }
}

TEST_F(ResamplingTest, WhatWasNotMeasuredStaysKnown)
{
    document.setString("\\Void points", "3", 0);
    document.setString("\\Void samples", "of 64: 9-9 62-63", 0); // (1, 1), and (6, 3), (7, 3) of the second
    ASSERT_EQ(resample_image(document, 0, resample_choice{16, 8, interpolation::nearest}), "");
    EXPECT_STREQ(document.getString("\\Void points", 0), "12") << "four each";
    EXPECT_STREQ(document.getString("\\Void samples", 0), "of 256: 34-35 50-51 236-239 252-255");
    document.undo(0);
    EXPECT_STREQ(document.getString("\\Void samples", 0), "of 64: 9-9 62-63");
    ASSERT_EQ(resample_image(document, 0, resample_choice{16, 8, interpolation::linear}), "");
    EXPECT_EQ(document::unmeasured_points(document, 0), 4u * 4u + 3u * 5u) << "all to which one of them adds";
}

TEST_F(ResamplingTest, RefusalsNameTheReasonAndChangeNothing)
{
    EXPECT_EQ(resample_image(document, 0, {0, 4, {}}), "Columns: 0 is not between 1 and 32768");
    EXPECT_EQ(resample_image(document, 0, {4, 40000, {}}), "Rows: 40000 is not between 1 and 32768");
    EXPECT_EQ(document.getImage(0).get_dimension(0).length, 8u);
    EXPECT_FALSE(document.canUndo(0));
    const SPMDataStream curve = heights("Curve", {5});
    document.AddNewImages(&curve, 1);
    EXPECT_NE(resample_image(document, 1, {2, 2, {}}), "");
}

TEST_F(ResamplingTest, TheDialogKeepsSidesAndStepsInAccord)
{
    host.onDialog = [this](CVarListDlg& dialog) {
        const SPMVarList& list = dialog.list();
        edit(dialog, "columns", "4");
        EXPECT_EQ(double(list["rows"]), 2.0) << "proportions are kept";
        EXPECT_DOUBLE_EQ(double(list["step.x"]), 0.5);
        EXPECT_DOUBLE_EQ(double(list["step.y"]), 0.5);
        edit(dialog, "proportions", "false");
        edit(dialog, "step.y", "0.12");
        EXPECT_EQ(double(list["rows"]), 8.0) << "1 nm over 0.12 nm, nearest";
        EXPECT_DOUBLE_EQ(double(list["step.y"]), 0.125) << "what 8 rows give";
        EXPECT_EQ(double(list["columns"]), 4.0);
        dialog.EndDialog(CVarListDlg::resultOk);
    };
    EXPECT_TRUE(run_resample(document, 0, 0, 0, nullptr));
    EXPECT_EQ(document.getImage(0).get_dimension(0).length, 4u);
    EXPECT_EQ(document.getImage(0).get_dimension(1).length, 8u);
    host.onDialog = [this](CVarListDlg& dialog) {
        edit(dialog, "rows", "2");
        dialog.EndDialog(CVarListDlg::resultCancel);
    };
    EXPECT_FALSE(run_resample(document, 0, 0, 0, nullptr));
    EXPECT_EQ(document.getImage(0).get_dimension(1).length, 8u);
}

TEST_F(ResamplingTest, ResolutionScalesAxesByATrueDistance)
{
    const SPMDataStream before = document.getImage(0);
    host.onDialog = [this](CVarListDlg& dialog) {
        const SPMVarList& list = dialog.list();
        EXPECT_DOUBLE_EQ(double(list["size.x"]), 2.0);
        EXPECT_DOUBLE_EQ(double(list["distance"]), 1.25); // 3 and 4 samples of 0.25 nm
        edit(dialog, "distance", "2.5");
        EXPECT_DOUBLE_EQ(double(list["step.x"]), 0.5);
        EXPECT_DOUBLE_EQ(double(list["size.y"]), 2.0);
        edit(dialog, "size.x", "2");
        EXPECT_DOUBLE_EQ(double(list["step.x"]), 0.25);
        EXPECT_DOUBLE_EQ(double(list["step.y"]), 0.5);
        edit(dialog, "units.z", "V");
        dialog.EndDialog(CVarListDlg::resultOk);
    };
    EXPECT_TRUE(run_resolution(document, 0, {}, selection_rect{0, 0, 3, 4}, nullptr));
    EXPECT_EQ(document.getAxis(0, 0, 0), VLAxis(0, 0.25, "nm"));
    EXPECT_EQ(document.getAxis(0, 0, 1), VLAxis(0.5, 0.5, "nm"));
    EXPECT_STREQ(document.getAxis(0, 0, unsigned(-1)).get_units(), "V");
    document.undo(0);
    EXPECT_EQ(document.getImage(0).get_dimension(1), before.get_dimension(1));
    EXPECT_EQ(document.getImage(0).values, before.values);
    host.onDialog = [this](CVarListDlg& dialog) {
        edit(dialog, "step.x", "0");
        dialog.EndDialog(CVarListDlg::resultOk);
    };
    EXPECT_FALSE(run_resolution(document, 0, {}, {}, nullptr));
    EXPECT_EQ(host.messages.back(), "Sample X: 0 is no distance between samples");
}

} // namespace
