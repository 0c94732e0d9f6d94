#include "output/csv_text.h"

#include <gtest/gtest.h>

namespace {

TEST(CsvText, TabsBecomeCommasAndCellsKeepTheirContent)
{
    const struct {
        const char *tabbed, *commas;
    } rows[] = {
        {"Curve\tdF/dZ\r\n1\t-2.5\r\n", "Curve,dF/dZ\n1,-2.5\n"},
        {"a\t\tc", "a,,c\n"},
        {"Ang., deg\tb\n\nx", "\"Ang., deg\",b\n\nx\n"},
        {"say \"so\"\t1", "\"say \"\"so\"\"\",1\n"},
        {"\"two\tcells\r\nand \"\"marks\"\"\"\t1", "\"two\tcells\r\nand \"\"marks\"\"\",1\n"},
        {"\"open", "open\n"},
        {"", ""},
    };
    for (const auto& row : rows) EXPECT_EQ(vldv::output::comma_separated(row.tabbed), row.commas) << row.tabbed;
}

} // namespace
