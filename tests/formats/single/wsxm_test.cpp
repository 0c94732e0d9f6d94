#include "formats/instrument_fixture.h"
#include "formats/shared/bytes.h"
#include "formats/single/wsxm.h"

#include <gmock/gmock.h>

namespace {

using namespace formats;
using namespace instrument_fixture;

std::string file_of(const std::string& kind, const std::string& lines, const std::string& data)
{
    return "WSxM file copyright Nanotec Electronica\r\n" + kind + "\r\nImage header size: 0\r\n\r\n" + lines +
           "[Header end]\r\n" + data;
}

/// Two columns of two rows, 3 nm high.
std::string image(const std::string& extra, const std::string& data)
{
    return file_of(
        "SxM Image file",
        "[Control]\r\n    X Amplitude: 2 \xB5m\r\n    X Offset: 5 \xB5m\r\n    Y Amplitude: 500 nm\r\n[General "
        "Info]\r\n    Acquisition channel: Height\r\n    Number of columns: 2\r\n    Number of rows: 2\r\n"
        "    Z Amplitude: 3 nm\r\n" +
            extra,
        data);
}

base::read_result<recording> read(const std::string& bytes) { return instrument_fixture::read(read_wsxm, bytes); }

const std::string lineOf2 = "[General Info]\r\n    Number of columns: 2\r\n    Number of rows: 1\r\n",
                  square = "[General Info]\r\n    Number of columns: 2\r\n    Number of rows: 2\r\n",
                  shorts = in_bytes<std::int16_t>({20, 10, 40, 30}), // over 30 steps
    floats = in_bytes<float>({2, 1, 4, 3});

TEST(Wsxm, ImagesStartInTheLowerRightCorner)
{
    const std::pair<std::string, std::string> rows[] = {
        {"", shorts}, {"short", shorts}, {"float", floats}, {"double", in_bytes<double>({2, 1, 4, 3})}};
    for (const auto& [type, data] : rows) {
        const std::string line = type.empty() ? "" : "    Image Data Type: " + type + "\r\n";
        EXPECT_EQ(told(read(image(line, data))), "Height [nm] (2: 5 + 1 \u00B5m; 2: 0 + 250 nm): 1 2 3 4") << type;
    }
}

TEST(Wsxm, TheSpanScalesNumbersWhenItIsStated)
{
    const std::string flat = in_bytes<std::int16_t>({7, 7, 7, 7});
    const struct {
        std::string amplitude, data;
        const char *told, *note;
    } rows[] = {
        {"    Z Amplitude: 3 nm\r\n", flat, " [nm] (2; 2): 0 0 0 0", "flat image"},
        {"    Z Amplitude: 0 nm\r\n", flat, " [nm] (2; 2): 0 0 0 0", "flat image"},
        {"    Z Amplitude: 60 arb. units\r\n", shorts, " [arb. units] (2; 2): 20 40 60 80", "60 arb. units over a raw"},
        {"    Z Amplitude: 1,5 \xB5m\r\n", shorts, " [\u00B5m] (2; 2): 0.5 1 1.5 2", "raw span of 30"},
        {"", shorts, " (2; 2): 10 20 30 40", "Z Amplitude is missing"},
        {"    Image Data Type: float\r\n    Z Amplitude: 0 V\r\n", floats, " [V] (2; 2): 1 2 3 4", "Z Amplitude"},
        {"    Image Data Type: float\r\n    Z Amplitude: abc\r\n", floats, " (2; 2): 1 2 3 4", "Z Amplitude"},
    };
    for (const auto& row : rows) {
        const auto result = read(file_of("SxM Image file", square + row.amplitude, row.data));
        const recorded_image& made = image_at(result, 0);
        EXPECT_EQ(told(made), "Topography" + std::string(row.told)) << row.amplitude;
        EXPECT_NE(made.strings.at("\\Z scale").find(row.note), std::string::npos) << made.strings.at("\\Z scale");
        EXPECT_EQ(made.notes.empty(), row.amplitude.find("abc") == std::string::npos) << row.amplitude;
    }
}

TEST(Wsxm, OffsetsAreTakenInTheUnitOfTheSize)
{
    const std::pair<const char*, const char*> rows[] = {
        // in micrometres
        {"-905.5 nm", "-0.9055"}, {"1.5 \xB5m", "1.5"}, {"2 mm", "2000"},
        {"20 \xC5", "0.002"},     {"3 V", "0"},         {"4", "0"}};
    for (const auto& [offset, start] : rows) {
        const std::string place = "[Control]\r\n X Amplitude: 2 \xB5m\r\n X Offset: " + std::string(offset) + "\r\n";
        const auto result = read(file_of("SxM Image file", place + lineOf2, le16(1) + le16(2)));
        EXPECT_EQ(told(result), "Topography (2: " + std::string(start) + " + 1 \u00B5m; 1): 2 1") << offset;
    }
}

TEST(Wsxm, CurvesShareAnAxisOrHaveOne)
{
    const std::string lines = "[General Info]\r\n Number of lines: 2\r\n Number of points: 3\r\n X axis text: Z\r\n"
                              " X axis unit: nm\r\n Y axis text: F\r\n Y axis unit: nN\r\n";
    EXPECT_EQ(told(read(file_of("FZ curve file", lines, "0 1 0 4\r\n2.0 2 2 5\r\n4 3 4 6\r\n"))),
              "F [nN] (3: 0 + 2 nm) {Line 1, Line 2}: 1 2 3 4 5 6");
    EXPECT_EQ(told(read(file_of("IZ curve file", lines, "0 1 4 4\r\n3 2 2 5\r\n4 3 0 6\r\n"))),
              "Z [nm] (3) {Line 1, Line 2}: 0 3 4 4 2 0\nF [nN] (3) {Line 1, Line 2} over Z: 1 2 3 4 5 6");
    const auto open = read(file_of("FZ curve file", "[General Info]\r\n Number of points: 3\r\n", "1 2\n2 3\n3 4"));
    EXPECT_EQ(physical_of(image_at(open, 0)), (std::vector<double>{2, 3, 4})) << "its last number ends the file";
}

TEST(Wsxm, TellsOfWhatItsHeaderMayNotMean)
{
    const auto notes = [](const std::string& bytes) {
        const auto result = read(bytes);
        return image_at(result, result->items.size() - 1).notes;
    };
    EXPECT_TRUE(notes(image("", shorts)).empty());
    EXPECT_THAT(
        notes(file_of("SxM Image file", square + "    Z Amplitude: 3 qq\r\n[Control]\r\n X Amplitude: 5 qm\r\n",
                      shorts + "\1")),
        testing::ElementsAre("the unit of X Amplitude, \"5 qm\", is not known",
                             "the unit of Z Amplitude, \"3 qq\", is not known",
                             "Number of columns times Number of rows, 2 x 2, take 8 bytes of the 9 that are there"));
    const std::string points = "[General Info]\r\n Number of points: 2\r\n";
    EXPECT_TRUE(notes(file_of("FZ curve file", points + " Y axis unit: nN\r\n", "1 2\n2 3\n")).empty());
    EXPECT_THAT(notes(file_of("FZ curve file", points + " Y axis unit: qN\r\n", "1 2\n2 3\n3 4\n")),
                testing::ElementsAre("more numbers than Number of points, 2, and Number of lines, 1, ask for",
                                     "Y axis unit, \"qN\", is not known"));
}

TEST(Wsxm, WhatCannotBeIsRefusedWithItsReason)
{
    const auto scan = [](const std::string& lines) { return file_of("SxM Image file", lines, le16(1) + le16(2)); };
    const auto sized = [&](const char* columns, const char* rows) {
        return scan("[General Info]\r\n Number of columns: " + std::string(columns) + "\r\n Number of rows: " + rows +
                    "\r\n");
    };
    const auto curve = [](const std::string& points, const std::string& numbers) {
        return file_of("IV curve file", points.empty() ? "" : "[General Info]\r\n Number of points: " + points + "\r\n",
                       numbers);
    };
    expect_refused(read_wsxm, {
                                  {"WSxM file", "not a WSxM header"},
                                  {image("", le16(1) + le16(2)), "more samples than the file holds"},
                                  {image("", "").substr(0, 200), "[Header end]"},
                                  {image("    Image Data Type: quad\r\n", shorts), "quad"},
                                  {scan(""), "Number of columns"},
                                  {sized("0x1", "1"), "Number of columns, \"0x1\", is no number from 1 to 65536"},
                                  {sized("1", "2.5"), "Number of rows, \"2.5\", is no number from 1 to 65536"},
                                  {file_of("Movie file", "", ""), "Movie file"},
                                  {scan(lineOf2 + " Z Amplitude: 5x.7449 nm\r\n"), "no number"},
                                  {scan(lineOf2 + "[Control]\r\n X Amplitude: 5x nm\r\n"), "X Amplitude is \"5x nm\""},
                                  {curve("4000000000", "1 2"), "more numbers than the file holds"},
                                  {curve("2", "1 2 3 four"), "fewer numbers"},
                                  {curve("2", "1 2 3.1.4"), "fewer numbers"},
                                  {curve("", "1 2"), "Number of points is missing"},
                              });
}

} // namespace
