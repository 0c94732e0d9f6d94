#include "fixtures.h"

#include <algorithm>
#include <filesystem>

// Foreign files on their way into a document.

namespace {

std::wstring small_file()
{
    return (std::filesystem::path(VLDV_TEST_DATA).parent_path() / "formats/data/mdt/scans.mdt").wstring();
}

TEST_F(DocumentTest, ReadingTellsItsProgress)
{
    std::vector<double> told;
    document.onReadProgress = [&](double done) {
        told.push_back(done);
        return true;
    };
    ASSERT_TRUE(document.OnOpenDocument(small_file().c_str()));
    EXPECT_EQ(document.getImagesNumber(), 1u);
    EXPECT_EQ(document.fileType, FILE_MDT);
    ASSERT_FALSE(told.empty());
    for (const double done : told) EXPECT_TRUE(done >= 0.0 && done <= 1.0) << done;
    EXPECT_FALSE(document.isReadCancelled());
}

TEST_F(DocumentTest, ReadingThatIsCancelledLeavesAnEmptyDocument)
{
    document.onReadProgress = [](double) { return false; };
    EXPECT_THROW(document.OnOpenDocument(small_file().c_str()), CArchiveException);
    EXPECT_TRUE(document.isReadCancelled());
    EXPECT_EQ(document.getImagesNumber(), 0u);
    document.onReadProgress = nullptr;
    EXPECT_TRUE(document.OnOpenDocument(small_file().c_str())) << "and can be filled again";
    EXPECT_FALSE(document.isReadCancelled());
}

/// 2048 by 2048 samples of 16 bits in one piece, behind the header of an old image.
std::wstring large_file(const temporary_folder& folder)
{
    constexpr unsigned side = 2048;
    std::string text =
        "Data_File_Type 7\r\nnum_samp = " + std::to_string(side) + "\r\nscan_sz = 100\r\nz_scale = 1\r\n\x1A";
    text.resize(2048);
    text.resize(text.size() + std::size_t{2} * side * side);
    write_file(folder / "large.000", text);
    return (folder / "large.000").wstring();
}

// Whatever a reader tells by itself.
TEST_F(DocumentTest, LargeReadsTellTheHostAndStopWhenItSays)
{
    const std::wstring file = large_file(folder);
    ASSERT_TRUE(document.OnOpenDocument(file.c_str()));
    const std::vector<double> told = host.progressTold;
    ASSERT_GE(told.size(), 2u) << "of 8 MiB";
    EXPECT_TRUE(std::ranges::is_sorted(told));
    EXPECT_GT(told.back(), 0.4);
    EXPECT_LE(told.back(), 1.0);

    host.cancelAfter = told.size() + 1;
    EXPECT_THROW(document.OnOpenDocument(file.c_str()), CArchiveException);
    EXPECT_TRUE(document.isReadCancelled());
    EXPECT_EQ(document.getReadError(), "reading was cancelled");
    EXPECT_EQ(document.getImagesNumber(), 0u);
    EXPECT_EQ(host.progressTold.size(), told.size() + 1) << "asked no more";
    EXPECT_EQ(host.waiting, 0);
}

// Volumes may take half of the memory there is.
TEST_F(DocumentTest, SamplesOfARecordingAreMovedIn)
{
    formats::recording recording;
    recording.items.emplace_back(formats::recorded_image{heights("a", {4, 3, 2}, 2), {{"\\Void points", "3"}}});
    recording.items.emplace_back(formats::recorded_image{heights("a", {4, 3}), {}});
    const void* const samples = std::get<formats::recorded_image>(recording.items[0]).stream.array_data();
    ASSERT_TRUE(document.addRecording(recording));
    ASSERT_EQ(document.getImagesNumber(), 2u);
    EXPECT_EQ(document.getImage(0).array_data(), samples);
    EXPECT_EQ(document.getSubImagesNumber(0), 2u);
    EXPECT_EQ(document.getSubImageLength(0), 24u);
    EXPECT_STREQ(document.getString("\\Void points", 0), "3");
    EXPECT_STREQ(document.getImage(1).get_name(), "a1");
}

TEST_F(DocumentTest, ContainersCanBeCancelledToo)
{
    const SPMDataStream images[] = {heights("a", {8, 8}), heights("b", {8, 8})};
    document.AddNewImages(images, 2);
    const std::wstring path = (folder / "two.spm").wstring();
    ASSERT_TRUE(document.OnSaveDocument(path.c_str()));
    host.cancelAfter = 1;
    EXPECT_THROW(document.OnOpenDocument(path.c_str()), CArchiveException);
    EXPECT_EQ(document.getImagesNumber(), 0u);
}

} // namespace
