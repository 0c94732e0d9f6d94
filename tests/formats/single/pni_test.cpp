#include "formats/instrument_fixture.h"
#include "formats/single/pni.h"

#include <gtest/gtest.h>

namespace {

using namespace instrument_fixture;

std::string build(const char* version, unsigned channel, unsigned kind, unsigned direction = 0, float size = 4.0f,
                  unsigned columns = 2, unsigned rows = 2)
{
    bytes_builder out;
    const std::size_t dataHeader = 0x13CA;
    const bool isFirst = version[0] == '1';
    out.text(isFirst ? std::string(4, '\0') : std::string(4, '\xCD')).text(version);
    out.put(0x90, std::uint32_t(columns)).put(0x94, std::uint32_t(rows));
    out.put(0xA8, size).put(0xB0, 6.0f).put(0xBC, 0.5f);
    out.put(dataHeader + (isFirst ? 0x0A : 0x19E), std::uint32_t(channel));
    out.put(dataHeader + (isFirst ? 0x46 : 0x1B2), std::uint32_t(kind));
    if (isFirst) out.put(dataHeader + 0x0E, std::uint32_t(direction));
    out.seek(7312);
    for (const int value : {1, 2, -3, 4}) out.add(static_cast<std::int16_t>(value));
    return out.content;
}

TEST(Pni, BothVersionsTellChannelAndUnit)
{
    const struct {
        std::string file;
        const char *label, *units;
        std::vector<std::string> subimages;
    } rows[] = {
        {build("1.0", 1, 1), "Height", "nm", {"Forward"}}, {build("1.0", 8, 4, 1), "Error", "mV", {"Reverse"}},
        {build("1.0", 4, 2, 7), "Image", "", {}},          {build("2.0", 0, 1), "Z actuator", "nm", {}},
        {build("2.0", 3, 4), "Phase", "mV", {}},
    };
    for (const auto& row : rows) {
        const auto result = read(pni_reader, row.file);
        const auto& image = image_at(result, 0);
        EXPECT_EQ(raw_of(image), (std::vector<int>{-3, 4, 1, 2})); // the top row was first
        EXPECT_DOUBLE_EQ(physical_of(image).at(0), -1.5);
        expect_image(image, {.label = row.label, .units = row.units, .axes = {"0 2 \u00B5m", "0 3 \u00B5m"}});
        EXPECT_EQ(subimages_of(image), row.subimages);
        EXPECT_EQ(type_of(row.file, "a.txt"), FILE_PNI);
    }
}

TEST(Pni, TheFilesOfAScanOpenTogether)
{
    const folder files = {{"run.Z(HGT)_fwd.pni", build("1.0", 1, 1)}, {"run.Z(ERR)_rev.pni", build("1.0", 8, 4, 1)}};
    const auto result = read(formats::read_pni_group, files, "run.Z(ERR)_rev.pni");
    ASSERT_TRUE(result);
    ASSERT_EQ(result->items.size(), 2u);
    EXPECT_STREQ(image_at(result, 0).stream.get_name(), "err");
    EXPECT_STREQ(image_at(result, 1).stream.get_description(), "Height");
    EXPECT_EQ(result->title, "run.");
}

TEST(Pni, RefusesWhatCannotBe)
{
    expect_refused(
        pni_reader,
        {
            {build("1.0", 1, 1, 0, -1.0f), "the scale of axis 1 is below 0: it is told by the width at byte 0xA8"},
            {std::string(8000, '\0'), "not a Pacific Nanotechnology header"},
            {build("1.0", 1, 1, 0, 4.0f, 0), "0 or above 65536"},
            {build("1.0", 1, 1, 0, 4.0f, 70000), "0 or above 65536"},
            {build("1.0", 1, 1, 0, 4.0f, 3), "3 x 2 samples make a file of 7324 bytes, but it has 7320"},
            {build("1.0", 1, 1, 0, 4.0f, 65536, 65536), "make a file of"},
        });
    expect_cuts_refused(pni_reader, build("1.0", 1, 1));
    EXPECT_EQ(type_of(build("1.0", 1, 1, 0, 4.0f, 0), "a.pni"), FILE_PNI); // so that its reader tells what is wrong
}

} // namespace
