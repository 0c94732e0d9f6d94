#include "base/SPMVar.h"
#include "base/text.h"
#include "base/text/six_digits.h"
#include "support/temporary_folder.h"

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>

namespace {

/// Builds the German locale, which writes a decimal comma, and makes it the program's.
class DecimalComma : public testing::Test {
protected:
    void SetUp() override
    {
        const std::string made = folder / "de_DE.UTF-8";
        const std::string command = "localedef -c -i de_DE -f UTF-8 '" + made + "' >/dev/null 2>&1";
        if (std::system(command.c_str()) != 0) GTEST_SKIP() << "localedef cannot build de_DE.UTF-8 here";
        setenv("LOCPATH", folder.path.c_str(), 1);
        ASSERT_NE(std::setlocale(LC_ALL, "de_DE.UTF-8"), nullptr);
        ASSERT_EQ(printed(), "1,5");
    }
    void TearDown() override
    {
        std::setlocale(LC_ALL, "C");
        unsetenv("LOCPATH");
    }
    static std::string printed()
    {
        char text[32];
        std::snprintf(text, sizeof text, "%.1f", 1.5);
        return text;
    }

    temporary_folder folder;
};

TEST_F(DecimalComma, LeavesNumbersAlone)
{
    EXPECT_EQ(base::formatted("%.2f %g", 1.5, 2.5e-7), "1.50 2.5e-07");
    EXPECT_EQ(printed(), "1,5"); // the program's locale is back
    EXPECT_EQ(base::general(0.25), "0.25");
    EXPECT_EQ(base::shortest(0.1), "0.1");
    EXPECT_EQ(base::whole_number("2.5"), 2.5);
    EXPECT_EQ(base::leading_number("2,5"), 2.0);
    EXPECT_EQ(base::six_digits(1.23456789), 1.23457);
    SPMVar var;
    var.Init("x(X),double,-1.5,2.5,0.25");
    EXPECT_EQ(var = -9.0, -1.5);
    EXPECT_TRUE(var.from_string("0.75"));
    EXPECT_EQ(var.as_string(), smart_string("0.75"));
    SPMVar text;
    text.Init("s,string");
    text.set_string("1.25");
    EXPECT_EQ(double(text), 1.25);
}

} // namespace
