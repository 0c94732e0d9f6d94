// Texts below charts.
#include "view/axes/text_rows.h"

#include "base/text.h"

#include <gtest/gtest.h>

namespace {

using namespace view;

TEST(TextRows, GoOnBehindATabWhereThereIsNoRoom)
{
    const auto fits = [](std::wstring_view row) { return row.size() <= 10; };
    const struct {
        const wchar_t *text, *rows;
    } cases[] = {
        {L"dX: 1\tdY: 2\r\n", L"dX: 1\ndY: 2"},
        {L"a\tb\tc\r\n\tLine: 5", L"a\tb\tc\n\tLine: 5"},
        {L"0123456789ab\tc", L"0123456789ab\nc"},
        {L"a\t0123456789ab", L"a\n0123456789ab"},
        {L"", L""},
    };
    for (const auto& each : cases) EXPECT_EQ(in_rows(each.text, fits), each.rows) << base::narrow(each.text);
}

TEST(TextRows, MoveUpWhereTheMarginIsSmall)
{
    EXPECT_EQ((rows_below{20, 45, 15, 1}.space()), 20);
    EXPECT_EQ((rows_below{20, 45, 15, 2}.space()), 15);
    EXPECT_EQ((rows_below{20, 45, 15, 3}.space()), 15) << "not over the numbers of the axis";
    EXPECT_EQ((rows_below{20, 10, 15, 1}.space()), 0);
}

} // namespace
