#include "formats/recorded_values.h"
#include "text_table_fixture.h"

#include <gtest/gtest.h>

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

/// How many points were not measured, "" for none.
std::string void_count(const base::read_result<recording>& result)
{
    return text_of(image_at(result, 0), "\\Void points");
}

TEST(LostRow, KeepsItsPlaceInAMatrixAndIsTold)
{
    const struct {
        const char* voids;
        std::vector<const char*> lines;
        std::vector<std::size_t> places; ///< never halfway
    } groups[] = {
        {"4",
         {"\t\t\t", "---\t---\t---\t---", "x\tx\tx\tx", "n/a\tn/a\tn/a\tn/a", "n/a", "#", "", "  ", "garbage",
          "two words", "a b c d"},
         {1, 3}},
        {"4", {"abc\tabc\tabc\tabc"}, {0, 1, 3, 4}},
        {"3", {"a\tb\tc\t34"}, {0, 1, 3, 4}},
        {"1", {"x\t32\t33\t34", "by\t32\t33\t34", "?\t32\t33\t34"}, {0, 1, 3, 4}},
        {"1", {"#\t32\t33\t34", "#1\t32\t33\t34", "//\t32\t33\t34", ";\t32\t33\t34"}, {0, 1, 3, 4}},
    };
    for (const auto& [voids, lines, places] : groups)
        for (const std::string line : lines)
            for (const std::size_t at : places) {
                SCOPED_TRACE(line + std::to_string(at));
                const auto result = read(channelExport + rows_with(line, at));
                ASSERT_TRUE(result) << result.error().reason;
                ASSERT_EQ(height_of(result), 5u);
                EXPECT_EQ(void_count(result), voids);
                const auto values = physical_of(image_at(result, 0)); // the bottom row first
                for (const std::size_t row : {0u, 1u, 2u, 3u, 4u})
                    if (row != at) { EXPECT_NEAR(values[4 * (4 - row)], 10.0 * static_cast<double>(row) + 11, 1e-3); }
                EXPECT_EQ(result->warnings.size(), 1u);
                EXPECT_TRUE(first_note(result).ends_with(": 1 line, the first is line " + std::to_string(5 + at)));
            }
    for (const auto& [line, voids] : {std::pair("BAD\tnan\t*\t--", "4"), {"\t\t33\t34", "2"}, {"31\t32\t\t", "2"}}) {
        const auto result = read(channelExport + rows_with(line, 3)); // missing points are only counted
        EXPECT_EQ(height_of(result), 5u) << line;
        EXPECT_EQ(void_count(result), voids) << line;
        EXPECT_EQ(first_note(result), "") << line;
    }
}

TEST(LostRow, IsNoneWhereATextStandsOnItsOwn)
{
    const std::string header = channelExport, all = rows_of(0, 5);
    const struct {
        const char* what;
        std::string text;
        unsigned height;
        const char* toldLine; ///< or ""
    } rows[] = {
        {"footer", header + all + "\nMeasured on Monday by me\n", 5, ""},
        {"footer of as many words as columns", header + all + "end of the file\n", 5, ""},
        {"empty fields below", header + all + "\t\t\t\n\t\t\t\n", 5, ""},
        {"empty lines below", header + all + "\n\n\n", 5, ""},
        {"second table with its header", header + all + "\n" + header + all, 10, "5 lines, the first is line 10"},
        {"second table with a title", header + all + "\nBackward\n" + rows_of(0, 4), 9,
         "2 lines, the first is line 10"},
        {"second table of the same size", header + all + "\n" + all, 10, "1 line, the first is line 10"},
        {"two empty lines", header + all + "\n\n" + rows_of(0, 2), 7, "2 lines, the first is line 10"},
        {"remark", header + rows_of(0, 2) + "# resumed\n" + rows_of(2, 5), 5, "1 line, the first is line 7"},
        {"rows parted by empty lines", header + rows_of(0, 1) + "\n" + rows_of(1, 2) + "\n" + rows_of(2, 3), 3, ""},
        {"table without a header", rows_of(0, 1) + "\n" + rows_of(1, 5), 5, "1 line, the first is line 2"},
        {"remark in a table without a header", rows_of(0, 1) + "# resumed\n" + rows_of(1, 5), 5, ""},
    };
    for (const auto& row : rows) {
        const auto result = read(row.text);
        ASSERT_TRUE(result) << row.what << result.error().reason;
        EXPECT_EQ(height_of(result), row.height) << row.what;
        EXPECT_EQ(void_count(result), "") << row.what;
        EXPECT_TRUE(*row.toldLine ? first_note(result).ends_with(row.toldLine) : first_note(result).empty())
            << row.what << first_note(result);
    }
}

TEST(LostRow, OfASingleColumnOrACurveIsTold)
{
    for (const std::string word : {"-", "NaN", "garbage", "***"}) {
        const auto result = read("5\n6\n" + word + "\n8\n9\n");
        ASSERT_EQ(image_at(result, 0).stream.array_length(), 5u) << word;
        EXPECT_NEAR(physical_of(image_at(result, 0))[3], 8, 1e-3) << word;
        EXPECT_TRUE(first_note(result).ends_with("the first is line 3")) << word;
    }
    for (const std::string line : {"n/a n/a", "garbage"}) {
        const auto result = read("0 5\n1 6\n" + line + "\n3 8\n");
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
