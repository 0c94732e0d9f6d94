#include "formats/instrument_fixture.h"
#include "formats/single/pni.h"

#include <gtest/gtest.h>

namespace {

using namespace instrument_fixture;

/// 1, 2 over -3, 4 half units on 4 by 6 µm, in the layout of either version.
const char *const first = "pni/first.pni", *const second = "pni/second.pni";
constexpr std::size_t columns = 0x90, lines = 0x94, width = 0xA8, header = 0x13CA;
constexpr std::size_t channel1 = header + 0x0A, way1 = header + 0x0E, kind1 = header + 0x46;
constexpr std::size_t channel2 = header + 0x19E, kind2 = header + 0x1B2;

TEST(Pni, BothVersionsTellChannelAndUnit)
{
    const auto old = [](unsigned channel, unsigned kind, unsigned way) {
        return seed(first).put(channel1, channel).put(kind1, kind).put(way1, way).content;
    };
    const std::string rows[][3] = {
        // file, label, parts
        {old(1, 1, 0), "Height [nm]", " {Forward}"},
        {old(8, 4, 1), "Error [mV]", " {Reverse}"},
        {old(4, 2, 7), "Image", ""},
        {seed(second).content, "Z actuator [nm]", ""},
        {seed(second).put(channel2, 3u).put(kind2, 4u).content, "Phase [mV]", ""},
    };
    for (const auto& [file, label, parts] : rows) {
        EXPECT_EQ(told(read(pni_reader, file)),
                  label + " (2: 0 + 2 \u00B5m; 2: 0 + 3 \u00B5m)" + parts + ": -1.5 2 0.5 1");
        EXPECT_EQ(type_of(file, "a.txt"), FILE_PNI);
    }
}

TEST(Pni, TheFilesOfAScanOpenTogether)
{
    const folder files = {{"run.Z(HGT)_fwd.pni", seed(first).content}, {"run.Z(ERR)_rev.pni", seed(second).content}};
    const auto result = read(formats::read_pni_group, files, "run.Z(ERR)_rev.pni");
    ASSERT_TRUE(result && result->items.size() == 2);
    EXPECT_STREQ(image_at(result, 0).stream.get_name(), "err");
    EXPECT_STREQ(image_at(result, 1).stream.get_description(), "Height");
    EXPECT_EQ(result->title, "run.");
}

TEST(Pni, RefusesWhatCannotBe)
{
    expect_refused(pni_reader, {
                                   {seed(first).put(width, -1.0f).content,
                                    "the scale of axis 1 is below 0: it is told by the width at byte 0xA8"},
                                   {std::string(8000, '\0'), "not a Pacific Nanotechnology header"},
                                   {seed(first).put(columns, 0u).content, "0 or above 65536"},
                                   {seed(first).put(columns, 70000u).content, "0 or above 65536"},
                                   {seed(first).put(columns, 3u).content,
                                    "3 x 2 samples make a file of 7324 bytes, but it has 7320"},
                                   {seed(first).put(columns, 65536u).put(lines, 65536u).content, "make a file of"},
                               });
    expect_cuts_refused(pni_reader, seed(first).content);
    EXPECT_EQ(type_of(seed(first).put(columns, 0u).content, "a.pni"),
              FILE_PNI); // so that its reader tells what is wrong
}

} // namespace
