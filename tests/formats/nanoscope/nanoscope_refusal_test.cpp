#include "formats/nanoscope/nanoscope_fixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace nanoscope_fixture;
using testing::HasSubstr;

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

struct bad_file {
    const char* name;
    std::string bytes;
    const char* reason;
};

void PrintTo(const bad_file& row, std::ostream* out) { *out << row.name; }

class NanoscopeRefuses : public testing::TestWithParam<bad_file> {};

TEST_P(NanoscopeRefuses, WithAReason)
{
    const auto result = read(GetParam().bytes);
    ASSERT_FALSE(result);
    EXPECT_THAT(result.error().reason, HasSubstr(GetParam().reason));
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

INSTANTIATE_TEST_SUITE_P(
    Damaged, NanoscopeRefuses,
    testing::Values(
        bad_file{"OtherFile", "hello", "not a NanoScope header"}, bad_file{"Empty", "", "header"},
        bad_file{"TextTransfer", without_crs(good_file()), "line ends"},
        bad_file{"TextTransferOfVersion2", "Data_File_Type 7\nnum_samp = 1\n" + std::string(4096, '\0'), "line ends"},
        bad_file{"TextTransferOfVersion2FromUnix", "Data_File_Type 7\r\r\nnum_samp = 1\r\r\n" + std::string(4096, '\0'),
                 "line ends"},
        bad_file{"HeaderCut", good_file().substr(0, 2000), "cut short"},
        bad_file{"SamplesCut", good_file().substr(0, 4100), "cut short"},
        bad_file{"NoHeaderLength", changed("\\Data length: 4096", "\\Data-length: 4096"), "Data length of the header"},
        bad_file{"HugeLength", changed("length: 16\r\n", "length:1e9\r\n"), "beyond the end of the file"},
        bad_file{"LengthNoNumber", changed("length: 16\r\n", "length: xx\r\n"), "Data length is missing"},
        bad_file{"OffsetInHeader", changed("offset: 4096", "offset: 1000"), "inside the header"},
        bad_file{"OffsetBeyond", changed("offset: 4096", "offset: 9096"), "beyond the end of the file"},
        bad_file{"NoOffset", changed("\\Data offset: 4096", "\\Data-offset: 4096"), "Data offset is missing"},
        bad_file{"OffsetDamaged", changed("offset: 4096\r", "offset: 4096x"), "Data offset is missing or no number"},
        bad_file{"LengthOfNoShape", changed("length: 16\r\n", "length: 12\r\n"), "does not fit Data length 12"},
        bad_file{"Overlap", overlapping_file(), "images overlap"},
        bad_file{"ForceOfNoShape", force_file("\\Samps/line: 5 4"), "do not fit Data length 16"},
        bad_file{"ForceWithoutCount", force_file("\\Samps/line: 0 8"), "do not fit Data length 16"},
        bad_file{"TrenchOfTooLongRows", force_file("\\x: 1", "FOLVAR"), "the count of a row exceeds"},
        bad_file{"ForceAsText", "?*Force file list\r\n", "not a NanoScope header"},
        bad_file{"NoImage", build({}), "no image list"},
        bad_file{"TextShort",
                 "?*File list\r\n\\*Ciao image list\r\n\\Samps/line: 2\r\n\\Number of lines: 2\r\n"
                 "\\*File list end\r\n1 2 3 x",
                 "more samples than the file holds"},
        bad_file{"TextHuge",
                 "?*File list\r\n\\*Ciao image list\r\n\\Samps/line: 65536\r\n\\Number of lines: 65536\r\n"
                 "\\*File list end\r\n1 2 3",
                 "more samples than the file holds"},
        bad_file{"TextZero", "?*File list\r\n\\*Ciao image list\r\n\\Samps/line: 0\r\n\\Number of lines: 2\r\n",
                 "Samps/line"},
        bad_file{"Version2Cut", "Data_File_Type 7\r\nnum_samp = 2\r\n", "2048 bytes"},
        bad_file{"Version2Huge", "Data_File_Type 7\r\nnum_samp = 65536\r\n" + std::string(3000, '\x1A'), "num_samp"},
        bad_file{"Version2NoSide", "Data_File_Type 7\r\nnum_samp = -2\r\n" + std::string(3000, '\x1A'), "num_samp"}),
    [](const auto& row) { return std::string(row.param.name); });

// Each cut is a block of its own, so that the sanitizers see every read past its end.
TEST(NanoscopeCut, AtEveryByteIsRefusedWithAReason)
{
    const std::string wide = good_file("0x09200000", std::string(32, '\x55'));
    for (const std::string& file : {good_file(), wide}) {
        ASSERT_TRUE(read(file));
        for (std::size_t length = 0; length < file.size(); ++length) {
            const auto result = read(file.substr(0, length));
            ASSERT_FALSE(result) << length;
            ASSERT_FALSE(result.error().reason.empty()) << length;
        }
    }
}

TEST(NanoscopeCut, ATextFileGivesAnImageOnlyWhenAllNumbersAreThere)
{
    const std::string file = "?*File list\r\n\\*Ciao image list\r\n\\Samps/line: 2\r\n\\Number of lines: 2\r\n"
                             "\\@2:Z scale: V (1 V/LSB) 2 V\r\n\\*File list end\r\n1 2 3 4";
    for (std::size_t length = 0; length < file.size(); ++length) EXPECT_FALSE(read(file.substr(0, length))) << length;
    EXPECT_TRUE(read(file));
}

TEST(NanoscopeCut, AnyHeaderByteMayBeWrong)
{
    const std::string file = good_file();
    const std::size_t textEnd = file.find('\x1A');
    for (std::size_t at = 0; at < textEnd; ++at)
        for (const char wrong : {'\0', '9', '\\', ':', '\n', '\xFF'}) {
            std::string damaged = file;
            damaged[at] = wrong;
            const auto result = read(damaged);
            ASSERT_TRUE(result || !result.error().reason.empty());
        }
}

} // namespace
