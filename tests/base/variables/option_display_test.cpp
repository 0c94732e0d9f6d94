#include "base/variables/option_display.h"

#include "base/streams/monotone_inverse.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

SPMVar declared(const char* declaration, const char* value)
{
    SPMVar variable;
    variable.Init(declaration);
    EXPECT_TRUE(variable.from_string(value)) << declaration;
    return variable;
}

struct edit_case {
    const char* name;
    const char* declaration;
    const char* value; ///< stored before
    const char* shown;
    const char* typed;
    bool taken;
    const char* stored; ///< after
};

class OptionDisplay : public testing::TestWithParam<edit_case> {};

TEST_P(OptionDisplay, ShowsAndTakesBack)
{
    const edit_case& one = GetParam();
    SPMVarList list;
    SPMVar variable = declared(one.declaration, one.value);
    EXPECT_EQ(base::shown_text(list, variable), one.shown);
    EXPECT_EQ(base::take_shown_text(list, variable, one.typed), one.taken);
    EXPECT_STREQ(variable.as_string().c_str(), one.stored);
}

INSTANTIATE_TEST_SUITE_P(
    Fields, OptionDisplay,
    testing::Values(edit_case{"Percent", "x,double,0.0,1.0,,100*##", "0.07", "7", "12.5", true, "0.125"},
                    edit_case{"PercentAsShown", "x,double,0.0,1.0,,100*##", "0.07", "7", "7", true, "0.07"},
                    edit_case{"PercentAboveTheLimit", "x,double,0.0,1.0,,100*##", "0.07", "7", "250", true, "1"},
                    edit_case{"Falling", "x,double,0.0,5.0,,5.0-##", "1", "4", "4.5", true, "0.5"},
                    edit_case{"Reciprocal", "x,double,0.04,,,1.0/##", "1", "1", "0.001", true, "1000"},
                    edit_case{"ReciprocalAtTheLimit", "x,double,0.04,,,1.0/##", "1", "1", "30", true, "0.04"},
                    edit_case{"ReciprocalNeverReached", "x,double,0.04,,,1.0/##", "1", "1", "-2", false, "1"},
                    edit_case{"Pole", "x,double,,,,1.0/##", "1", "1", "-0.5", false, "1"},
                    edit_case{"Power", "x,double,0,1.0,,1.0-##^0.2", "0.00032", "0.8", "0.5", true, "0.03125"},
                    edit_case{"Diameter", "x,int,0,,##*2+1", "4", "9", "15", true, "7"},
                    edit_case{"DiameterBetween", "x,int,0,,##*2+1", "4", "9", "6", true, "3"},
                    edit_case{"LogarithmOfWholeNumbers", "x,int,0,128,-ln(##+1.0)", "0", "-0", "-2.3", true, "9"},
                    edit_case{"Hexadecimal", "x,int,0,(1 << 25)-1,hex(##)", "0x333333", "0x333333", "0xff8000", true,
                              "16744448"},
                    edit_case{"HexadecimalDigits", "x,int,0,(1 << 25)-1,hex(##)", "1", "0x1", "10", true, "16"},
                    edit_case{"HexadecimalNonsense", "x,int,0,(1 << 25)-1,hex(##)", "1", "0x1", "red", false, "1"},
                    edit_case{"HexadecimalOfMore", "x,int,0,100,hex(##*2)", "15", "0x1e", "20", true, "16"},
                    edit_case{"HexadecimalOfText", "x,string,hex(##)", "255", "0xff", "ee", true, "ee"},
                    edit_case{"Steps", "x,int,0,1000,##>>4", "0", "0", "3", true, "48"},
                    edit_case{"Opposite", "x,boolean,!##", "false", "1", "0", true, "true"},
                    edit_case{"WidestLimits", "x,double,-1.7e308,1.7e308,,##*2", "1", "2", "5", true, "2.5"},
                    edit_case{"FromFarAway", "x,double,,,,100*##", "1e305", "1e+307", "5", true, "0.05"},
                    edit_case{"FromInfinity", "x,double,,,,100*##", "inf", "inf", "5", true, "0.05"},
                    edit_case{"Nonsense", "x,double,,,,100*##", "1", "100", "much", false, "1"},
                    edit_case{"Constant", "x,double,,,,3", "1", "3", "4", false, "1"},
                    edit_case{"Plain", "x,double,0,1", "0.1", "0.1", "2", true, "1"},
                    edit_case{"Label", "x,enum,sbs(Side by Side),dbl(Two monitors)", "sbs", "Side by Side",
                              "Two monitors", true, "dbl"},
                    edit_case{"Path", "x,string,filepath(\"A (*.a)|*.a\",1)", "/a/b", "/a/b", "/c", true, "/c"},
                    edit_case{"Choice", "x,string,strlistval(##,0)", "\"Mono\",\"Sans\"", "Mono", "Sans", true,
                              "\"Sans\",\"Mono\""}),
    [](const auto& test) { return test.param.name; });

TEST(OptionDisplayField, TellsWhatKindOfFieldItIs)
{
    const SPMVarList list;
    using kind = base::shown_field::kind;
    const auto path = base::shown_field_of(list, declared("p,string,filepath(\"AVI Files (*.avi)|*.avi\",1)", "x"));
    EXPECT_EQ(path.what, kind::path);
    EXPECT_EQ(path.filter, "AVI Files (*.avi)|*.avi");
    EXPECT_TRUE(path.saves);
    EXPECT_FALSE(base::shown_field_of(list, declared("p,string,filepath(\"All|*\")", "x")).saves);
    EXPECT_EQ(base::shown_field_of(list, declared("c,int,,,hex(##)", "1")).what, kind::hexadecimal);
    const auto fonts = base::shown_field_of(list, declared("f,string,strlistval(##,0)", "\"A\",\"B\""));
    EXPECT_EQ(fonts.choices, (std::vector<std::string>{"A", "B"}));
    EXPECT_EQ(base::shown_field_of(list, declared("d,double,,,,100*##", "1")).what, kind::value);
}

TEST(MonotoneInverse, FindsTheArgumentToTheLastBit)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const auto cube = [](double x) { return x * x * x; };
    for (const double wanted : {-1e30, -8.0, 1e-30, 5.0, 1e200}) {
        const auto found = base::invert_monotone(cube, wanted, {-infinity, infinity, 3.0, false});
        ASSERT_TRUE(found) << wanted;
        EXPECT_NEAR(*found, std::cbrt(wanted), 1e-15 * std::fabs(std::cbrt(wanted)) + 1e-300) << wanted;
    }
    const auto logarithm = [](double x) { return std::log(x); }; // no values below 0
    EXPECT_NEAR(*base::invert_monotone(logarithm, 2.0, {-infinity, infinity, 1.0, false}), std::exp(2.0), 1e-14);
    EXPECT_FALSE(base::invert_monotone(logarithm, NAN, {0.0, 1.0, 1.0, false}));
}

} // namespace
