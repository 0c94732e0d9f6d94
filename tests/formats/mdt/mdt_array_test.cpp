#include "formats/instrument_fixture.h"
#include "formats/mdt/mdt.h"
#include "mdt_fixture.h"

#include <gtest/gtest.h>

// Frames of described arrays.

namespace {

using namespace formats;
using namespace instrument_fixture;

base::read_result<recording> read(const std::string& bytes) { return instrument_fixture::read(read_mdt, bytes); }

TEST(MdtArrays, OfPairsDrawTheSecondValueOverTheFirst)
{
    mdt_array pairs{"I(V)",
                    {},
                    {{"Bias", "V", 0.5, 2.0, 0, 2, -2}, {"Current", "nA", 0, 1, 0, 2, -4}},
                    le16(1) + le32(10) + le16(2) + le32(static_cast<std::uint32_t>(-20)) + le16(3) + le32(30)};
    const struct {
        std::uint64_t first, last, count;
        std::uint32_t cellBytes;
    } rows[] = {{0, 2, 0, 0}, {0, 2, 3, 6}, {0, 0, 3, 6}, {1, 0, 3, 6}, {0, ~0ull, 3, 0}}; // the count goes first
    for (const auto& row : rows) {
        for (mdt_calibration& each : pairs.measured) {
            each.first = row.first;
            each.last = row.last;
        }
        pairs.count = row.count;
        pairs.cellBytes = row.cellBytes;
        const auto result = read(mdt_file({mdt_frame_of(106, pairs.body(), 0)}));
        ASSERT_EQ(result->items.size(), 2u);
        EXPECT_EQ(physical_of(image_at(result, 0)), (std::vector<double>{2.5, 4.5, 6.5}));
        expect_image(image_at(result, 1),
                     {.units = "nA", .values = {10, -20, 30}, .over = image_at(result, 0).stream.get_name()});
    }
}

TEST(MdtArrays, SayTheirUnitsAndHowTheyWereScanned)
{
    const struct {
        const char *units, *normal, *comment, *key, *text;
    } rows[] = {
        {"uV", "\u00B5V", "<scshRate>2.5</scshRate><scshRateUnits>um/sec</scshRateUnits>", "\\Speed", "2.5 \u00B5m/s"},
        {"unit", "unit", "<scshRate>2</scshRate><scshRateUnits>Hz</scshRateUnits>", "\\Scan rate", "2 Hz"},
        {"deg", "\u00B0", "<scshRate>2</scshRate>", "\\Speed", "2"},
        {"\xB5m", "\u00B5m", "<scshDirXY>HLT</scshDirXY>", "\\Scan direction", "HLT"},
    };
    for (const auto& row : rows) {
        mdt_array image{"Phase",
                        {{"x", "um", 0, 1, 0, 1, 0}, {"y", "um", 0, 1, 0, 0, 0}},
                        {{"Phase", row.units, 0, 1, 0, 0, -2}},
                        le16(1) + le16(2),
                        2,
                        2};
        image.comment = "<Frame><Shell>" + std::string(row.comment) + "</Shell></Frame>";
        const auto result = read(mdt_file({mdt_frame_of(106, image.body(), 0)}));
        expect_image(image_at(result, 0), {.units = row.normal, .strings = {{row.key, row.text}}});
    }
}

TEST(MdtArrays, OfEveryNumberTypeBecomeImages)
{
    const struct {
        int code;
        std::string numbers; // 1, 2, 3, 4
    } rows[] = {
        {1, std::string("\1\2\3\4", 4)},
        {-1, std::string("\1\2\3\4", 4)},
        {2, le16(1) + le16(2) + le16(3) + le16(4)},
        {4, le32(1) + le32(2) + le32(3) + le32(4)},
        {-8, le64(1) + le64(2) + le64(3) + le64(4)},
        {-5892, le_float(1) + le_float(2) + le_float(3) + le_float(4)},
        {-13320, le_double(1) + le_double(2) + le_double(3) + le_double(4)},
    };
    for (const auto& row : rows) {
        const mdt_array image{"2B:Mag",
                              {{"x", "um", 1, 0.5, 0, 1, 0}, {"y", "um", 2, 0.25, 0, 1, 0}},
                              {{"Mag", "", 10, 2, 0, 0, row.code}},
                              row.numbers};
        const auto result = read(mdt_file({mdt_frame_of(106, image.body(), 0)}));
        SCOPED_TRACE(row.code);
        expect_image(image_at(result, 0), {.axes = {"1 0.5 \u00B5m", "2 0.25 \u00B5m"}, .values = {12, 14, 16, 18}});
    }
}

/// Cell c holds c as 16 bits and 100 + c as 8 bits.
std::string numbered_cells(unsigned count)
{
    std::string cells;
    for (unsigned c = 0; c < count; ++c) cells += le16(static_cast<std::uint16_t>(c)) + static_cast<char>(100 + c);
    return cells;
}

TEST(MdtArrays, OfThreeDimensionsAreSpectraAtPoints)
{
    const mdt_calibration x{"x", "um", 1, 0.5, 0, 2, 0}, y{"y", "um", 2, 0.25, 0, 1, 0},
        wave{"Wavelength", "nm", 500, 3, 0, 1, 0};
    const std::vector<mdt_calibration> measured = {{"Counts", "", 0, 2, 0, 0, -2}, {"Phase", "V", 0, 1, 0, 0, 1}};
    // The spectrum runs slowest in the file (x, y, wave) and fastest in the volume.
    const mdt_array map{"Raman", {x, y, wave}, measured, numbered_cells(12)};
    const auto result = read(mdt_file({mdt_frame_of(106, map.body(), 0)}));
    ASSERT_EQ(result->items.size(), 2u);
    expect_image(image_at(result, 0), {.label = "Raman Counts",
                                       .axes = {"500 3 nm", "1 0.5 \u00B5m", "2 0.25 \u00B5m"},
                                       .values = {0, 12, 2, 14, 4, 16, 6, 18, 8, 20, 10, 22}});
    EXPECT_EQ(physical_of(image_at(result, 1)).at(1), 106); // the second value of cell 6
    EXPECT_STREQ(image_at(result, 1).stream.values.get_axis(0).get_units(), "V");

    // Without names the units tell, and without these the order of the file stays.
    const auto anonymous = [](mdt_calibration dimension, const char* units) {
        dimension.name.clear();
        dimension.units = units;
        return dimension;
    };
    for (const auto& [units, second] : {std::pair("1/cm", 12.0), std::pair("um", 2.0)}) {
        const mdt_array unnamed{
            "Raman", {anonymous(x, "um"), anonymous(y, "um"), anonymous(wave, units)}, measured, numbered_cells(12)};
        const auto found = read(mdt_file({mdt_frame_of(106, unnamed.body(), 0)}));
        EXPECT_EQ(physical_of(image_at(found, 0)).at(1), second) << units;
    }
}

TEST(MdtArray, CellsThatNoIndexRangeTakesAreTold)
{
    mdt_array each{"odd", {{"x", "um", 0, 1, 0, 1, 0}, {"y", "um", 0, 1, 0, 1, 0}}, {{"z", "", 0, 1, 0, 0, 4}}, ""};
    for (unsigned i = 0; i < 6; ++i) each.cells += le32(i);
    const auto items_for = [&](std::uint64_t cells) {
        each.count = cells;
        return read(mdt_file({mdt_frame_of(106, each.body(), 0)}))->items;
    };
    const auto notes = [](const auto& items) { return std::get<recorded_image>(items.at(0)).notes; };
    EXPECT_EQ(notes(items_for(6)), std::vector<std::string>{"the index ranges take 4 of the 6 cells that are there"});
    EXPECT_TRUE(notes(items_for(4)).empty());
}

} // namespace
