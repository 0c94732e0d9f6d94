#include "fixtures.h"

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

} // namespace
