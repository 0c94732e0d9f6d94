#include "document/samples/point_counts.h"
#include "surface/figures/resampling.h"
#include "surface/slope_fixture.h"

namespace {

using namespace surface;
using primitives::interpolation;

using ResamplingTest = SlopeTest;

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

} // namespace
