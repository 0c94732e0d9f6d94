#include "formats/instrument_fixture.h"
#include "formats/single/psia.h"

#include "formats/pictures/tiff.h"
#include "formats/registry.h"
#include "formats/shared/tiff_builder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// TIFF files with calibrated data in private tags.

namespace {

using namespace formats;
using namespace instrument_fixture;
using testing::HasSubstr;

constexpr std::uint32_t floats = 2, version1 = 0x01000001, version2 = 0x01000002;

/// A file of 3 x 2 samples over 6 x 4 micrometres, the parts of which can be changed before it is made.
struct psia_file {
    std::uint32_t magic = 0x0E031301, version = version2;
    std::string header = std::string(352, '\0');
    std::string samples = in_bytes<float>({0.5f, -1.0f, 2.0f, 0.25f, 4.0f, -0.75f});
    std::size_t filler = 0; ///< bytes between the head of the file and its directory

    psia_file()
    {
        set(4, utf16_of("Z Detector", 32));
        set(68, utf16_of("NCM", 8));
        set(100, le32(3) + le32(2));
        set(128, le32(1));
        set(140, le_double(6.0) + le_double(4.0) + le_double(3.75) + le_double(-1.75) + le_double(1.5));
        set(220, le_double(-2.0) + le_double(0.0)); // a Z scale of 0 counts as 1
        set(244, utf16_of("um", 8));
        set(348, le32(floats));
    }
    psia_file& set(std::size_t at, const std::string& bytes)
    {
        header.replace(at, bytes.size(), bytes);
        return *this;
    }
    std::string bytes() const
    {
        using namespace tiff_builder;
        return file_of(std::string(filler, ' '),
                       {{whole(256, 1), whole(257, 1), whole(50432, magic), whole(50433, version),
                         blob(50434, 1, samples), blob(50435, 7, header)}});
    }
};

base::read_result<recording> read(const std::string& bytes) { return instrument_fixture::read(read_psia, bytes); }

TEST(Psia, HasItsHeightsBottomRowFirstOverTheirSize)
{
    const auto result = read(psia_file().bytes());
    EXPECT_EQ(told(result), // the samples times -2
              "Z Detector [\u00B5m] (3: 3.75 + 2 \u00B5m; 2: -1.75 + 2 \u00B5m): -1 2 -4 -0.5 -8 1.5");
    expect_image(image_at(result, 0), {.strings = {{"Head mode", "NCM"},
                                                   {"\\Scan rate", "1.5 Hz"},
                                                   {"\\Line direction", "Forward"},
                                                   {"\\Frame direction", "Down"}}});
}

TEST(Psia, HasSamplesOfThreeTypes)
{
    psia_file shorts, longs, old;
    shorts.set(348, le32(0)).samples = in_bytes<std::int16_t>({1, -2, 3, 4, 5, 6});
    longs.set(348, le32(1)).samples = in_bytes<std::int32_t>({1, -2, 3, 4, 5, 6});
    old.samples = shorts.samples; // of 16 bits, whatever stands where a later version has the type
    old.version = version1;
    old.header.resize(284);
    for (psia_file* file : {&shorts, &longs, &old}) {
        file->set(220, le_double(-2.0) + le_double(0.5));
        const auto result = read(file->bytes());
        EXPECT_EQ(physical_of(image_at(result, 0)), (std::vector<double>{-1, 2, -3, -4, -5, -6}));
    }
}

TEST(Psia, IsFoundWhereverItsDirectoryLies)
{
    for (const std::size_t filler : {std::size_t{0}, 2 * sniffBytes}) {
        psia_file parts;
        parts.filler = filler;
        const std::string bytes = parts.bytes();
        const auto head = std::as_bytes(std::span(bytes)).first(std::min(bytes.size(), sniffBytes));
        EXPECT_EQ(find_format(head, "a.tif")->type, filler == 0 ? FILE_PSIA : FILE_TIFF);
        memory_source file(std::as_bytes(std::span(bytes)));
        const auto result = read_tiff(file);
        EXPECT_STREQ(image_at(result, 0).stream.get_description(), "Z Detector");
    }
}

TEST(Psia, RefusesWhatItCannotShow)
{
    const auto with = [](std::size_t at, const std::string& field) { return psia_file().set(at, field).bytes(); };
    psia_file otherMagic, otherVersion, shortHeader, fewSamples;
    otherMagic.magic = 7;
    otherVersion.version = 0x01000003;
    shortHeader.header.resize(351);
    fewSamples.samples.resize(20);
    std::string torn = psia_file().bytes();
    torn.replace(torn.find(formats::le16(50435)) + 8, 4, formats::le32(1u << 30)); // where the header stands
    expect_refused(read_psia, {
                                  {torn, "tag 50435"},
                                  {otherMagic.bytes(), "tag 50432"},
                                  {otherVersion.bytes(), "tag 50433"},
                                  {shortHeader.bytes(), "tag 50435"},
                                  {fewSamples.bytes(), "ask for 24 bytes of samples, tag 50434 has 20"},
                                  {with(0, le32(1)), "line profiles"},
                                  {with(0, le32(2)), "spectroscopy"},
                                  {with(0, le32(9)), "kind 9"},
                                  {with(100, le32(0)), "width or height"},
                                  {with(100, le32(65537)), "width or height"},
                                  {with(104, le32(3)), "ask for 36 bytes"},
                                  {with(272, le32(1)), "compressed"},
                                  {with(276, le32(1)), "logarithmic"},
                                  {with(280, le32(1)), "square-root"},
                                  {with(348, le32(3)), "sample type"},
                              });
    expect_cuts_refused(read_psia, psia_file().bytes());
}

} // namespace
