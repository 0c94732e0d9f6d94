#include "formats/instrument_fixture.h"
#include "formats/single/hdf.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

using namespace instrument_fixture;
using namespace std::string_literals;

constexpr auto big = std::endian::big;
constexpr unsigned parameters = 0x8009, version = 0x8001, labels = 704, raster = 702;

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
        const std::size_t block = out.content.size(), content = block + 6 + 2 * 12, length = elements[i].bytes.size();
        out.add(std::uint16_t{2}, big).add(i + 1 == elements.size() ? 0u : std::uint32_t(content + length), big);
        out.add(std::uint16_t{1}, big).add(std::uint16_t{7}, big).add(0xFFFFFFFFu, big).add(0xFFFFFFFFu, big);
        out.add(std::uint16_t(elements[i].tag), big).add(std::uint16_t{2}, big);
        out.add(std::uint32_t(content), big).add(std::uint32_t(length), big).text(elements[i].bytes);
    }
    return out.content;
}

/// The parameters of 2 by 2 samples in half micrometres.
bytes_builder header(const char* title = "Topography")
{
    bytes_builder out;
    out.text(4, title).text(36, "AFM").put(44, std::uint16_t{1}).put(50, std::uint16_t{2}).put(52, std::uint16_t{2});
    out.put(66, 4.0f).put(70, 6.0f).put(74, 10.0f).put(78, -20.0f).put(82, 45.0f).put(90, 1.5f).put(94, 2.5f);
    return out.text(98, "nA").put(106, 0.25f).put(114, 0.5f).text(118, "um").text(138, "piezo").seek(150);
}

const element samples{raster, "\1\0\xFE\xFF\3\0\4\0"s}; // 1, -2, 3, 4

TEST(Hdf, AnImageHasItsScaleAndItsPlace)
{
    const element longer{raster, samples.bytes + "\5\0"s};
    const auto result = read(formats::read_hdf, build({{parameters, header().content}, longer, {raster, "later"}}));
    EXPECT_EQ(told(result), "Topography [\u00B5m] (2: 10 + 2 \u00B5m; 2: -20 + 3 \u00B5m): 0.5 -1 1.5 2");
    expect_image(image_at(result, 0),
                 {.strings = {{"\\Scan rate", "1.5 Hz"}, {"Set point", "2.5 nA"}, {"Comment", "piezo"}}});
    EXPECT_EQ(image_at(result, 0).notes.at(0), "columns times rows take 8 bytes of the 10 that are there");
}

TEST(Hdf, OtherElementsDescribeTheImage)
{
    const element names{labels, "Height\0X\0Y\0"s}, units{705, "um\0um\0um"s};
    const auto named =
        read(formats::read_hdf, build({{parameters, header().content}, {version, "1.8\0"s}, names, units, samples}));
    EXPECT_STREQ(image_at(named, 0).stream.get_description(), "Topography");
    expect_image(image_at(named, 0), {.strings = {{"Labels", "Height, X, Y"},
                                                  {"Units", "um, um, um"},
                                                  {"ProScan version", "1.8"},
                                                  {"X scan direction", "1"},
                                                  {"Y scan direction", "0"}}});
    const auto bare =
        read(formats::read_hdf, build({{parameters, header("").content}, {version, "\4\0\0\2"s}, names, samples}));
    EXPECT_STREQ(image_at(bare, 0).stream.get_description(), "Height");
    expect_image(image_at(bare, 0), {.strings = {{"ProScan version", "04 00 00 02"}}});
}

TEST(Hdf, RefusesWhatCannotBe)
{
    const auto with = [](std::size_t at, auto number) {
        return build({{parameters, header().put(at, number).content}, samples});
    };
    const element good{parameters, header().content};
    const std::string whole = build({good, samples});
    std::string loop = whole;
    loop.replace(6, 4, "\0\0\0\4"s);
    expect_refused(formats::read_hdf,
                   {
                       {with(114, 0.0f), "the scale of the values is 0"},
                       {with(114, HUGE_VALF), "the scale of the values is infinite"},
                       {"\x89HDF\r\n\x1A\n", "an HDF 5 file"},
                       {"\x0E\x03\x13", "not an HDF file"},
                       {build({samples}), "of another program than ProScan"},
                       {build({good}), "holds no image"},
                       {build({good, {0x800A, "x"}}), "spectroscopy, the layout of which is not public"},
                       {build({{parameters, good.bytes.substr(0, 129)}, samples}), "shorter than 130 bytes"},
                       {with(50, std::uint16_t{0}), "columns or rows are 0"},
                       {with(50, std::uint16_t{5}), "columns times rows exceed the image data"},
                       {build({good, samples, {40, "x"}}), "compressed"},
                       {loop, "directory blocks do not go forward"},
                   });
    expect_cuts_refused(formats::read_hdf, whole);
}

} // namespace
