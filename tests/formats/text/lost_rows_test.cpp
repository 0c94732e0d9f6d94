#include "text_table_fixture.h"

#include <gmock/gmock.h>

// Rows of a table that lost some or all of their numbers, and the texts between rows that are none.

namespace {

using namespace formats;
using namespace instrument_fixture;
using namespace text_table_fixture;

const std::vector<std::string> fiveRows = {"11\t12\t13\t14\n", "21\t22\t23\t24\n", "31\t32\t33\t34\n",
                                           "41\t42\t43\t44\n", "51\t52\t53\t54\n"};

/// The rows with `line` instead of row `at`.
std::string rows_with(const std::string& line, std::size_t at)
{
    std::string text;
    for (std::size_t row = 0; row < fiveRows.size(); ++row) text += row == at ? line + "\n" : fiveRows[row];
    return text;
}

std::string rows_of(std::size_t from, std::size_t to)
{
    std::string text;
    for (std::size_t row = from; row < to; ++row) text += fiveRows[row];
    return text;
}

unsigned height_of(const base::read_result<recording>& result)
{
    return image_at(result, 0).stream.get_dimension(1).length;
}

std::string void_count(const base::read_result<recording>& result)
{
    const auto& strings = image_at(result, 0).strings;
    const auto found = strings.find("\\Void points");
    return found == strings.end() ? "0" : found->second;
}

std::string first_note(const base::read_result<recording>& result)
{
    return result->warnings.empty() ? "" : result->warnings[0];
}

TEST(LostRow, KeepsItsPlaceInAMatrixAndIsTold)
{
    constexpr bool told = true, plain = false; // missing points are only counted
    const struct {
        const char *line, *voids;
        bool isTold;
    } rows[] = {
        {"\t\t\t", "4", told},
        {"---\t---\t---\t---", "4", told},
        {"x\tx\tx\tx", "4", told},
        {"n/a\tn/a\tn/a\tn/a", "4", told},
        {"n/a", "4", told},
        {"#", "4", told},
        {"", "4", told},
        {"  ", "4", told},
        {"garbage", "4", told},
        {"two words", "4", told},
        {"a b c d", "4", told},
        {"x\t32\t33\t34", "1", told},
        {"by\t32\t33\t34", "1", told},
        {"a\tb\tc\t34", "3", told},
        {"#\t32\t33\t34", "1", told},
        {"BAD\tnan\t*\t--", "4", plain},
        {"\t\t33\t34", "2", plain},
        {"31\t32\t\t", "2", plain},
    };
    for (const auto& row : rows)
        for (const std::size_t at : {1u, 3u}) { // never halfway
            const auto result = read(channelExport + rows_with(row.line, at));
            ASSERT_TRUE(result) << row.line << result.error().reason;
            ASSERT_EQ(height_of(result), 5u) << row.line;
            EXPECT_EQ(void_count(result), row.voids) << row.line;
            const auto values = physical_of(image_at(result, 0)); // the bottom row first
            EXPECT_NEAR(values[0], 51, 1e-3) << row.line;
            EXPECT_NEAR(values[16], 11, 1e-3) << row.line;
            const std::string line = ": 1 line, the first is line " + std::to_string(5 + at);
            EXPECT_EQ(first_note(result).ends_with(line), row.isTold) << row.line << first_note(result);
        }
}

TEST(LostRow, KeepsItsPlaceAtTheEnds)
{
    for (const char* line : {"abc\tabc\tabc\tabc", "x\t2\t3\t4", "a\tb\tc\t4"})
        for (const std::size_t at : {0u, 4u}) {
            const auto result = read(channelExport + rows_with(line, at));
            EXPECT_EQ(height_of(result), 5u) << line << at;
            EXPECT_NE(first_note(result).find("line " + std::to_string(5 + at)), std::string::npos) << line;
        }
}

TEST(LostRow, IsNoneWhereATextStandsOnItsOwn)
{
    const std::string header = channelExport, all = rows_of(0, 5);
    const struct {
        const char* what;
        std::string text;
        unsigned height;
        const char* toldLine; ///< or null
    } rows[] = {
        {"footer", header + all + "\nMeasured on Monday by me\n", 5, nullptr},
        {"footer of as many words as columns", header + all + "end of the file\n", 5, nullptr},
        {"empty fields below", header + all + "\t\t\t\n\t\t\t\n", 5, nullptr},
        {"empty lines below", header + all + "\n\n\n", 5, nullptr},
        {"second table with its header", header + all + "\n" + header + all, 10, "5 lines, the first is line 10"},
        {"second table with a title", header + all + "\nBackward\n" + rows_of(0, 4), 9,
         "2 lines, the first is line 10"},
        {"second table of the same size", header + all + "\n" + all, 10, "1 line, the first is line 10"},
        {"two empty lines", header + all + "\n\n" + rows_of(0, 2), 7, "2 lines, the first is line 10"},
        {"remark", header + rows_of(0, 2) + "# resumed\n" + rows_of(2, 5), 5, "1 line, the first is line 7"},
        {"rows parted by empty lines", header + rows_of(0, 1) + "\n" + rows_of(1, 2) + "\n" + rows_of(2, 3), 3,
         nullptr},
        {"table without a header", rows_of(0, 1) + "\n" + rows_of(1, 5), 5, "1 line, the first is line 2"},
        {"remark in a table without a header", rows_of(0, 1) + "# resumed\n" + rows_of(1, 5), 5, nullptr},
    };
    for (const auto& row : rows) {
        const auto result = read(row.text);
        ASSERT_TRUE(result) << row.what << result.error().reason;
        EXPECT_EQ(height_of(result), row.height) << row.what;
        EXPECT_EQ(void_count(result), "0") << row.what;
        if (row.toldLine)
            EXPECT_TRUE(first_note(result).ends_with(row.toldLine)) << row.what << first_note(result);
        else
            EXPECT_EQ(first_note(result), "") << row.what;
    }
}

TEST(LostRow, OfASingleColumnKeepsItsPlace)
{
    for (const char* word : {"-", "NaN", "garbage", "***"}) {
        const auto result = read("5\n6\n" + std::string(word) + "\n8\n9\n");
        ASSERT_EQ(image_at(result, 0).stream.array_length(), 5u) << word;
        EXPECT_NEAR(physical_of(image_at(result, 0))[3], 8, 1e-3) << word;
        EXPECT_TRUE(first_note(result).ends_with("the first is line 3")) << word;
    }
}

TEST(LostRow, OfACurveIsTold)
{
    for (const char* line : {"n/a n/a", "garbage"}) {
        const auto result = read("0 5\n1 6\n" + std::string(line) + "\n3 8\n");
        EXPECT_EQ(image_at(result, 1).stream.array_length(), 3u); // over x, where it is not missed
        EXPECT_TRUE(first_note(result).ends_with("the first is line 3")) << line << first_note(result);
    }
}

TEST(LostRow, CostsNoMoreThanTheFileHolds)
{
    std::string text = channelExport;
    for (int column = 0; column < 4000; ++column) text += "1\t";
    text += std::string(200'000, '\n') + text.substr(channelExport.size()) + "\n"; // 3 GB if each line were a row
    EXPECT_EQ(height_of(read(text)), 2u);
    std::string gaps;
    for (int row = 0; row <= 1 << 20; ++row) gaps += "1\nx\n";
    EXPECT_EQ(told(read(gaps)), "line 2097154 is one of too many that hold no numbers");
}

} // namespace
