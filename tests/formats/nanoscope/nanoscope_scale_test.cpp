#include "formats/nanoscope/nanoscope_scale.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace formats;

namespace {

TEST(NanoscopeScale, TypedValuesComeApart)
{
    const auto scaled = parse_nanoscope_value("V [Sens. Zsens] (0.005035400 V/LSB) 329.9950 V");
    EXPECT_EQ(scaled.hardScale, 0.0050354);
    EXPECT_EQ(scaled.hardScaleUnits, "V/LSB");
    const auto nested = parse_nanoscope_value("V [Sens. LogModulus] (0.0004882813 log(Pa)/LSB)       0 log(Pa)");
    EXPECT_EQ(nested.hardScaleUnits, "log(Pa)/LSB");
    EXPECT_EQ(nested.units, "log(Pa)");
    const auto selection = parse_nanoscope_value("S [AmplitudeError] \"Amplitude \"Error\"\"");
    EXPECT_EQ(selection.display, "Amplitude \"Error\"");
    EXPECT_EQ(parse_nanoscope_value("V (0.0054 \u00BA/LSB) 360 \u00BA").units, "\u00B0");
    EXPECT_EQ(nanoscope_units(" \u00E6m"), "\u00B5m"); // byte 0xE6
    for (const std::string damaged : {"\\Data length", "0x0003750000", "0.00x3750"})
        EXPECT_FALSE(parse_nanoscope_value("V [S] (" + damaged + " V/LSB) 151.4807 V").hardScale) << damaged;
    for (const char* cut : {"", "V", "V [Sens", "V [S] (0.1", "S [] \""})
        EXPECT_FALSE(parse_nanoscope_value(cut).value) << cut;
}

TEST(NanoscopeScale, UnitsMultiply)
{
    const struct {
        const char *units, *sensitivity, *result;
        double factor;
    } rows[] = {
        {"V", "nm/V", "nm", 1.0},         {"mV", "", "mV", 1.0},
        {"mV", "nm/V", "nm", 1e-3},       {"V", "V/V", "V", 1.0},
        {"Arb", "1/Arb", "", 1.0},        {"log(Arb)", "log(Pa)/log(Arb)", "log(Pa)", 1.0},
        {"", "nm/V", "nm", 1.0},          {"Arb", "N/m*Arb", "N/m", 1.0},
        {"V", "\u00BA/V", "\u00B0", 1.0}, {"Pa", "nm/V", "Pa*nm/V", 1.0},
        {"V", "~m/V", "\u00B5m", 1.0},
    };
    for (const auto& row : rows) {
        double factor = 0.0;
        EXPECT_EQ(multiply_units(row.units, row.sensitivity, factor), row.result) << row.units << row.sensitivity;
        EXPECT_DOUBLE_EQ(factor, row.factor) << row.units << row.sensitivity;
    }
}

// Steps are products written out from the header lines below.
TEST(NanoscopeScale, FollowsTheHeader)
{
    const std::string lists = "\\*File list\r\n\\*Scanner list\r\n\\@Sens. Zsens: V 20 nm/V\r\n\\@Sens. One: V 1.0 \r\n"
                              "\\@Sens. Zero: V 0 nm/V\r\n\\@Sens. Torn: V 24x.1609 nm/V\r\n\\Z sensitivity: 10\r\n"
                              "\\In sensitivity: 4\r\n\\Z max: 99\r\n"
                              "\\*Controller list\r\n\\Z max: 220\r\n\\In1 max: 10\r\n\\*Ciao image list\r\n";
    const struct {
        const char* image; ///< lines of the image list
        double step;
        const char *units, *origin; ///< a part of it
    } rows[] = {
        {"\\@2:Z scale: V [Sens. Zsens] (9 V/LSB) 330 V", 330.0 * 20 / 65536, "nm", "330 V, Sens. Zsens = 20 nm/V"},
        {"\\@2:Z scale: V [Sens. Zsens] (9 mV/LSB) 330 mV", 0.33 * 20 / 65536, "nm", "330 mV"},
        {"\\Bytes/pixel: 4\r\n\\@3:Z scale: V [Sens. Zsens] (9 V/LSB) 24.576 V", 24.576 * 20 / 4294967296.0, "nm",
         "raw span = 4294967296"},
        {"\\@2:Z scale: V (9 mV/LSB) 4000 mV", 4000.0 / 65536, "mV", "Z scale"},
        {"\\@2:Z scale: V [Sens. One] (9 mV/LSB) 4000 mV", 4000.0 / 65536, "mV", "Sens. One = 1"},
        {"\\@2:Z scale: V [Sens. One] (9 1/LSB) 4", 4.0 / 65536, "V", ""},
        {"\\@2:Image Data: S [Phase] \"Phase\"\r\n\\@2:Z scale: V [Sens. One] (9 1/LSB) 360", 360.0 / 65536, "\u00B0",
         ""},
        {"\\@2:Z scale: V [Sens. Lost] (9 V/LSB) 330 V", 330.0 / 65536, "", "Sens. Lost not found"},
        {"\\@2:Z scale: V [Sens. Torn] (9 V/LSB) 330 V", 330.0 / 65536, "", "Sens. Torn not found"},
        {"\\@2:Z scale: V [Sens. Zero] (9 V/LSB) 330 V", 0.0, "nm", "Sens. Zero = 0 nm/V"},
        {"\\@2:Z scale: V [Sens. Zsens] (9 V/LSB) V", std::nan(""), "", "no number in Z scale"},
        {"\\Z scale: 312.5 nm (0.1 nm/LSB)", 312.5 / 65536, "nm", "Z scale = 312.5 nm"},
        {"\\Image data: Height\r\n\\Z scale height: 0.5", 2.0 / 65536 * 0.5 * 220 * 10, "nm", "z max = 220"},
        {"\\Image data: Deflection\r\n\\Z scale defl: 0.5\r\n\\Detect sens.: 8", 2.0 / 65536 * 0.5 * 10 * 4 / 8, "nm",
         "detect sens. = 8"},
        {"\\Image data: Phase\r\n\\Z scale phase: 0.5", 180.0 / 65536 * 0.5, "\u00B0", ""},
        {"\\Image data: Frequency\r\n\\Z scale freq: 0.5", 25e6 / 32768 * 0.5, "Hz", ""},
        {"\\Image data: Current\r\n\\Z scale amplitude: 0.5", 2.0 / 32768 * 0.5 * 10 * 4, "nA", ""},
        {"\\Image data: Amplitude\r\n\\Z scale ampl: 0.5", 1.0, "", "the header has not all"},
        {"\\Image data: Friction", 1.0, "", "no Z scale in the header"},
    };
    for (const auto& row : rows) {
        const auto header = parse_nanoscope_header(lists + row.image + "\r\n");
        const value_scale scale = nanoscope_image_scale(header, header.sections.back());
        EXPECT_THAT(scale.step, testing::NanSensitiveDoubleEq(row.step)) << row.image;
        EXPECT_EQ(scale.units, row.units) << row.image;
        EXPECT_THAT(scale.origin, testing::HasSubstr(row.origin));
    }
}

} // namespace
