#include "formats/instrument_fixture.h"
#include "formats/scala/scala.h"
#include "formats/shared/bytes.h"
#include "formats/shared/finish_recording.h"

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

const std::string grid =
    "Spectroscopy Points in X : 2\nSpectroscopy Lines in Y : 1\nSpectroscopy Grid Value in X : 2\n\n";

std::string spectroscopy(const std::string& file, const std::string& points = "3",
                         const std::string& direction = "Forward", const std::string& range = "-1\n 1\n 1")
{
    return grid + "Spectroscopy Channel : I(V)\n V ;Parameter\n " + direction + "\n 0\n 10\n 1\n 6\n 0.25\n nA\n " +
           points + "\n " + range + "\n 10\n 20\n On\n " + file + "\n I of V\n\n";
}

std::string samples(const std::vector<int>& values)
{
    return formats::in_bytes<std::int16_t>(values, std::endian::big);
}

const std::string six = samples({1, 2, 3, 4, 5, 6});

/// What opens of a parameter file with these channels and the files beside it.
base::read_result<formats::recording> read_set(const std::string& channels, folder files)
{
    files["a.par"] = head + geometry + channels;
    return formats::finish_recording(read(formats::read_scala, files, "a.par"));
}

TEST(Scala, DirectionsShareAnImageWithTheScaleOfBothRanges)
{
    const auto result =
        read_set(topography("Z", "Forward", "a.tf0") + topography("Z", "Backward", "a.tb0") +
                     topography("F", "Forward", "a.tf1", "4\n 4\n 0\n 1\n 0.25"),
                 {{"a.tf0", six}, {"a.tb0", samples({6, 5, 4, 3, 2, 1})}, {"a.tf1", samples({1, 0, 0, 0, 0, 0})}});
    // Raw -10 is -1, raw 10 is 3; without a range the resolution counts.
    const std::string axes = " [nm] (3: 5 + 10 nm; 2: -7 + 10 nm) {Forward";
    EXPECT_EQ(told(result),
              "Z" + axes + ", Reverse}: 1.2 1.4 1.6 1.8 2 2.2 2.2 2 1.8 1.6 1.4 1.2\nF" + axes + "}: 0.25 0 0 0 0 0");
    EXPECT_EQ(result->strings.at("Gap Voltage"), "0.5 V");
    EXPECT_EQ(result->strings.at("\\Date"), "04.06.2012");
    EXPECT_EQ(result->strings.at("Comment"), "a b \u00B0"); // native files hold no control characters
}

TEST(Scala, ReadsParametersAsTheyAreWritten)
{
    // Comments and blank lines stand inside a block, one key twice; a direction has no partner, another scale or none.
    std::string broken = topography("Z", "Backward", "a.tb0");
    broken.insert(broken.find(" Backward"), "; Range\n\n");
    const auto result =
        read_set("Counter : 1 ;[Hz]\n" + broken + topography("Z", "Forward", "a.tf0", "-9\n 10\n -1\n 3\n 9.5") +
                     topography("I", "Backward", "a.tb0", "0\n 10\n \t;minimum\n 3\n 0") + "Counter : 2\n",
                 {{"a.tf0", six}, {"a.tb0", six}});
    ASSERT_EQ(result->items.size(), 2u);
    EXPECT_EQ(subimages_of(image_at(result, 0)), std::vector<std::string>{"Reverse"});
    EXPECT_EQ(subimages_of(image_at(result, 1)), std::vector<std::string>{"Forward"});
    EXPECT_EQ(result->strings.at("Counter"), "1 Hz\n2");
    EXPECT_EQ(result->warnings,
              std::vector<std::string>{"\"I\" is left out: the scale of the values is 0: it is told by Resolution"});

    const std::string key = "Field X Size in nm";
    const auto set_of = [&](const std::string& from, const std::string& to) {
        const std::string text = head + formats::replaced(geometry, from, to) + topography("Z", "Forward", "a.tf0");
        return formats::finish_recording(read(formats::read_scala, folder{{"a.par", text}, {"a.tf0", six}}, "a.par"));
    };
    EXPECT_NE(
        told(set_of(key + " : 30", key + " : wide")).find("axis 1 is no number: it is told by Field X Size in nm"),
        std::string::npos);
    EXPECT_EQ(set_of(key, "Other")->warnings,
              std::vector<std::string>{"no Field X Size in nm: X is counted in points"});
}

TEST(Scala, FindsDataFilesWhateverTheirNamesBecame)
{
    const folder sets[] = {
        {{"a.par", head + geometry + topography("Z", "Forward", "A.TF0")}, {"a.tf0", six}},
        {{"a.par", head + geometry + topography("Z", "Forward", "a.tf0")}, {"A.TF0", six}},
        {{"new.par", head + geometry + topography("Z", "Forward", "old.tf0")}, {"new.tf0", six}},
        {{"a.par", head + geometry + topography("Z", "Forward", "C:\\scans\\a.tf0")}, {"a.tf0", six}},
        {{"a.par", head + geometry + topography("Z", "Forward", "../../b/a.tf0")}, {"a.tf0", six}},
    };
    for (const folder& files : sets)
        for (const auto& [name, bytes] : files) {
            const auto result = read(formats::read_scala, files, name); // from the data file, too
            EXPECT_EQ(raw_of(image_at(result, 0)), (std::vector<int>{1, 2, 3, 4, 5, 6})) << name;
        }
    EXPECT_EQ(type_of(six, "a.tf0"), FILE_SCALA);
    EXPECT_EQ(type_of("[Parameters]\r\n", "a.par"), FILE_UNKNOWN); // of another instrument
    EXPECT_NE(
        told(read(formats::read_scala, folder{{"a.tf0", six}}, "a.tf0")).find("none with its name lies beside it"),
        std::string::npos);
}

TEST(Scala, AMissingDataFileDoesNotLoseTheOthers)
{
    const std::string channels =
        topography("Z", "Forward", "a.tf0") + topography("I", "Forward", "a.tf1") + topography("F", "Forward", "a.tf2");
    const auto result = read_set(channels, {{"a.tf1", six}, {"a.tf2", samples({1, 2, 3})}});
    ASSERT_TRUE(result) << result.error().reason;
    EXPECT_EQ(result->items.size(), 1u);
    EXPECT_EQ(result->strings.at("Missing channels"),
              "Z (a.tf0): there is no such file; F (a.tf2): the file is cut short");
    EXPECT_FALSE(read_set(channels, {{"a.tf2", samples({1, 2, 3})}}));
}

TEST(Scala, SpectroscopyOnAGridIsAVolume)
{
    // Three points of two curves, each point a map of its own; a curve at every second pixel of 10 nm. Raw 0 is 1, raw
    // 10 is 6.
    const auto forward = read_set(spectroscopy("a.sf0"), {{"a.sf0", six}});
    EXPECT_EQ(told(forward), "I of V [nA] (3: -1 + 1 V; 2: 5 + 20 nm; 1: -7 + 20 nm) {Forward}: 1.5 2.5 3.5 2 3 4");
    // The increment lacks the sign of the way back; only without an end does it count.
    const std::pair<const char*, const char*> rows[] = {
        {"1\n -1\n 0.5", "1 -1 V"}, {"2\n 2\n 0.5", "2 0.5 V"}, {"-1\n 1\n 0", "-1 1 V"}};
    for (const auto& [range, axis] : rows) {
        const auto back = read_set(spectroscopy("a.sb0", "3", "Backward", range), {{"a.sb0", six}});
        EXPECT_EQ(axis_text(image_at(back, 0), 0), axis);
        EXPECT_EQ(subimages_of(image_at(back, 0)), std::vector<std::string>{"Reverse"});
    }
    EXPECT_NE(told(read_set(spectroscopy("a.sf0"), {{"a.sf0", six + "xx"}})).find("longer than its points take"),
              std::string::npos);
}

TEST(Scala, CurvesOfSinglePointsAreSubimages)
{
    const std::string text =
        ";n_curves : 2\nBEGIN COORD\n1.5 2.5\n3 4\nEND\nBEGIN\n-1 2\n0 4\n1 6\nEND\nBEGIN\n-1 8\n0 10\n"
        "END\n";
    folder files = {{"a.par", head + geometry + spectroscopy("a.cs0")}, {"a.cs0", text}};
    const auto uneven = read(formats::read_scala, files, "a.par");
    EXPECT_EQ(told(uneven), "V [V] (3) {Forward 1, Forward 2}: -1 0 1 -1 0 0\n"
                            "I of V [nA] (3) {Forward 1, Forward 2} over V: 0.5 1 1.5 2 2.5 2.5"); // 0.25 a step
    expect_image(image_at(uneven, 1),
                 {.strings = {{"\\Curve lengths", "3 2"}, {"Curve places, nm", "1.5 2.5\n3 4\n"}}});

    files["a.cs0"].insert(files["a.cs0"].rfind("END"), "1 12\n");
    const auto even = read(formats::read_scala, files, "a.par");
    EXPECT_EQ(told(even), "I of V [nA] (3: -1 + 1 V) {Forward 1, Forward 2}: 0.5 1 1.5 2 2.5 3");
    EXPECT_TRUE(even->warnings.empty());
    files["a.cs0"].replace(files["a.cs0"].find("n_curves : 2"), 12, "n_curves : 1");
    EXPECT_NE(read(formats::read_scala, files, "a.par")->warnings.at(0).find("n_curves states 1 curves, there are 2"),
              std::string::npos);
    files["a.cs0"].resize(60);
    EXPECT_FALSE(read(formats::read_scala, files, "a.par"));
}

TEST(Scala, DirectionsOfSinglePointsShareAnImage)
{
    const folder files = {{"a.par", head + geometry + spectroscopy("a.cs0") + spectroscopy("b.cs0", "3", "Backward")},
                          {"a.cs0", ";n_curves : 2\nBEGIN COORD\n1 2\nEND\nBEGIN\n-1 1\n0 2\nEND\n"},
                          {"b.cs0", "; n_curves : 1\nBEGIN COORD\n1 2\nEND\nBEGIN\n1 3\n0 4\n-1 5\nEND\n"}};
    for (const char* name : {"a.par", "a.cs0"}) {
        EXPECT_EQ(type_of(files.at(name), "wrong.ext"), FILE_SCALA);
        const auto result = read(formats::read_scala, files, name);
        EXPECT_EQ(told(result), "V [V] (3) {Forward, Reverse}: -1 0 0 1 0 -1\n"
                                "I of V [nA] (3) {Forward, Reverse} over V: 0.25 0.5 0.5 0.75 1 1.25");
        for (const std::size_t image : {0u, 1u})
            expect_image(image_at(result, image), {.strings = {{"\\Curve lengths", "2 3"}}});
        expect_image(image_at(result, 1), {.strings = {{"Curve places, nm", "1 2\n"}}});
        EXPECT_EQ(result->strings.at("Missing channels"), "I of V (a.cs0): cut short: 1 of 2 curves");
    }
}

TEST(Scala, RefusesWhatCannotBe)
{
    const std::string channel = topography("Z", "Forward", "a.tf0");
    std::string many;
    for (int i = 0; i < 101; ++i) many += channel;
    expect_refused(
        formats::read_scala,
        {
            {";\n; Anfatec parameter file\n", "not an Omicron parameter file"},
            {head + geometry, "no channel is described"},
            {head + channel, "Image Size in X or Y is missing"},
            {head + "Image Size in X : 3\nImage Size in Y : 65537\n" + channel, "above 65536"},
            {head + geometry + many, "more than 100 channels"},
            {head + geometry + channel, "none of its data files can be read: Z (a.tf0): there is no such file"},
            {head + geometry + spectroscopy("a.sf0", "-4"), "none of its data files"},
        });
}

} // namespace
