#include "fixtures.h"

namespace {

TEST_F(DocumentTest, ImagesAreMadeConsistentWhenTheyAreAdded)
{
    SPMDataStream bare;
    bare.Init("point,array,0,2");
    SPMDataStream five;
    five.Init("five,array,5,2");
    SPMDataStream::dimension two;
    two.length = 2;
    five.set_dimension(0, two);
    five.set_dimension(1, two);
    SPMDataStream wide;
    wide.Init("wide,array,3,4");
    const SPMDataStream streams[] = {bare, five, wide};
    document.AddNewImages(streams, 3);
    EXPECT_EQ(document.getImage(0).array_length(), 1u) << "no dimensions: one element";
    EXPECT_EQ(document.getImage(1).array_length(), 8u) << "rounded up to whole sub-images";
    EXPECT_EQ(document.getSubImagesNumber(1), 2u);
    EXPECT_EQ(document.getImage(1).array_type(), SPM_ARRAY_INT16);
    EXPECT_EQ(document.getImage(2).array_type(), SPM_ARRAY_VOID);
    EXPECT_EQ(document.getAxis(1, 5, 1).scale, 1.0) << "a missing axis; the index falls back";
    EXPECT_EQ(document.getAxis(0, 0, unsigned(-1)).scale, 1.0);
}

TEST_F(DocumentTest, AnImageTooLargeForItsCounterIsRefused)
{
    SPMDataStream huge = heights("h", {2, 2});
    huge.get_dimension(0).length = 1u << 20;
    huge.get_dimension(1).length = 1u << 20;
    EXPECT_THROW(document.AddNewImages(&huge, 1), std::length_error);
}

TEST_F(DocumentTest, ADocumentsOwnImageMayBeAddedAgain)
{
    const SPMDataStream stream = heights("a", {2, 2}, 1, 7);
    document.AddNewImages(&stream, 1);
    for (int i = 0; i < 5; ++i) document.AddNewImages(&document.getImage(0), 1);
    EXPECT_EQ(document.getDataPoint2S(5, 1, 1, 0), 10);
}

TEST_F(DocumentTest, RangesOfBytesStayWithinTheirBlock)
{
    SPMDataStream bytes = heights("b", {100}, 2, 1);
    bytes.convert_stream(SPM_ARRAY_UINT8);
    document.AddNewImages(&bytes, 1);
    CMinMaxInfo range;
    // Pairs of the bytes 101, 102 … 200 as 16-bit numbers: from 128 in the upper byte on they are negative.
    document.getMinMaxInfo(0, range, 1);
    EXPECT_EQ(range.minimum, 127 + 256 * 128 - 65536);
    EXPECT_EQ(range.maximum, 125 + 256 * 126);
}

TEST_F(DocumentTest, PointsLieFastestDimensionFirst)
{
    const SPMDataStream volume = heights("v", {2, 3, 4}, 2);
    document.AddNewImages(&volume, 1);
    EXPECT_EQ(document.getDataPoint1S(0, 1, 1), 25);
    EXPECT_EQ(document.getDataPoint2S(0, 1, 2, 0), 5);
    EXPECT_EQ(document.getDataPoint3S(0, 1, 2, 3, 1), 24 + 3 * 6 + 2 * 2 + 1);
    const short patch[] = {-7, -8};
    document.setImageDataS(0, patch, 2, 3, 1);
    EXPECT_EQ(document.getDataPoint1S(0, 4, 1), -8);
    EXPECT_EQ(document.GetDataSize(0), 96u);
}

TEST_F(DocumentTest, RemovingAnImageClosesItsViewsAndRenumbersTheOthers)
{
    for (short i = 0; i < 3; ++i) {
        const SPMDataStream stream = heights(("i" + std::to_string(i)).c_str(), {2}, 1, i);
        document.AddNewImages(&stream, 1);
    }
    fake_view zero(0), one(1), child(1), two(2);
    one.child = &child;
    for (fake_view* view : {&zero, &one, &child, &two}) document.AddView(view);
    document.RemoveImage(1);
    EXPECT_EQ(document.views().size(), 2u);
    EXPECT_EQ(two.image, 1u);
    EXPECT_EQ(two.loads, 1);
    EXPECT_EQ(zero.loads, 0);
    EXPECT_STREQ(document.getImage(two.image).get_name(), "i2");
    EXPECT_EQ(document.getSubImageLength(1), 2u);
}

TEST_F(DocumentTest, StaysOpenWhileItsOnlyViewClosesWithItsImage)
{
    struct owner : IDocumentOwner {
        int closed = 0;
        void documentClosed(CDocument&) override { ++closed; }
    } watching;
    const SPMDataStream stream = heights("a", {2});
    document.AddNewImages(&stream, 1);
    fake_view view(0);
    document.AddView(&view);
    document.setOwner(&watching);
    document.RemoveImage(0);
    EXPECT_EQ(watching.closed, 0);
    EXPECT_TRUE(document.autoDelete);
    fake_view other(0);
    document.AddView(&other);
    document.RemoveView(&other);
    EXPECT_EQ(watching.closed, 1);
    document.setOwner(nullptr);
}

TEST_F(DocumentTest, SimilarImagesShareAnAxisInEachDimension)
{
    SPMDataStream nano = heights("a", {4, 2}), micro = nano, longer = heights("c", {5, 2});
    SPMDataStream::dimension x = micro.get_dimension(0), y = micro.get_dimension(1);
    x.set_axis(1, VLAxis(0, 0.25, "nm"));
    x.set_axis(0, VLAxis(0, 7, "V"));
    y.set_axis(0, VLAxis(500, 250, "pm"));
    micro.set_dimension(0, x);
    micro.set_dimension(1, y);
    const SPMDataStream streams[] = {nano, micro, longer};
    document.AddNewImages(streams, 3);
    EXPECT_TRUE(document.similar_images(0, 1));
    EXPECT_FALSE(document.similar_images(0, 2));
    EXPECT_FALSE(document.similar_images(0, 3));
}

TEST_F(DocumentTest, StringsBelongToTheDocumentOrToAnImage)
{
    const SPMDataStream stream = heights("a", {2});
    document.AddNewImages(&stream, 1);
    document.setString("\\Date", "today", 0);
    document.setString("b", "2", 0);
    document.setString("note", "n", unsigned(-1));
    EXPECT_STREQ(document.getString("\\Date", unsigned(-1)), "");
    EXPECT_EQ(document.getStringsNames(nullptr, 0, 0), 2u);
    std::string names[2];
    EXPECT_EQ(document.getStringsNames(names, 1, 0), 1u);
    EXPECT_EQ(names[0], "\\Date");
    CStorageDoc other;
    other.AddNewImages(&stream, 1);
    other.copyStrings(&document, 0, 0);
    EXPECT_STREQ(other.getString("b", 0), "2");
    other.copyStrings(&other, 0, 0);
    other.copyStrings(&document, unsigned(-1), 0);
    EXPECT_STREQ(other.getString("note", unsigned(-1)), "n");
    other.clearStrings(0);
    EXPECT_STREQ(other.getString("b", 0), "");
}

TEST_F(DocumentTest, DerivedDocumentsAreCountedCopies)
{
    const SPMDataStream stream = heights("a", {2});
    document.AddNewImages(&stream, 1);
    document.SetPathName(L"/data/night.001", false);
    document.setString("k", "v", 0);
    CStorageDoc first, second, grandchild;
    for (CStorageDoc* each : {&first, &second, &grandchild}) each->AddNewImages(&stream, 1);
    document.Derive(0, first);
    document.Derive(0, second);
    EXPECT_EQ(first.GetTitle(), L"Copy 1 of night");
    EXPECT_EQ(second.GetTitle(), L"Copy 2 of night");
    EXPECT_STREQ(second.getString("k", 0), "v");
    second.Derive(0, grandchild);
    EXPECT_EQ(grandchild.GetTitle(), L"Copy 3 of night");
}

TEST_F(DocumentTest, PathsAreMadeAbsoluteAndNameTheDocument)
{
    std::filesystem::current_path(folder.path);
    document.SetPathName(L"sub/./a.b.spm", true);
    EXPECT_EQ(document.GetPathName(), (std::filesystem::current_path() / "sub/a.b.spm").wstring());
    EXPECT_EQ(document.GetTitle(), L"a.b");
    ASSERT_EQ(app.recentFiles().size(), 1u);
    EXPECT_EQ(app.recentFiles()[0], document.GetPathName());
    const std::wstring deep = L"/" + std::wstring(300, L'x') + L"/" + std::wstring(200, L'y') + L".spm";
    document.SetPathName(deep.c_str(), false);
    EXPECT_EQ(document.GetPathName(), deep);
}

} // namespace
