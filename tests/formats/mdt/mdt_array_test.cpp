#include "formats/instrument_fixture.h"
#include "formats/mdt/mdt.h"
#include "mdt_fixture.h"

#include <gtest/gtest.h>
#include <tuple>

// Frames of described arrays.

namespace {

using namespace formats;
using namespace instrument_fixture;

base::read_result<recording> read(const mdt_array& array)
{
    return instrument_fixture::read(read_mdt, mdt_file({mdt_frame_of(106, array.body(), 0)}));
}

TEST(MdtArrays, OfPairsDrawTheSecondValueOverTheFirst)
{
    mdt_array pairs{"I(V)",
                    {},
                    {{"Bias", "V", 0.5, 2.0, 0, 2, -2}, {"Current", "nA", 0, 1, 0, 2, -4}},
                    le16(1) + le32(10) + le16(2) + le32(static_cast<std::uint32_t>(-20)) + le16(3) + le32(30)};
    const std::tuple<std::uint64_t, std::uint64_t, std::uint64_t, std::uint32_t> rows[] = {
        {0, 2, 0, 0}, {0, 2, 3, 6}, {0, 0, 3, 6}, {1, 0, 3, 6}, {0, ~0ull, 3, 0}}; // the count goes first
    for (const auto& [first, last, count, cellBytes] : rows) {
        for (mdt_calibration& each : pairs.measured) each.first = first, each.last = last;
        pairs.count = count;
        pairs.cellBytes = cellBytes;
        EXPECT_EQ(told(read(pairs)), "Bias [V] (3): 2.5 4.5 6.5\nI(V) [nA] (3) over I_V__x: 10 -20 30");
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
        const auto result = read(image);
        EXPECT_EQ(told(result), "Phase [" + std::string(row.normal) + "] (2: 0 + 1 \u00B5m; 1: 0 + 1 \u00B5m): 1 2");
        expect_image(image_at(result, 0), {.strings = {{row.key, row.text}}});
    }
}

TEST(MdtArrays, OfEveryNumberTypeBecomeImages)
{
    const std::pair<int, std::string> rows[] = {
        {1, "\1\2\3\4"},
        {-1, "\1\2\3\4"},
        {2, in_bytes<std::int16_t>({1, 2, 3, 4})},
        {4, in_bytes<std::int32_t>({1, 2, 3, 4})},
        {-8, in_bytes<std::int64_t>({1, 2, 3, 4})},
        {-5892, in_bytes<float>({1, 2, 3, 4})},
        {-13320, in_bytes<double>({1, 2, 3, 4})},
    };
    for (const auto& [code, numbers] : rows) {
        const mdt_array image{"2B:Mag",
                              {{"x", "um", 1, 0.5, 0, 1, 0}, {"y", "um", 2, 0.25, 0, 1, 0}},
                              {{"Mag", "", 10, 2, 0, 0, code}},
                              numbers};
        EXPECT_EQ(told(read(image)), "Mag (2: 1 + 0.5 \u00B5m; 2: 2 + 0.25 \u00B5m) {Reverse}: 12 14 16 18") << code;
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
    const std::string grid = "; 3: 1 + 0.5 \u00B5m; 2: 2 + 0.25 \u00B5m): ";
    EXPECT_EQ(told(read({"Raman", {x, y, wave}, measured, numbered_cells(12)})),
              "Raman Counts (2: 500 + 3 nm" + grid + "0 12 2 14 4 16 6 18 8 20 10 22\nRaman Phase [V] (2: 500 + 3 nm" +
                  grid + "100 106 101 107 102 108 103 109 104 110 105 111");

    // Without names the units tell, and without these the order of the file stays.
    const auto anonymous = [](mdt_calibration dimension, const char* units) {
        dimension.name.clear();
        dimension.units = units;
        return dimension;
    };
    for (const auto& [units, second] : {std::pair("1/cm", 12.0), std::pair("um", 2.0)}) {
        const auto found = read(
            {"Raman", {anonymous(x, "um"), anonymous(y, "um"), anonymous(wave, units)}, measured, numbered_cells(12)});
        EXPECT_EQ(physical_of(image_at(found, 0)).at(1), second) << units;
    }
}

TEST(MdtArray, CellsThatNoIndexRangeTakesAreTold)
{
    mdt_array each{"odd", {{"x", "um", 0, 1, 0, 1, 0}, {"y", "um", 0, 1, 0, 1, 0}}, {{"z", "", 0, 1, 0, 0, 4}}, ""};
    each.cells = in_bytes<std::int32_t>({0, 1, 2, 3, 4, 5});
    const auto notes_for = [&](std::uint64_t cells) {
        each.count = cells;
        return image_at(read(each), 0).notes;
    };
    EXPECT_EQ(notes_for(6), std::vector<std::string>{"the index ranges take 4 of the 6 cells that are there"});
    EXPECT_TRUE(notes_for(4).empty());
}

} // namespace
