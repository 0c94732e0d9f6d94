#include "formats/img/img.h"
#include "formats/instrument_fixture.h"
#include "formats/registry.h"
#include "formats/shared/bytes.h"

#include <cmath>
#include <gtest/gtest.h>

// No real sample of these formats is known: the files are made from their layouts.

namespace {

using namespace formats;
using namespace instrument_fixture;

base::read_result<recording> read(const std::string& bytes) { return instrument_fixture::read(read_img, bytes); }

/// Turbo Pascal's real: exponent + 129, mantissa of 39 bits behind a leading 1, sign in the top bit.
std::string real48(double value)
{
    if (value == 0) return std::string(6, '\0');
    int exponent = 0;
    const double mantissa = 2 * std::frexp(std::fabs(value), &exponent) - 1; // [0, 1)
    const auto bits = static_cast<std::uint64_t>(std::ldexp(mantissa, 39));
    return little_endian(static_cast<std::uint64_t>(exponent + 128), 1) +
           little_endian(bits | (value < 0 ? 1ull << 39 : 0), 5);
}

std::string pascal(const std::string& text) { return little_endian(text.size(), 1) + text; }

const std::string six = in_bytes<std::int16_t>({1, 2, 3, 4, 5, -6});

std::string burleigh(unsigned type)
{
    return le_float(2.1f) + le16(3) + le16(2) + six + std::string(12, '\0') + le32(9000) + le32(3000) + le32(4095) +
           le16(7) + le16(2) + le16(type) + le16(1) + le_float(0.5f) + le_float(1.5f);
}

std::string dme()
{
    // Offsets follow from the fields' sizes one after another.
    return bytes_builder()
               .seek(4048)
               .text(0, "RSCOPE" + le16(3) + le16(4) + le16(4048) + le32(2 * 4 * 2) + "01.02.1999 10:11")
               .text(33, pascal("note"))
               .text(306, le32(3) + le32(2) + real48(300) + real48(100) + real48(-50) + real48(0) + pascal("title"))
               .text(358, real48(0.5) + real48(100) + real48(2) + real48(-3) + real48(4))
               .text(682, real48(2) + real48(1) + real48(5))
               .text(4042, real48(0.5))
               .content +
           six + le16(0x0F0 + 1) + le16(0);
}

std::string sicm(const std::string& mode)
{
    return bytes_builder()
               .seek(830)
               .text(0, le16(50) + le16(3) + le16(2) + real48(4) + real48(8) + real48(10))
               .text(24, real48(3) + real48(7) + real48(8) + real48(1023.96875) + real48(5)) // 4 * 8 times z is 32767
               .text(56, real48(600))
               .text(156, pascal("today"))
               .text(666, pascal(mode))
               .content +
           six;
}

std::string ecs(const std::string& unit)
{
    std::string samples;
    for (int i = 0; i < 512; ++i) samples += le16(static_cast<unsigned>(i));
    return bytes_builder()
               .seek(830)
               .text(0, std::string("\xA0\0\0\1\2\0", 6))
               .text(0x29A, pascal("Height"))
               .text(0x2EC, pascal("Scan Size: 512 65.536 " + unit))
               .content +
           samples;
}

TEST(Img, EveryKindIsToldApartAndScaled)
{
    const struct {
        std::string bytes;
        double step;
        const char* units;
        VLAxis x;
        std::vector<double> raw;
    } rows[] = {
        {burleigh(1), 0.1, "nm", {0, 150, "nm"}, {4, 5, -6, 1, 2, 3}}, // 9000 / 2 / 3 Angstrom
        {burleigh(0), 1.0, "pA", {0, 150, "nm"}, {4, 5, -6, 1, 2, 3}},
        {dme(), 0.25, "nm", {-10, 20, "nm"}, {-6, 5, 4, 6, 4, 2}}, // 0.5 * 5 Angstrom, the first row doubled
        {sicm("Amode"), 10 / 32767.0, "V", {0, 2, "\u00B5m"}, {1, 2, 3, 4, 5, -6}},
        {sicm("topo"), 1.0, "\u00B5m", {0, 2, "\u00B5m"}, {1, 2, 3, 4, 5, -6}},
        {sicm("Current"), 1.0, "", {0, 2, "\u00B5m"}, {1, 2, 3, 4, 5, -6}},
        {ecs("N"), 0.001, "nm", {0, 2, "nm"}, {0, 1, 2}},
        {ecs("\x8F"), 0.0001, "nm", {0, 0.2, "nm"}, {0, 1, 2}},
    };
    for (const auto& row : rows) {
        const auto result = read(row.bytes);
        const SPMDataStream& stream = image_at(result, 0).stream;
        const std::vector<double> heights = physical_of(stream);
        for (std::size_t i = 0; i < row.raw.size(); ++i)
            EXPECT_NEAR(heights[i], row.raw[i] * row.step, 1e-9) << image_at(result, 0).strings.at("Format") << i;
        EXPECT_STREQ(stream.values.get_axis(0).get_units(), row.units);
        const VLAxis& x = stream.get_dimension(0).get_axis(0);
        EXPECT_NEAR(x.start, row.x.start, 1e-9);
        EXPECT_NEAR(x.scale, row.x.scale, 1e-9);
        EXPECT_STREQ(x.get_units(), row.x.get_units());
    }
}

TEST(Img, SettingsOfTheHeaderAreKept)
{
    const std::pair<std::string, std::map<std::string, std::string>> rows[] = {
        {burleigh(1), {{"Zoom level", "2"}, {"Z gain", "1"}, {"\\Speed", "7"}, {"Bias", "0.5"}}},
        {dme(), {{"Pause", "0.5"}, {"\\Speed", "100"}, {"Current", "2"}, {"Bias", "-3"}, {"Loop gain", "4"}}},
        {sicm("topo"), {{"Gain", "3"}, {"X calibration", "7"}, {"Second gain", "5"}, {"\\Date", "today"}}},
    };
    for (const auto& [bytes, settings] : rows) {
        const auto result = read(bytes);
        expect_image(image_at(result, 0), {.strings = settings});
    }
}

TEST(Img, EveryKindOpensUnderAnyName)
{
    const auto changed = [](std::string bytes, std::size_t at, char byte) {
        bytes[at] = byte;
        return bytes;
    };
    std::string table("2\0.\0005\0\t\0", 8); // numbers in UTF-16 begin with the same two bytes
    while (table.size() < 4096) table += table.substr(0, 8);
    const struct {
        std::string bytes;
        bool isKnown;
    } rows[] = {
        {burleigh(1), true},
        {dme(), true},
        {ecs("N"), true},
        {sicm("topo"), true},
        {changed(ecs("N"), 0x2ED, 's'), false},
        {changed(sicm("topo"), 0, 51), false},
        {changed(sicm("topo"), 3, '\x80'), false}, // a negative number of columns
        {changed(sicm("topo"), 56, 0), false},     // a size of 0
        {changed(sicm("topo"), 156, 0), false},    // no date
        {changed(sicm("topo"), 331, 81), false},   // a comment longer than its field
        {changed(sicm("topo"), 668, 1), false},    // a control character in the mode
        {table, false},
    };
    for (const auto& row : rows) {
        const auto head = std::as_bytes(std::span(row.bytes)).first(std::min(row.bytes.size(), sniffBytes));
        const format_row* found = find_format(head, "scan.xyz");
        EXPECT_EQ(found && found->type == FILE_IMG, row.isKnown) << &row - rows;
    }
}

TEST(Img, OtherAndCutFilesAreRefused)
{
    for (const std::string& bytes : {std::string("IM and more"), std::string(), burleigh(1) + "x", sicm("topo") + "x",
                                     ecs("N").substr(1), dme().substr(0, 4060), dme().substr(0, 700)})
        expect_refused(read_img, {{bytes, "none of the .img kinds"}});
    for (const std::string& whole : {burleigh(1), dme(), sicm("topo"), ecs("N")}) expect_cuts_refused(read_img, whole);
}

} // namespace
