#include "base/text/six_digits.h"
#include "formats/shared/bytes.h"
#include "formats/single/bcr.h"
#include "formats/single/opd.h"
#include "instrument_fixture.h"

#include <gtest/gtest.h>
#include <tuple>

// Formats of surfaces with one header and points that were not measured.

namespace {

using namespace formats;
using namespace instrument_fixture;

std::string bcr_header(const std::string& kind, const std::string& lines)
{
    std::string text = "fileformat = " + kind +
                       "\n% comment = 1\nxpixels=2\n ypixels = 2\nxlength = 20\nylength = 6\n"
                       "xoffset = 3\nyunit = um\n" +
                       lines;
    text.resize(2048, ' ');
    return kind.ends_with("unicode") ? utf16_of(text) : text;
}

const std::string shorts = in_bytes<std::int16_t>({1, 2, 3, 4}), floats = in_bytes<float>({1, 2, 3, 4});

TEST(Bcr, NumbersOfEitherKindAndOrderAreRead)
{
    const std::string voids = in_bytes<float>({1, 3.4e38f, 3, 4});
    const struct {
        const char *kind, *lines;
        std::string data, heights; ///< heights from the bottom row
    } rows[] = {
        {"bcrstm", "bit2nm = 0.5\n", shorts, "1.5 2 0.5 1"},
        {"bcrstm_unicode", "intelmode = 0\n", in_bytes<std::int16_t>({1, 2, 3, 4}, std::endian::big), "3 4 1 2"},
        {"bcrstm", "", in_bytes<std::int16_t>({1, 32767, 3, 4}), "3 4 1 1"}, // one that was not measured
        {"bcrf", "bit2nm = 7\n", voids, "3 4 1 1"},
        {"bcrf_unicode", "zmin = 11\n", floats, "13 14 11 12"},
    };
    for (const auto& row : rows) {
        const auto result = read(read_bcr, bcr_header(row.kind, row.lines) + row.data);
        EXPECT_EQ(told(result), "Topography [nm] (2: 3 + 10 nm; 2: 0 + 3 \u00B5m): " + row.heights) << row.kind;
        EXPECT_EQ(image_at(result, 0).strings.contains("\\Void points"), row.heights == "3 4 1 1");
    }
}

TEST(Bcr, TheLowestPointIsMovedToZminOnAnAxisOfSixDigits)
{
    const std::string heights = in_bytes<float>({1.5f, 2, 3.4e38f, 4}),
                      whole = in_bytes<std::int16_t>({15, 20, 32767, 40}), zunit = "[nm] from zunit";
    const struct {
        const char *kind, *lines;
        std::string data, scale;
        double lowest;
    } rows[] = {
        {"bcrf", "zmin = 7.7654321\nzunit = um\n", heights, "1 + 6.2654321 [\u00B5m] from zunit, lowest", 7.7654321},
        {"bcrf", "zmin = 1.50001\n", heights, "1 + 0 " + zunit, 1.5}, // nearer than half of 2.5 / 65535
        {"bcrf", "zmin = -3\n", heights, "1 + 0 " + zunit, 1.5},
        {"bcrf", "zmin = 100000.5\n", heights, "1 + 99999 " + zunit + ", lowest", 100000.5},
        {"bcrstm", "zmin = 7.5\nbit2nm = 0.1\n", whole, "0.1 + 6 [nm] from bit2nm, zunit, lowest", 7.5},
        {"bcrstm", "zmin = 1.51\nbit2nm = 0.1\n", whole, "0.1 + 0 [nm] from bit2nm, zunit", 1.5},
    };
    for (const auto& row : rows) {
        const auto result = read(read_bcr, bcr_header(row.kind, row.lines) + row.data);
        const recorded_image& image = image_at(result, 0);
        const VLAxis& axis = image.stream.values.get_axis(0);
        const double expected[] = {0, 2.5, 0, 0.5}; // above the lowest; the point without a height takes it
        for (std::size_t i = 0; i < 4; ++i)
            EXPECT_NEAR(physical_of(image)[i], row.lowest + expected[i], 0.5 * axis.scale) << row.lines << i;
        EXPECT_EQ(base::six_digits(axis.start), axis.start) << row.lines;
        EXPECT_EQ(base::six_digits(axis.scale), axis.scale) << row.lines;
        EXPECT_TRUE(image.strings.at("\\Z scale").starts_with("raw * " + row.scale)) << image.strings.at("\\Z scale");
    }
}

TEST(Bcr, HeaderTextsArePaddedByZerosAndMayHaveAnOrderMark)
{
    std::string padded = "fileformat = bcrstm\n";
    padded += std::string(3, '\0') + "xpixels = 2\nypixels = 2\n" + std::string(2, '\0') + "\n" + '\0' +
              "bit2nm = 0.5\nscanspeed = 500\n" + std::string("starttime = now\0then\n", 21);
    padded.resize(2048, '\0');
    std::string marked = bcr_header("bcrstm_unicode", "bit2nm = 0.5\nscanspeed = 5 um/s\nstarttime = now then\n");
    marked = "\xFF\xFE" + marked.substr(0, 4094);
    for (const auto& [header, speed] : {std::pair(padded, "500 nm/s"), std::pair(marked, "5 um/s")}) {
        const auto result = read(read_bcr, header + shorts);
        expect_image(image_at(result, 0),
                     {.values = {1.5, 2, 0.5, 1}, .strings = {{"\\Date", "now then"}, {"\\Speed", speed}}});
        EXPECT_TRUE(image_at(result, 0).strings.contains("fileformat"));
    }
    const std::string bare = bcr_header("bcrstm", "");
    EXPECT_TRUE(image_at(read(read_bcr, bare + shorts), 0).notes.empty());
    EXPECT_EQ(image_at(read(read_bcr, bare + shorts + shorts), 0).notes,
              std::vector<std::string>{"8 bytes behind xpixels times ypixels samples are not read"});
}

TEST(Bcr, WhatCannotBeIsRefusedWithItsReason)
{
    const auto damaged = [](const char* line) {
        std::string text = "fileformat = bcrstm\n" + std::string(line) + "\nxpixels = 2\nypixels = 2\n";
        text.resize(4096, ' ');
        return text;
    };
    expect_refused(read_bcr, {
                                 {"fileformat = bcrx\n", "not a BCR header"},
                                 {bcr_header("bcrstm", "") + shorts.substr(1), "more samples than the file holds"},
                                 {bcr_header("bcrf", "") + shorts, "more samples than the file holds"},
                                 {bcr_header("bcrstm", "headersize = 9999\n") + shorts, "headersize"},
                                 {bcr_header("bcrstm", "headersize = -1\n") + shorts, "headersize"},
                                 {bcr_header("bcrstm", "headersize = 20x8\n") + shorts, "headersize is no number"},
                                 {damaged("xpixels = 2x"), "xpixels or ypixels is missing, no whole number"},
                                 {damaged("xlength = 17x7404"), "xlength is \"17x7404\""},
                                 {bcr_header("bcrstm", "forcecurve = 1\n") + shorts, "force curves"},
                                 {"fileformat = bcrstm\nxpixels = 2\n" + std::string(2048, ' '), "ypixels"},
                             });
}

struct opd_piece {
    std::string name;
    unsigned type;
    std::string content;
};

std::string opd_file(const std::vector<opd_piece>& pieces)
{
    const auto entry = [](std::string name, unsigned type, std::size_t length) {
        name.resize(16, '\0');
        return name + le16(type) + le32(length) + le16(0);
    };
    std::string directory = entry("Directory", 1, 24 * (pieces.size() + 1)), content;
    for (const opd_piece& piece : pieces) {
        directory += entry(piece.name, piece.type, piece.content.size());
        content += piece.content;
    }
    return le16(1) + directory + content;
}

std::string opd_array(unsigned columns, unsigned rows, unsigned bytes, const std::string& numbers)
{
    return le16(columns) + le16(rows) + le16(bytes) + numbers;
}

const opd_piece pixelSize{"Pixel_size", 7, le_float(0.5f)}, wavelength{"Wavelength", 7, le_float(600)};

TEST(Opd, ColumnsRunUpwardsAndHeightsCountInWavelengths)
{
    // RAW_DATA are wavelengths of 600 nm, OPD 300ths of them: column 0 is 1, 2, 3 from the bottom. The mark of a
    // missing point, the middle one of column 1, takes the lowest height.
    const auto result = read(read_opd, seed("opd/heights.opd").content);
    EXPECT_EQ(told(result), "Step [nm] (2: 0 + 0.5 mm; 3: 0 + 1 mm): 600 2400 1200 600 1800 3600\n"
                            "Step [nm] (2: 0 + 0.5 mm; 3: 0 + 1 mm): 2 8 4 2 6 12\n"
                            "Image (1: 0 + 0.5 mm; 2: 0 + 1 mm): 5 255");
    EXPECT_EQ(image_at(result, 1).strings.at("\\Void points"), "1");
    EXPECT_EQ(result->strings.at("Mult"), "300");
}

TEST(Opd, WhatGivesNoScaleIsNamed)
{
    const opd_piece heights{"OPD", 3, opd_array(2, 1, 2, le16(118) + le16(236))}, mult{"Mult", 6, le16(236)};
    const std::string noWavelength = "no Wavelength in the file: heights are counted in wavelengths, without a unit",
                      noMult = "no Mult in the file: whole numbers count as wavelengths",
                      noAspect = "no Aspect in the file: points count as square";
    const auto bare = read(read_opd, opd_file({heights}));
    EXPECT_EQ(bare->strings.at("\\Reader note"), "no Pixel_size in the file: sides are counted in points");
    EXPECT_EQ(image_at(bare, 0).strings.at("\\Z scale"), "raw * 1 + 0 from no Wavelength in the file");
    EXPECT_EQ(image_at(bare, 0).stream.get_dimension(0).get_axis(0), VLAxis());
    const std::tuple<std::vector<opd_piece>, std::vector<double>, std::vector<std::string>> rows[] = {
        {{heights}, {118, 236}, {noWavelength, noMult}},
        {{heights, mult}, {0.5, 1}, {noWavelength}}, // raw / Mult wavelengths
        {{heights, wavelength, pixelSize}, {118 * 600, 236 * 600}, {noAspect, noMult}},
        {{heights, wavelength, pixelSize, mult, {"Aspect", 7, le_float(1)}}, {300, 600}, {}},
    };
    for (const auto& [pieces, values, notes] : rows) {
        const auto result = read(read_opd, opd_file(pieces));
        ASSERT_TRUE(result) << result.error().reason;
        expect_image(image_at(result, 0), {.values = values});
        EXPECT_EQ(image_at(result, 0).notes, notes);
    }
    const auto longer = read(read_opd, opd_file({{"OPD", 3, opd_array(2, 1, 2, le16(1) + le16(2) + le16(3))}}));
    EXPECT_EQ(image_at(longer, 0).notes.at(0), "columns times rows take 4 bytes of the 6 that are there");
    for (const opd_piece& zero : {opd_piece{"Mult", 6, le16(0)}, opd_piece{"Wavelength", 7, le_float(0)}})
        expect_refused(read_opd, {{opd_file({zero, heights, wavelength, mult}), zero.name + " is 0"}});
}

TEST(Opd, WhatCannotBeIsRefusedWithItsReason)
{
    const std::string good = opd_file({{"OPD", 3, opd_array(2, 1, 2, le16(1) + le16(2))}});
    std::string odd = good;
    odd[20] = 25;
    expect_refused(read_opd, {
                                 {"VCA DATA and more", ".opdx"},
                                 {good.substr(0, 20), "cut short"},
                                 {odd, "no multiple of 24"},
                                 {good.substr(0, good.size() - 1), "reaches beyond the end"},
                                 {opd_file({{"OPD", 3, opd_array(2, 2, 2, le16(1) + le16(2))}}),
                                  "more samples than the block holds"},
                                 {opd_file({{"OPD", 3, opd_array(2, 1, 3, "abcdef")}}), "bytes per value"},
                                 {opd_file({{"OPD", 3, opd_array(0, 1, 1, "")}}), "is 0"},
                                 {opd_file({pixelSize, wavelength}), "no block holds heights"},
                             });
}

} // namespace
