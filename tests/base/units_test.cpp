#include "base/units.h"

#include "support/allocation_count.h"

#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>

namespace {

struct conversion {
    const char *from, *to;
    double value, expected;
};

const conversion conversions[] = {
    {"nm", "µm", 2500, 2.5},
    {"nm", "μm", 2500, 2.5}, // the Greek letter
    {"~m", "um", 0.1, 0.1},
    {"m", "am", 3, 3e18},
    {"Tm", "fm", 1, 1e27},
    {"cm", "mm", 2.5, 25},
    {"Å", "nm", 5, 0.5},
    {"nm", "\u212B", 0.7, 7}, // the Angstrom sign
    {"Ang", "Angstrom", 3, 3},
    {"inch", "mm", 1, 25.4},
    {"\"", "in", 2, 2},
    {"deg", "arcmin", 1, 60},
    {"°", "arcsec", 2, 7200},
    {"rad", "deg", 3.14159265358979323846, 180},
    {"mrad", "rad", 1, 0.001},
    {"min", "s", 1.5, 90},
    {"h", "ms", 1, 3.6e6},
    {"sec", "s", 4, 4},
    {"mV", "V", 250, 0.25},
    {"nA", "pA", 0.1, 100},
    {"µN", "nN", 1, 1000},
    {"kHz", "Hz", 75, 75000},
    {"°C", "K", 25, 298.15},
    {"K", "degC", 0, -273.15},
    {"°C", "mK", -273.15, 0},
    {"eV", "J", 1, 1.602176634e-19},
    {"J", "keV", 1.602176634e-16, 1},
    {"GPa", "Pa", 2, 2e9},
    {"MOhm", "kΩ", 3, 3000},
    {"nm^2", "µm²", 1e6, 1},
    {"µm2", "nm^2", 1, 1e6},
    {"m^3", "cm3", 1, 1e6},
    {"in^2", "mm^2", 1, 645.16},
    {"mV^2", "V^2", 1, 1e-6},
    {"N/m", "nN/nm", 0.3, 0.3},
    {"nN/nm", "N/m", 40, 40},
    {"pN/nm", "N/m", 1, 0.001},
    {"nm/V", "Å/mV", 100, 1},
    {"K/min", "°C/s", 60, 1}, // a difference, not a temperature
    {"1/nm", "1/µm", 0.5, 500},
    {"V^2/Hz", "mV²/kHz", 1, 1e9},
    {" nm ", "nm", 7, 7},
};

TEST(Units, ConvertWithinTheirKind)
{
    for (const conversion& each : conversions) {
        SCOPED_TRACE(std::string(each.from) + " to " + each.to);
        EXPECT_GT(units_convertable(each.from, each.to), 0);
        EXPECT_GT(units_convertable(each.to, each.from), 0);
        EXPECT_NEAR(convert_size(each.from, each.to, each.value), each.expected, 4e-16 * std::fabs(each.expected));
        const double back = convert_size(each.to, each.from, each.expected);
        EXPECT_NEAR(back, each.value, std::max(1e-12, 4e-16 * std::fabs(each.value)));
    }
}

TEST(Units, OfOtherKindsStayApart)
{
    const char* const apart[][2] = {
        {"nm", "px"},   {"nm", "nV"},    {"nm", "nm^2"},   {"%", "deg"},   {"RGB", "nm"}, {"", "nm"},
        {"N/m", "N"},   {"N/m", "N/V"},  {"m/s", "m/s/s"}, {"px/s", "px"}, {"s", "S"},    {"dB", "dV"},
        {"nPx", "px"},  {"mdeg", "deg"}, {"cV", "V"},      {"m m", "m"},   {"/", "m"},    {"m/", "m"},
        {nullptr, "m"}, {"A", "Å"},      {"PX", "px"},     {"Nm", "nm"},   {"^2", "m^2"}, {"m^4", "m^2"},
    };
    for (const auto& each : apart) {
        EXPECT_EQ(units_convertable(each[0], each[1]), 0) << (each[0] ? each[0] : "null") << " " << each[1];
        EXPECT_EQ(units_convertable(each[1], each[0]), 0) << (each[0] ? each[0] : "null") << " " << each[1];
        EXPECT_EQ(convert_size(each[0], each[1], 3.5), 3.5);
    }
    for (const char* same : {"px", "RGB", "%", "", "what ever", "m/s/s"})
        EXPECT_GT(units_convertable(same, std::string(same).c_str()), 0) << same;
    EXPECT_GT(units_convertable(nullptr, ""), 0);
}

TEST(DefaultUnits, PickTheReadablePrefix)
{
    struct choice {
        const char* units;
        double value;
        const char* chosen;
        double rewritten;
    };
    const choice cases[] = {
        {"nm", 2500, "\u00B5m", 2.5},
        {"um", 7, "\u00B5m", 7},
        {"µm", -0.25, "nm", -250},
        {"nm", 1000, "\u00B5m", 1},
        {"nm", 999.9999999, "nm", 999.9999999},
        {"m", 1e-6, "\u00B5m", 1},
        {"mm", 0.001, "\u00B5m", 1},
        {"m", 1e-25, "am", 1e-7},
        {"m", 4e20, "Tm", 4e8},
        {"nm^2", 2.5e6, "\u00B5m^2", 2.5},
        {"nm²", 999999, "nm^2", 999999},
        {"nm2", 0.5, "pm^2", 5e5},
        {"m^3", 1e-24, "nm^3", 1000}, // up to 1e9
        {"Å", 5e6, "Å", 5e6},
        {"deg", 5000, "deg", 5000},
        {"N/m", 1e-3, "N/m", 1e-3},
        {"nm", 0, "nm", 0},
    };
    for (const choice& each : cases) {
        for (const auto pick : {default_units, default_units_z}) {
            double value = each.value;
            EXPECT_STREQ(pick(each.units, &value), each.chosen) << each.units << " " << each.value;
            EXPECT_NEAR(value, each.rewritten, 2e-16 * std::fabs(each.rewritten)) << each.units << " " << each.value;
        }
    }
    double none = std::numeric_limits<double>::infinity();
    EXPECT_STREQ(default_units("nm", &none), "nm");
    EXPECT_TRUE(std::isinf(none));
    EXPECT_STREQ(default_units(nullptr, &none), "");
}

TEST(BaseUnits, AreTheSameForEveryQuantityOfAKind)
{
    struct quantity {
        const char* units;
        double value;
        const char* base;
        double rewritten;
    };
    const quantity cases[] = {{"nm", 5, "m", 5e-9},
                              {"Å", 5, "m", 5e-10},
                              {"nm^2", 3, "m^2", 3e-18},
                              {"pN", -2, "N", -2e-12},
                              {"nN/nm", 3, "N/m", 3},
                              {"1/nm", 2, "1/m", 2e9},
                              {"min", 2, "s", 120},
                              {"rad", 1, "deg", 180 / 3.14159265358979323846},
                              {"°C", 20, "°C", 20},
                              {"px", 7, "px", 7},
                              {"", 7, "", 7},
                              {"mV/°C", 20, "mV/°C", 20}};
    for (const quantity& each : cases) {
        double value = each.value;
        EXPECT_EQ(base_units(each.units, &value), each.base) << each.units;
        EXPECT_NEAR(value, each.rewritten, 2e-15 * std::fabs(each.rewritten)) << each.units;
    }
}

TEST(DefaultUnits, LeaveOneToThreeDigitsOfAnyValue)
{
    std::mt19937_64 random(4);
    std::uniform_real_distribution<double> exponent(-18, 14.9);
    for (int i = 0; i < 20000; ++i) {
        // Some values lie at the very edges of the prefixes.
        const double power = i % 4 ? exponent(random) : std::floor(exponent(random) / 3) * 3;
        double given = std::pow(10.0, power);
        if (i % 4 == 1) given = std::nextafter(std::pow(10.0, std::floor(power)), 0.0);
        if (given < 1e-18) continue;
        double value = given;
        const std::string units = default_units("m", &value);
        EXPECT_GE(value, 1.0) << given;
        EXPECT_LT(value, 1000.0) << given;
        EXPECT_NEAR(convert_size(units.c_str(), "m", value) / given, 1.0, 2e-15) << given;
    }
}

TEST(Units, DrawingConvertsWithoutAllocation)
{
    const std::size_t before = allocation_count();
    double sum = convert_size("Angstrom", "\xC2\xB5m", 3.0) + convert_size("nN/nm", "N/m", 3.0);
    sum += units_convertable("nm^2", "a unit with a name that is too long for a short string") +
           units_convertable("K", "degC");
    EXPECT_EQ(allocation_count(), before);
    EXPECT_GT(sum, 0);
    const auto* volatile probe = new std::string(100, 'x'); // the counter counts
    EXPECT_GT(allocation_count(), before);
    delete probe;
}

} // namespace
