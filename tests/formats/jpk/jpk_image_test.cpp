#include "formats/instrument_fixture.h"
#include "formats/pictures/tiff.h"
#include "formats/shared/finish_recording.h"
#include "formats/shared/tiff_builder.h"
#include "jpk_fixture.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace {

using namespace formats;
using namespace instrument_fixture;
using jpk_fixture::read;
using namespace tiff_builder;

/// Two channels of 2 by 2 points, raw 1 to 4 and 5 to 8, in either byte order: 2 * raw + 1 nm on a grid of 4 by 2 µm.
TEST(Jpk, ImagesComeInBothByteOrders)
{
    for (const char* name : {"jpk/little.jpk", "jpk/big.jpk"})
        EXPECT_EQ(told(read(seed(name).content)),
                  "height [m] (2: 1e-06 + 2e-06 m; 2: 2e-06 + 1e-06 m) {Forward, Reverse}: "
                  "3e-09 5e-09 7e-09 9e-09 1.1e-08 1.3e-08 1.5e-08 1.7e-08")
            << name;
}

/// What all share: a grid of 4 by 2 µm, a program that is a number, a rate.
const directory sharedTags = {whole(258, 8), real(0x8042, 4e-6), real(0x8043, 2e-6), whole(0x8002, 7),
                              real(0x8049, 1.5)};

/// A calibration slot whose tags begin at `first`.
directory slot(unsigned first, const char* name, const char* units, double step, double start)
{
    return {words(first, name), words(first + 0x12, units), words(first + 0x13, "LinearScaling"),
            real(first + 0x14, step), real(first + 0x15, start)};
}

/// Two samples at `offset`: metres, and a million times as many volts.
directory plane_of(unsigned bits, unsigned offset, bool isRetrace, double step)
{
    directory plane = {whole(256, 2),      whole(257, 1),           whole(258, bits),        whole(339, 2),
                       whole(273, offset), whole(279, bits / 4),    words(0x8050, "height"), whole(0x8051, isRetrace),
                       whole(0x8080, 2),   words(0x8081, "nominal")};
    for (const directory& each :
         {slot(0x8090, "volts", "V", 1e6 * step, 1.0), slot(0x80C0, "nominal", "m", step, 1e-6)})
        plane.insert(plane.end(), each.begin(), each.end());
    return plane;
}

TEST(Jpk, WideDirectionsOfDifferentScaleJoinAsPhysicalValues)
{
    const std::string body = in_bytes<std::int32_t>({0, 1'000'000, 250'000, 500'000}) + std::string(5000, '\0');
    const std::string file = file_of(body, {sharedTags, plane_of(32, 8, false, 1e-15), plane_of(32, 16, true, 4e-15)});
    memory_source late(std::as_bytes(std::span(file))); // its directories lie behind what is looked at to tell formats
    for (const auto& result : {read(file), read_tiff(late)}) {
        ASSERT_EQ(result->items.size(), 1u);
        const recorded_image& image = image_at(result, 0);
        const auto* raw = static_cast<const std::int16_t*>(image.stream.array_data());
        const std::vector<double> metres{1e-6, 1.001e-6, 1.001e-6, 1.002e-6};
        for (std::size_t i = 0; i < metres.size(); ++i) {
            EXPECT_NEAR(image.stream.values.get_axis(0).at(raw[i]), metres[i], 2e-14);
            EXPECT_NEAR(image.stream.values.get_axis(1).at(raw[i]), 1e6 * metres[i], 2e-8);
        }
        EXPECT_EQ(subimages_of(image), (std::vector<std::string>{"Forward", "Reverse"}));
        expect_image(image, {.strings = {{"\\Scan rate", "1.5"}}});
        EXPECT_EQ(result->strings.at("Program"), "7");
    }
}

/// The second sample holds a number that some encoders name as the one of points without a measurement. 16 bits keep
/// their numbers, wider ones of two scales become values.
TEST(Jpk, TheNumberThatAnEncoderNamesIsNotMeasured)
{
    struct {
        unsigned bits;
        const char* encoder;
        std::uint32_t marker;
        const char* voids; ///< "" when all is measured
        double highest;    ///< m
    } const rows[] = {
        {32, "SignedIntegerWithValidity", 2147483647, "2", 1e-6 + 100 * 4e-15},
        {32, "SignedInteger", 2147483647, "", 1e-6 + 2147483647 * 4e-15},
        {32, "SignedIntegerWithValidity", 5, "", 1e-6 + 2147483647 * 4e-15},
        {16, "SignedShortWithValidity", 32767, "1", 1e-6 + 100 * 1e-15},
        {16, "SignedShort", 32767, "", 1e-6 + 32767 * 1e-15},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.encoder) + " " + std::to_string(row.marker));
        const std::string pair = row.bits == 32 ? le32(100) + le32(2147483647) : le16(100) + le16(32767);
        directory trace = plane_of(row.bits, 8, false, 1e-15), retrace = plane_of(row.bits, 8, true, 4e-15);
        for (directory* each : {&trace, &retrace})
            each->insert(each->end(), {words(0x80D1, row.encoder), whole(0x80DA, row.marker)});
        const auto result = read(file_of(pair, {sharedTags, trace, retrace}));
        ASSERT_TRUE(result) << result.error().reason;
        const recorded_image& image = image_at(result, 0);
        expect_image(image, {.strings = {{"\\Void points", row.voids}}});
        EXPECT_NEAR(std::ranges::max(physical_of(image)), row.highest, 1e-5 * row.highest);
    }
}

TEST(Jpk, DirectionsOfSixteenBitsKeepThemAndTheirScale)
{
    const std::string body = in_bytes<std::int16_t>({1, 2, 3, 4});
    const auto result = read(file_of(body, {sharedTags, plane_of(16, 8, false, 1e-15), plane_of(16, 12, true, 4e-15)}));
    ASSERT_EQ(result->items.size(), 2u);
    EXPECT_DOUBLE_EQ(physical_of(image_at(result, 1))[0], 3 * 4e-15 + 1e-6);

    for (const double step : {0.0, std::nan(""), std::numeric_limits<double>::infinity()}) {
        const auto single =
            read(file_of(body, {sharedTags, plane_of(16, 8, false, step), plane_of(16, 12, true, 4e-15)}));
        ASSERT_TRUE(single && single->items.size() == 1) << step;
        EXPECT_STREQ(image_at(single, 0).stream.subimage_names()[0].text, "Reverse");
        EXPECT_NE(single->warnings.at(0).find("channel 1 (height): the multiplier or offset of slot nominal"),
                  std::string::npos);
    }
    const std::string file = file_of(body, {sharedTags, plane_of(16, 8, false, 1e-15), plane_of(16, 12, true, 1e-15)});
    const auto cut = read(file.substr(0, file.size() - 100)); // in the last directory
    ASSERT_TRUE(cut) << cut.error().reason;
    EXPECT_STREQ(image_at(cut, 0).stream.subimage_names()[0].text, "Forward");
    EXPECT_EQ(cut->warnings.at(0), "left out: a TIFF directory is cut short");

    directory nowhere = sharedTags;
    nowhere.push_back(real(0x8040, std::nan("")));
    const std::string misplaced = file_of(body, {nowhere, plane_of(16, 8, false, 1e-15)});
    EXPECT_EQ(finish_recording(read(misplaced)).error().reason,
              "\"height\": the start of axis 1 is no number: it is told by tag 0x8040");

    directory crowded = plane_of(16, 8, false, 1e-15);
    crowded[8] = whole(0x8080, 101);
    EXPECT_EQ(told(read(file_of(body, {sharedTags, crowded}))), "channel 1 (height): more than 100 calibration slots");
}

} // namespace
