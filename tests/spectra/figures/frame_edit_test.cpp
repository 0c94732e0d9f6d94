// What an edit of a spectrum leaves in its document.
#include "spectra/figures/frame_edit.h"

#include "document/fixtures.h"
#include "document/samples/point_counts.h"

namespace {

using samples = std::vector<std::int16_t>;

class FrameEditTest : public DocumentTest {
protected:
    void SetUp() override
    {
        const SPMDataStream streams[] = {heights("Other", {2}), heights("Topo", {3, 2}, 2)};
        document.AddNewImages(streams, 2);
        document.AddView(&view);
    }
    void TearDown() override { document.RemoveView(&view); }
    samples content() const
    {
        const auto* data = static_cast<const short*>(document.getImageDataS(1, 0));
        return {data, data + document.getImage(1).array_length()};
    }
    fake_view view{1};
};

TEST_F(FrameEditTest, ChangesOneFrameAndCanBeUndone)
{
    view.hints.clear();
    spectra::replace_frame(document, 1, 1, samples{9, 8, 7, 6, 5, 4});
    EXPECT_EQ(content(), (samples{0, 1, 2, 3, 4, 5, 9, 8, 7, 6, 5, 4}));
    EXPECT_EQ(view.hints, (std::vector<std::uint32_t>{0x10102}));
    EXPECT_TRUE(document.IsModified());
    document.undo(1);
    EXPECT_EQ(content(), (samples{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}));
}

TEST_F(FrameEditTest, GivesTheImageTheShapeOfTheFrame)
{
    view.hints.clear();
    document.setString("\\Void points", "5", 1);
    document.setString("\\Void samples", "of 6: 0-4", 1);
    spectra::replace_frame(document, 1, 0, samples{0, 1, 2, 3, 4, 5}, 3, 2);
    EXPECT_EQ(document::unmeasured_points(document, 1), 5u) << "of equal size";
    document.undo(1);
    spectra::replace_frame(document, 1, 0, samples{0, 1, 2, 3, 4, 5}, 2, 3);
    EXPECT_FALSE(document.strings(1).contains("\\Void samples")) << "in another shape they lie elsewhere";
    document.undo(1);
    EXPECT_STREQ(document.getString("\\Void samples", 1), "of 6: 0-4");
    view.hints.clear();
    spectra::replace_frame(document, 1, 0, samples(20, 3), 5, 4);
    EXPECT_EQ(document::unmeasured_points(document, 1), 0u) << "those of another size are counted";
    EXPECT_EQ(document.getImage(1).get_dimension(0).length, 5u);
    EXPECT_EQ(document.getImage(1).get_dimension(1).length, 4u);
    EXPECT_EQ(document.getSubImagesNumber(1), 1u);
    EXPECT_EQ(content(), samples(20, 3));
    EXPECT_EQ(view.hints, (std::vector<std::uint32_t>{0x10001, 0x10102}));
    document.undo(1);
    EXPECT_EQ(document.getImage(1).get_dimension(0).length, 3u);
    EXPECT_EQ(document.getSubImagesNumber(1), 2u);
    EXPECT_STREQ(document.getString("\\Void points", 1), "5");
}

} // namespace
