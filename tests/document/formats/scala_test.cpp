#include "document/formats/scala.h"
#include "instrument_fixture.h"

#include <gtest/gtest.h>

namespace {

using namespace instrument_fixture;

const std::string head = ";\n;  Omicron SPM Control.\n;  Parameter file for SPM data.\n;\n";
const std::string geometry = "Date : 04.06.2012\nField X Size in nm : 30 ;[nm]\nField Y Size in nm : 20 ;[nm]\n"
                             "Image Size in X : -3\nImage Size in Y : 2\nX Offset : 5 ;[nm]\nY Offset : -7 ;[nm]\n"
                             "Gap Voltage : 0.5 ;[V] as set\nComment : a\x01"
                             "b \xB0\n\n";

std::string topography(const std::string& name, const std::string& direction, const std::string& file,
                       const std::string& range = "-10\n 10\n -1\n 3\n 9.5")
{
    return "Topographic Channel : " + name + " ;Channel\n " + direction + " \n " + range +
           " ;Resolution\n nm ;Unit\n " + file + "  ;Filename\n\n";
}

std::string spectroscopy(const std::string& file, const std::string& points = "3")
{
    return "Spectroscopy Points in X : 2\nSpectroscopy Lines in Y : 1\nSpectroscopy Grid Value in X : 2\n\n"
           "Spectroscopy Channel : I(V)\n V ;Parameter\n Forward\n 0\n 10\n 0\n 5\n 0.5\n nA\n " +
           points + "\n -1\n 1\n 1\n 10\n 20\n On\n " + file + "\n I of V\n\n";
}

std::string samples(const std::vector<int>& values)
{
    bytes_builder out;
    for (const int value : values) out.add(static_cast<std::int16_t>(value), std::endian::big);
    return out.content;
}

TEST(Scala, DirectionsShareAnImageWithTheScaleOfBothRanges)
{
    const folder files = {{"a.par", head + geometry + topography("Z", "Forward", "a.tf0") +
                                        topography("Z", "Backward", "a.tb0") +
                                        topography("F", "Forward", "a.tf1", "4\n 4\n 0\n 1\n 0.25")},
                          {"a.tf0", samples({1, 2, 3, 4, 5, 6})},
                          {"a.tb0", samples({6, 5, 4, 3, 2, 1})},
                          {"a.tf1", samples({1, 0, 0, 0, 0, 0})}};
    const auto result = read(formats::read_scala, files, "a.par");
    ASSERT_TRUE(result) << result.error().reason;
    ASSERT_EQ(result->items.size(), 2u);
    const auto& height = image_at(result, 0);
    EXPECT_EQ(raw_of(height), (std::vector<int>{1, 2, 3, 4, 5, 6, 6, 5, 4, 3, 2, 1}));
    EXPECT_EQ(subimages_of(height), (std::vector<std::string>{"Forward", "Reverse"}));
    EXPECT_EQ(axis_text(height, 0), "5 10 nm");
    EXPECT_EQ(axis_text(height, 1), "-7 10 nm");
    EXPECT_DOUBLE_EQ(physical_of(height)[0], -1 + 4.0 / 20 * 11); // raw -10 is -1, raw 10 is 3
    EXPECT_DOUBLE_EQ(physical_of(image_at(result, 1))[0], 0.25);  // no range: the resolution
    EXPECT_EQ(result->strings.at("Gap Voltage"), "0.5 V");
    EXPECT_EQ(result->strings.at("\\Date"), "04.06.2012");
    EXPECT_EQ(result->strings.at("Comment"), "a b \u00B0"); // native files hold no control characters
}

TEST(Scala, FindsDataFilesWhateverTheirNamesBecame)
{
    const std::string data = samples({1, 2, 3, 4, 5, 6});
    const folder sets[] = {
        {{"a.par", head + geometry + topography("Z", "Forward", "A.TF0")}, {"a.tf0", data}},
        {{"a.par", head + geometry + topography("Z", "Forward", "a.tf0")}, {"A.TF0", data}},
        {{"new.par", head + geometry + topography("Z", "Forward", "old.tf0")}, {"new.tf0", data}},
        {{"a.par", head + geometry + topography("Z", "Forward", "C:\\scans\\a.tf0")}, {"a.tf0", data}},
        {{"a.par", head + geometry + topography("Z", "Forward", "../../b/a.tf0")}, {"a.tf0", data}},
    };
    for (const folder& files : sets)
        for (const auto& [name, bytes] : files) {
            const auto result = read(formats::read_scala, files, name); // from the data file, too
            EXPECT_EQ(raw_of(image_at(result, 0)), (std::vector<int>{1, 2, 3, 4, 5, 6})) << name;
        }
    EXPECT_EQ(type_of(data, "a.tf0"), FILE_SCALA);
    const auto alone = read(formats::read_scala, folder{{"a.tf0", data}}, "a.tf0");
    ASSERT_FALSE(alone);
    EXPECT_NE(alone.error().reason.find("none with its name lies beside it"), std::string::npos);
}

TEST(Scala, AMissingDataFileDoesNotLoseTheOthers)
{
    folder files = {{"a.par", head + geometry + topography("Z", "Forward", "a.tf0") +
                                  topography("I", "Forward", "a.tf1") + topography("F", "Forward", "a.tf2")},
                    {"a.tf1", samples({1, 2, 3, 4, 5, 6})},
                    {"a.tf2", samples({1, 2, 3})}};
    const auto result = read(formats::read_scala, files, "a.par");
    ASSERT_TRUE(result) << result.error().reason;
    EXPECT_EQ(result->items.size(), 1u);
    EXPECT_EQ(result->strings.at("Missing channels"),
              "Z (a.tf0): there is no such file; F (a.tf2): the file is cut short");
    files.erase("a.tf1");
    EXPECT_FALSE(read(formats::read_scala, files, "a.par"));
}

TEST(Scala, SpectroscopyOnAGridIsAVolume)
{
    // Three points of two curves, each point a map of its own.
    const folder files = {{"a.par", head + geometry + spectroscopy("a.sf0")}, {"a.sf0", samples({1, 2, 3, 4, 5, 6})}};
    const auto result = read(formats::read_scala, files, "a.par");
    const auto& volume = image_at(result, 0);
    ASSERT_EQ(volume.stream.get_dimensions_number(), 3u);
    EXPECT_EQ(raw_of(volume), (std::vector<int>{1, 3, 5, 2, 4, 6}));
    EXPECT_EQ(axis_text(volume, 0), "-1 1 V");
    EXPECT_EQ(axis_text(volume, 1), "5 20 nm"); // a curve at every second pixel of 10 nm
    EXPECT_STREQ(volume.stream.get_description(), "I of V");
    EXPECT_DOUBLE_EQ(physical_of(volume)[0], 0.5);
}

TEST(Scala, CurvesOfSinglePointsAreSubimages)
{
    const std::string text =
        ";n_curves : 2\nBEGIN COORD\n1.5 2.5\n3 4\nEND\nBEGIN\n-1 2\n0 4\n1 6\nEND\nBEGIN\n-1 8\n0 10\n"
        "END\n";
    folder files = {{"a.par", head + geometry + spectroscopy("a.cs0")}, {"a.cs0", text}};
    const auto uneven = read(formats::read_scala, files, "a.par");
    ASSERT_TRUE(uneven) << uneven.error().reason;
    ASSERT_EQ(uneven->items.size(), 2u);
    const auto& curves = image_at(uneven, 1);
    EXPECT_EQ(raw_of(curves), (std::vector<int>{2, 4, 6, 8, 10, 10}));
    EXPECT_EQ(curves.strings.at("\\Curve lengths"), "3 2");
    EXPECT_EQ(curves.strings.at("Curve places, nm"), "1.5 2.5\n3 4\n");
    EXPECT_STREQ(curves.stream.get_parameter_stream(), image_at(uneven, 0).stream.get_name());
    EXPECT_EQ(raw_of(image_at(uneven, 0)), (std::vector<int>{-1, 0, 1, -1, 0, 0}));

    files["a.cs0"].insert(files["a.cs0"].rfind("END"), "1 12\n");
    const auto even = read(formats::read_scala, files, "a.par");
    EXPECT_EQ(axis_text(image_at(even, 0), 0), "-1 1 V");
    files["a.cs0"].resize(60);
    EXPECT_FALSE(read(formats::read_scala, files, "a.par"));
}

TEST(Scala, RefusesWhatCannotBe)
{
    const std::string channel = topography("Z", "Forward", "a.tf0");
    std::string many;
    for (int i = 0; i < 101; ++i) many += channel;
    const struct {
        std::string file, reason;
    } rows[] = {
        {";\n; Anfatec parameter file\n", "not an Omicron parameter file"},
        {head + geometry, "no channel is described"},
        {head + channel, "Image Size in X or Y is missing"},
        {head + "Image Size in X : 3\nImage Size in Y : 65537\n" + channel, "above 65536"},
        {head + geometry + many, "more than 100 channels"},
        {head + geometry + channel, "none of its data files can be read: Z (a.tf0): there is no such file"},
        {head + geometry + spectroscopy("a.sf0", "-4"), "none of its data files"},
    };
    for (const auto& row : rows) {
        const auto result = read(formats::read_scala, row.file, "a.par");
        ASSERT_FALSE(result) << row.reason;
        EXPECT_NE(result.error().reason.find(row.reason), std::string::npos) << result.error().reason;
    }
}

} // namespace
