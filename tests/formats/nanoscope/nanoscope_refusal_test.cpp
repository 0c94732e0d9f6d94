#include "formats/instrument_fixture.h"
#include "formats/nanoscope/nanoscope.h"
#include "formats/nanoscope/nanoscope_fixture.h"

#include <gtest/gtest.h>

using namespace nanoscope_fixture;

namespace {

std::string good_file(const std::string& version = "0x05120000",
                      const std::string& samples = samples16({1, 2, 3, 4, 5, 6, 7, 8}))
{
    file_parts parts;
    parts.fileLines[0] = "\\Version: " + version;
    parts.images = {height_part(samples)};
    return build(parts);
}

/// The good file with one piece of text replaced by another of the same length.
std::string changed(const std::string& from, const std::string& to)
{
    std::string file = good_file();
    EXPECT_EQ(from.size(), to.size());
    const std::size_t at = file.rfind(from, 4096);
    EXPECT_NE(at, std::string::npos) << from;
    return file.replace(at, from.size(), to);
}

std::string force_file(const char* line, const char* context = "FOL")
{
    file_parts parts;
    parts.magic = "\\*Force file list";
    parts.images = {{{line, std::string("\\Start context: ") + context},
                     samples16({1, 2, 3, 4, 5, 6, 7, 8}),
                     "\\*Ciao force image list"}};
    return build(parts);
}

std::string overlapping_file()
{
    file_parts parts;
    parts.images = {height_part(samples16({1, 2, 3, 4, 5, 6, 7, 8})), height_part("")};
    std::string file = build(parts);
    const std::string claim = "\\Data offset: 4112\r\n\\Data length: 0\r\n\\Samps/line: 4\r\n";
    const std::string lie = "\\Data offset: 4096\r\n\\Data length: 16\r\n\\Samps/line:4\r\n";
    return file.replace(file.find(claim), claim.size(), lie);
}

std::string without_crs(std::string file)
{
    std::erase(file, '\r');
    return file;
}

std::string text_file(const char* samples, const char* lines, const char* numbers)
{
    return "?*File list\r\n\\*Ciao image list\r\n\\Samps/line: " + std::string(samples) +
           "\r\n\\Number of lines: " + lines + "\r\n\\@2:Z scale: V (1 V/LSB) 2 V\r\n\\*File list end\r\n" + numbers;
}

std::string version2_file(const char* samples, const char* lineEnd)
{
    std::string file = "Data_File_Type 7" + std::string(lineEnd) + "num_samp = " + samples + lineEnd;
    file.resize(5000, '\x1A');
    return file;
}

TEST(Nanoscope, RefusesWhatCannotBe)
{
    instrument_fixture::expect_refused(
        formats::read_nanoscope,
        {
            {"hello", "not a NanoScope header"},
            {"", "header"},
            {without_crs(good_file()), "line ends"},
            {version2_file("1", "\n"), "line ends"},
            {version2_file("1", "\r\r\n"), "line ends"},
            {good_file().substr(0, 2000), "cut short"},
            {good_file().substr(0, 4100), "cut short"},
            {changed("\\Data length: 4096", "\\Data-length: 4096"), "Data length of the header"},
            {changed("length: 16\r\n", "length:1e9\r\n"), "beyond the end of the file"},
            {changed("length: 16\r\n", "length: xx\r\n"), "Data length is missing"},
            {changed("length: 16\r\n", "length: 12\r\n"), "does not fit Data length 12"},
            {changed("offset: 4096", "offset: 1000"), "inside the header"},
            {changed("offset: 4096", "offset: 9096"), "beyond the end of the file"},
            {changed("offset: 4096\r", "offset: 4096x"), "Data offset is missing or no number"},
            {overlapping_file(), "images overlap"},
            {force_file("\\Samps/line: 5 4"), "do not fit Data length 16"},
            {force_file("\\Samps/line: 0 8"), "do not fit Data length 16"},
            {force_file("\\x: 1", "FOLVAR"), "the count of a row exceeds"},
            {"?*Force file list\r\n", "not a NanoScope header"},
            {build({}), "no image list"},
            {text_file("2", "2", "1 2 3 x"), "more samples than the file holds"},
            {text_file("65536", "65536", "1 2 3"), "more samples than the file holds"},
            {text_file("0", "2", ""), "Samps/line"},
            {"Data_File_Type 7\r\nnum_samp = 2\r\n", "2048 bytes"},
            {version2_file("65536", "\r\n"), "num_samp"},
            {version2_file("-2", "\r\n"), "num_samp"},
        });
}

// Each cut is a block of its own, so that the sanitizers see every read past its end.
TEST(NanoscopeCut, AtEveryByteIsRefusedWithAReason)
{
    const std::string wide = good_file("0x09200000", std::string(32, '\x55'));
    for (const std::string& file : {good_file(), wide, text_file("2", "2", "1 2 3 4")}) {
        ASSERT_TRUE(read(file));
        for (std::size_t length = 0; length < file.size(); ++length) {
            const auto result = read(file.substr(0, length));
            ASSERT_FALSE(result) << length;
            ASSERT_FALSE(result.error().reason.empty()) << length;
        }
    }
}

TEST(Nanoscope, SamplesThatAnEditedHeaderMovedAreTold)
{
    const auto told = [](std::string file, std::size_t added, std::size_t removed) {
        const std::size_t date = file.find("Tue Jan");
        file.replace(date, removed, std::string(added, 'x'));
        if (removed > added) file.append(removed - added, 'e'); // what else stands behind the samples
        const auto result = read(file);
        EXPECT_TRUE(result);
        std::string all;
        for (const std::string& each : result->warnings) all += each;
        return all;
    };
    EXPECT_EQ(told(good_file(), 2, 2), "");
    EXPECT_NE(told(good_file(), 5, 3).find("header is 2 bytes longer than it states"), std::string::npos);
    EXPECT_NE(told(good_file(), 2, 3).find("within the stated length of the header"), std::string::npos);
    EXPECT_EQ(told(good_file() + "trailer", 2, 2), "") << "nothing has moved";
}

} // namespace
