#include "formats/instrument_fixture.h"
#include "formats/shared/bytes.h"
#include "formats/single/stp.h"

#include <gtest/gtest.h>

namespace {

using namespace instrument_fixture;

/// "key" filled up to 14 columns, the value, a line end.
std::string line(std::string key, const std::string& value)
{
    key.resize(14, ' ');
    return key + value + "\r\n";
}

std::string buffer(const std::string& mode, const std::string& extra = {}, const std::string& columns = "2")
{
    return line("buffer_id", "7") + line("samples_x", columns) + line("samples_y", "2") + line("length_x", "200") +
           line("source_mode", mode) + " a remark\r\n\r\n" + extra;
}

const std::string global = "UK SOFT\r\n" + line("software", "Scan 4") + line("z_v_to_angs", "60");

std::string build(const std::string& buffers, const std::vector<int>& samples = {1, 2, 3, 4})
{
    return global + buffers + "Data_section  \r\n" + formats::in_bytes<std::uint16_t>(samples);
}

TEST(Stp, UnsignedSamplesKeepEveryBitAndTheirHeights)
{
    const auto result = read(formats::read_stp, seed("stp/heights.stp").content); // 0 1 32768 65535, 5 6 7 8 back
    const auto& image = image_at(result, 0);
    EXPECT_EQ(raw_of(image), (std::vector<int>{-32768, -32767, 0, 32767, -32763, -32762, -32761, -32760}));
    // 60 Angstrom a volt, 2 V a half range; no length of y, no guess.
    EXPECT_EQ(
        told(image),
        "Topography [\u00C5] (2: 0 + 100 \u00C5; 2) {Forward, Reverse}: 0 0.004 120 239.996 0.02 0.022 0.026 0.03");
    EXPECT_NEAR(image.stream.values.get_axis(1).at(0), 2.0, 1e-6);
    EXPECT_STREQ(image.stream.values.get_axis(1).get_units(), "V");
    expect_image(image,
                 {.strings = {{"\\Date", "01/02/99 12:00"}, {"\\Frame direction", "Up"}, {"\\Scan rate", "3.5"}}});
    EXPECT_EQ(result->strings.at("software"), "Scan 4");
}

TEST(Stp, EachSourceHasItsScale)
{
    const std::string external = line("ExSourceZFact", "0.5") + line("ExSourceZUnit", "nA"),
                      shape = " (2: 0 + 100 \u00C5; 2): ";
    const std::string rows[][3] = {
        // buffer, label, values of raw 0, 32768, 0, 0
        {buffer("9"), "Topography [\u00C5]", "0 1 0 0"},
        {buffer("2"), "Current, deflection or amplitude [V]", "-10 0 -10 -10"},
        {buffer("17"), "Input 17 [V]", "-10 0 -10 -10"},
        {buffer("99", external + line("ExSourceZBip", "TRUE")), "External [nA]", "-16384 0 -16384 -16384"},
        {buffer("99", external), "External [nA]", "0 16384 0 0"},
        {buffer("55"), "Source 55", "0 32768 0 0"},
    };
    for (const auto& [buffer, label, values] : rows)
        EXPECT_EQ(told(read(formats::read_stp, build(buffer, {0, 32768, 0, 0}))), label + shape + values);
}

TEST(Stp, DirectionsOfDifferentSourcesStayApart)
{
    const auto buffers = buffer("1", line("collect_mode", "1")) + buffer("9", line("collect_mode", "1")) +
                         buffer("9", line("collect_mode", "2")) + buffer("1", line("collect_mode", "2"));
    const auto result = read(formats::read_stp, build(buffers, {1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3, 4, 4, 4, 4}));
    ASSERT_EQ(result->items.size(), 2u);
    EXPECT_EQ(raw_of(image_at(result, 0)), (std::vector<int>{1, 1, 1, 1, 4, 4, 4, 4})); // both of source 1
    EXPECT_EQ(raw_of(image_at(result, 1)), (std::vector<int>{2, 2, 2, 2, 3, 3, 3, 3}));
    EXPECT_EQ(image_at(result, 0).strings.at("collect_mode"), "1 / 2");
}

TEST(Stp, RefusesWhatCannotBe)
{
    expect_refused(formats::read_stp,
                   {
                       {build(buffer("1", line("length_y", "0"))), "the scale of axis 2 is 0: it is told by length_y"},
                       {build(buffer("1", line("length_y", "wide"))), "the scale of axis 2 is no number"},
                       {build(buffer("1", line("servo_range", "0"))), "the scale of the values is 0"},
                       {"UK SOFTWARE\r\n", "not a Molecular Imaging header"},
                       {global + buffer("1"), "the end of the header, \"Data_section\", is missing"},
                       {build(""), "no buffer_id"},
                       {build(buffer("1", "", "0")), "buffer 1: samples_x or samples_y"},
                       {build(buffer("1", "", "65537")), "above 65536"},
                       {build(buffer("1"), {1, 2, 3}), "samples from buffer 1 on reach beyond"},
                   });
    expect_cuts_refused(formats::read_stp, build(buffer("1") + buffer("1"), {1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(type_of(build(buffer("1")), "a.txt"), FILE_STP);
}

} // namespace
