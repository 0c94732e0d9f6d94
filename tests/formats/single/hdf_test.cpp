#include "formats/instrument_fixture.h"
#include "formats/single/hdf.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

using namespace instrument_fixture;

constexpr auto big = std::endian::big;

/// A piece of a made-up file with its tag.
struct element {
    unsigned tag;
    std::string bytes;
};

/// Each element in a block of the directory of its own.
std::string build(const std::vector<element>& elements)
{
    bytes_builder out;
    out.text("\x0E\x03\x13\x01");
    for (std::size_t i = 0; i < elements.size(); ++i) {
        const std::size_t block = out.content.size(), content = block + 6 + 2 * 12;
        const bool isLast = i + 1 == elements.size();
        out.add(std::uint16_t{2}, big);
        out.add(isLast ? 0u : static_cast<std::uint32_t>(content + elements[i].bytes.size()), big);
        out.add(std::uint16_t{1}, big).add(std::uint16_t{7}, big).add(0xFFFFFFFFu, big).add(0xFFFFFFFFu, big);
        out.add(std::uint16_t(elements[i].tag), big).add(std::uint16_t{2}, big);
        out.add(std::uint32_t(content), big).add(std::uint32_t(elements[i].bytes.size()), big);
        out.text(elements[i].bytes);
    }
    return out.content;
}

std::string header(int columns = 2, int rows = 2, const char* title = "Topography", float gain = 0.5f)
{
    bytes_builder out;
    out.text(4, title).text(36, "AFM").put(44, std::uint16_t{1});
    out.put(50, std::uint16_t(columns)).put(52, std::uint16_t(rows));
    out.put(66, 4.0f).put(70, 6.0f).put(74, 10.0f).put(78, -20.0f).put(82, 45.0f).put(90, 1.5f);
    out.put(94, 2.5f).text(98, "nA").put(106, 0.25f).put(114, gain).text(118, "um").text(138, "piezo").seek(150);
    return out.content;
}

std::string samples()
{
    bytes_builder out;
    for (const int value : {1, -2, 3, 4}) out.add(static_cast<std::int16_t>(value));
    return out.content;
}

TEST(Hdf, AnImageHasItsScaleAndItsPlace)
{
    const auto result = read(formats::read_hdf, build({{0x8009, header()}, {702, samples()}, {702, "later"}}));
    const auto& image = image_at(result, 0);
    EXPECT_EQ(raw_of(image), (std::vector<int>{1, -2, 3, 4})); // the bottom row first
    expect_image(image, {.label = "Topography",
                         .units = "\u00B5m",
                         .axes = {"10 2 \u00B5m", "-20 3 \u00B5m"},
                         .values = {0.5, -1, 1.5, 2},
                         .strings = {{"\\Scan rate", "1.5 Hz"}, {"Set point", "2.5 nA"}, {"Comment", "piezo"}}});
}

TEST(Hdf, OtherElementsDescribeTheImage)
{
    using namespace std::string_literals;
    const element labels{704, "Height\0X\0Y\0"s}, units{705, "um\0um\0um"s};
    const auto named =
        read(formats::read_hdf, build({{0x8009, header()}, {0x8001, "1.8\0"s}, labels, units, {702, samples()}}));
    expect_image(image_at(named, 0), {.label = "Topography",
                                      .strings = {{"Labels", "Height, X, Y"},
                                                  {"Units", "um, um, um"},
                                                  {"ProScan version", "1.8"},
                                                  {"X scan direction", "1"},
                                                  {"Y scan direction", "0"}}});

    const auto bare =
        read(formats::read_hdf, build({{0x8009, header(2, 2, "")}, {0x8001, "\4\0\0\2"s}, labels, {702, samples()}}));
    expect_image(image_at(bare, 0), {.label = "Height", .strings = {{"ProScan version", "04 00 00 02"}}});
}

TEST(Hdf, RefusesWhatCannotBe)
{
    std::string loop = build({{0x8009, header()}, {702, samples()}});
    loop.replace(6, 4, std::string("\0\0\0\4", 4));
    expect_refused(
        formats::read_hdf,
        {
            {build({{0x8009, header(2, 2, "", 0.0f)}, {702, samples()}}), "the scale of the values is 0"},
            {build({{0x8009, header(2, 2, "", HUGE_VALF)}, {702, samples()}}), "the scale of the values is infinite"},
            {"\x89HDF\r\n\x1A\n", "an HDF 5 file"},
            {"\x0E\x03\x13", "not an HDF file"},
            {build({{702, samples()}}), "of another program than ProScan"},
            {build({{0x8009, header()}}), "holds no image"},
            {build({{0x8009, header()}, {0x800A, "x"}}), "spectroscopy, the layout of which is not public"},
            {build({{0x8009, header().substr(0, 129)}, {702, samples()}}), "shorter than 130 bytes"},
            {build({{0x8009, header(0, 2)}, {702, samples()}}), "columns or rows are 0"},
            {build({{0x8009, header(5, 1)}, {702, samples()}}), "columns times rows exceed the image data"},
            {build({{0x8009, header()}, {702, samples()}, {40, "x"}}), "compressed"},
            {loop, "directory blocks do not go forward"},
        });
    expect_cuts_refused(formats::read_hdf, build({{0x8009, header()}, {702, samples()}}));
}

} // namespace
