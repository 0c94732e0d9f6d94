#include "fixtures.h"
#include "formats/shared/zip_fixture.h"

#include <algorithm>
#include <filesystem>
#include <sys/stat.h>

// Foreign files on their way into a document.

namespace {

std::wstring small_file()
{
    return (std::filesystem::path(VLDV_TEST_DATA).parent_path().parent_path() / "formats/data/mdt/scans.mdt").wstring();
}

TEST_F(DocumentTest, PipesAndDevicesAreRefusedAndNotWaitedFor)
{
    ASSERT_EQ(mkfifo((folder / "pipe.spm").c_str(), 0600), 0); // opening it would never return: nobody writes
    EXPECT_FALSE(document.OnOpenDocument((folder / "pipe.spm").wstring().c_str()));
    EXPECT_NE(host.messages.back().find("pipe.spm: this is a pipe"), std::string::npos) << host.messages.back();
    EXPECT_FALSE(document.OnOpenDocument(L"/dev/zero"));
    EXPECT_NE(host.messages.back().find("/dev/zero: this is a device"), std::string::npos) << host.messages.back();
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

TEST_F(DocumentTest, WhatOneFormatRefusesIsTriedAsTheNext)
{
    const std::string table = "1 2 3 4\n5 6 7 8\n", ragged = table + "9\n1 2 3 4\n";
    const std::string columns = "line 3 has 1 value where line 1 has 4";
    const struct {
        const char* name;
        std::string content;
        SupportedFileTypes type;
        std::string reason; ///< empty when it is read
    } rows[] = {
        {"m.csv", table, FILE_TEXT, ""},
        {"m", table, FILE_TEXT, ""},
        {"m.par", table, FILE_TEXT, ""},
        {"m.img", table, FILE_TEXT, ""},
        {"m.tmd", table, FILE_TEXT, ""},
        {"m.txt", ragged, FILE_TEXT, columns},
        {"m.csv", ragged, FILE_UNKNOWN, "the format of this file is not known; as a table of numbers: " + columns},
        {"m.tmd", ragged, FILE_TMD, "not a TrueMap file; Scan 8 files have no public layout and are not supported"},
        {"m", std::string("\0\0\0\0\4 no tree", 13), FILE_UNKNOWN, "the format of this file is not known"},
        {"m.csv", "\x7F\x45LF", FILE_UNKNOWN, "the format of this file is not known"},
        {"m.spm", formats::stored_zip({{"image", "1"}, {"main.xml", "<s/>"}}), FILE_UNKNOWN,
         "\"main.xml\" is not the first entry of the archive; another program has packed it anew"},
        {"m.zip", formats::stored_zip({{"image", "1"}}), FILE_UNKNOWN, "an archive of a format that is not known"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        write_file(folder / row.name, row.content);
        const std::wstring path = (folder / row.name).wstring();
        if (row.reason.empty())
            EXPECT_TRUE(document.OnOpenDocument(path.c_str()));
        else
            EXPECT_THROW(document.OnOpenDocument(path.c_str()), CArchiveException);
        EXPECT_EQ(document.fileType, row.type);
        EXPECT_EQ(document.getImagesNumber(), row.reason.empty() ? 1u : 0u);
        const std::string& told = document.getReadError();
        EXPECT_EQ(told.substr(0, told.find(" (at byte")), row.reason);
    }
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

TEST_F(DocumentTest, WarningsOfAReaderAreToldAndKeptAsText)
{
    write_file(folder / "short.txt", "1.5 2 3 4\n5 6 7 8.5\n9\n");
    ASSERT_TRUE(document.OnOpenDocument((folder / "short.txt").wstring().c_str()));
    const std::string warning = "The last line, 3, was left out: it has 1 value of 4";
    EXPECT_EQ(document.getReadWarnings(), std::vector{warning});
    EXPECT_STREQ(document.getString("\\Reader note", unsigned(-1)), warning.c_str());
    EXPECT_EQ(host.outputLines, std::vector{"short.txt: " + warning});

    ASSERT_TRUE(document.OnOpenDocument(small_file().c_str()));
    EXPECT_TRUE(document.getReadWarnings().empty()) << "those of the file before are gone";
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
