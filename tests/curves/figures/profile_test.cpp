// Curves along lines through images of one, two and three dimensions.
#include "curves/figures/profile.h"
#include "curves/figures/table_text.h"
#include "document/fixtures.h"

#include <cmath>
#include <gmock/gmock.h>

namespace {

using curves::grid_point;
using curves::profile;
using points = std::vector<grid_point>;
using testing::ElementsAre;

profile taken(const SPMDataStream& stream, points& line, unsigned halfWidth = 0, const char* lengths = nullptr,
              const char* voids = nullptr)
{
    profile out;
    curves::take_profile(stream, line, halfWidth, out, lengths, voids);
    const std::vector<std::int16_t> kept(out.samples.begin(), out.samples.end());
    out.memory = kept; // streams of tests go before their curves do
    out.samples = out.memory;
    return out;
}

/// A surface of 20 x 12 samples with the height 100 y + 10 x in sub-image 0 and 7 more in 1.
SPMDataStream slope()
{
    SPMDataStream stream = heights("Topo", {20, 12}, 2);
    auto* samples = static_cast<short*>(stream.array_data());
    for (int sub = 0; sub < 2; ++sub)
        for (int y = 0; y < 12; ++y)
            for (int x = 0; x < 20; ++x) *samples++ = static_cast<short>(100 * y + 10 * x + 7 * sub);
    return stream;
}

std::vector<int> curve(const profile& from, unsigned index)
{
    const auto span = from.curve(index);
    return {span.begin(), span.end()};
}

TEST(Profile, OfARecordIsAllOfItWhateverItsPoints)
{
    const SPMDataStream record = heights("Record", {5}, 3);
    for (points line : {points{}, points{{2}}, points{{3}, {1}}}) {
        const profile found = taken(record, line);
        EXPECT_EQ(line, (points{{0}, {4}}));
        EXPECT_EQ(found.length, 5u);
        EXPECT_THAT(found.segmentLengths, ElementsAre(5));
        EXPECT_EQ(found.curves, 3u);
        EXPECT_THAT(curve(found, 2), ElementsAre(10, 11, 12, 13, 14));
    }
    points three{{4}, {2}, {9}}; // a third point makes it a line of its own, there and back
    EXPECT_THAT(curve(taken(record, three), 1), ElementsAre(9, 8, 7, 8, 9));
    EXPECT_EQ(three[2], grid_point{4});
    const SPMDataStream one = heights("One", {1});
    points none;
    EXPECT_THAT(curve(taken(one, none), 0), ElementsAre(0));
}

TEST(Profile, OfCurvesEndsWhereTheyDo)
{
    const auto lengths = [](const SPMDataStream& stream, points line, const char* told) {
        const profile out = taken(stream, line, 0, told);
        std::vector<std::size_t> found;
        for (unsigned k = 0; k < out.curves; ++k) found.push_back(out.curve(k).size());
        EXPECT_EQ(out.all().size(), std::size_t{out.curves} * out.length);
        return found;
    };
    const SPMDataStream record = heights("Record", {5}, 3);
    EXPECT_THAT(lengths(record, {}, "5 2 0"), ElementsAre(5, 2, 0));
    EXPECT_THAT(lengths(record, {}, "5 2"), ElementsAre(5, 5, 5)) << "a text of another shape";
    EXPECT_THAT(lengths(record, {}, "9 x -1"), ElementsAre(5, 5, 0));
    EXPECT_THAT(lengths(record, {}, " 5\t2  0\n"), ElementsAre(5, 2, 0));
    EXPECT_THAT(lengths(record, {}, "5, 2, 0"), ElementsAre(5, 2, 0));
    for (const char* nothing : {static_cast<const char*>(nullptr), ""})
        EXPECT_THAT(lengths(record, {}, nothing), ElementsAre(5, 5, 5));

    const SPMDataStream volume = heights("Volume", {5, 2, 1}, 2); // four curves
    EXPECT_THAT(lengths(volume, {{0, 1, 0}, {4, 1, 0}}, "5 3 2 1"), ElementsAre(3, 1));
    EXPECT_THAT(lengths(volume, {{2, 1, 0}, {4, 1, 0}}, "5 3 2 1"), ElementsAre(1, 0));
    EXPECT_THAT(lengths(volume, {{0, 1, 0}, {1, 1, 0}}, "5 3 2 1"), ElementsAre(2, 1));
    EXPECT_THAT(lengths(volume, {{0, 0, 0}, {4, 0, 0}}, "4 2"), ElementsAre(4, 2)) << "one for each sub-image";
}

TEST(Profile, TellsWhatWasNotMeasured)
{
    const SPMDataStream volume = heights("Volume", {5, 2, 1}, 2); // 20 samples
    for (const bool isAcross : {true, false}) {
        points line = isAcross ? points{{3, 0, 0}, {3, 1, 0}} : points{{0, 0, 0}, {4, 0, 0}};
        profile out = taken(volume, line, 0, nullptr, "of 20: 3-4 18-18");
        const auto measured = [&](unsigned sub, std::size_t at) { return out.isMeasured(sub, at); };
        EXPECT_FALSE(measured(0, isAcross ? 0 : 3));
        EXPECT_TRUE(measured(0, isAcross ? 1 : 2));
        EXPECT_EQ(measured(1, isAcross ? 1 : 3), !isAcross);
        EXPECT_EQ(out.gapsOf(0),
                  isAcross ? std::vector<bool>({true, false}) : std::vector<bool>({false, false, false, true, true}));
        for (const char* other : {"of 21: 3-4", "of 20: 3-20", "of 20: 4-3", "of 20: 5-6 3-4", "3-4"}) {
            curves::take_profile(volume, line, 0, out, nullptr, other);
            EXPECT_TRUE(out.gaps.empty()) << other;
        }
    }
}

TEST(Profile, MeansAcrossALineLeaveOutWhatWasNotMeasured)
{
    SPMDataStream surface = heights("Topo", {3, 3});
    auto* const samples = static_cast<short*>(surface.array_data());
    std::ranges::copy(std::vector<short>{1, -900, 3, 10, -900, -900, 34, -900, 8}, samples);
    points line = {{0, 1}, {2, 1}};
    const profile out = taken(surface, line, 1, nullptr, "of 9: 1-1 4-5 7-7");
    EXPECT_EQ(out.gapsOf(0), (std::vector<bool>{false, true, false}));
    EXPECT_EQ(out.samples[0], 15) << "(1 + 10 + 34) / 3";
    EXPECT_EQ(out.samples[2], 6) << "(3 + 8) / 2, halves to even";
}

TEST(Profile, AcrossCurvesHasGapsBehindTheirEnds)
{
    const struct {
        points line;
        std::vector<int> measured;                                        ///< of both sub-images
    } rows[] = {{{{4, 1, 0}, {0, 1, 0}}, {0, 0, 1, 1, 1, 0, 0, 0, 0, 1}}, // down one curve
                {{{3, 0, 0}, {3, 1, 0}}, {1, 0, 0, 0}},                   // from curve to curve
                {{{0, 0, 0}, {4, 0, 0}, {4, 1, 0}}, {1, 1, 1, 1, 1, 0, 1, 1, 0, 0, 0, 0}}};
    const SPMDataStream volume = heights("Volume", {5, 2, 1}, 2); // four curves
    for (const auto& row : rows) {
        points line = row.line;
        EXPECT_TRUE(taken(volume, line, 0, "5 5 5 5").gaps.empty());
        const profile out = taken(volume, line, 0, "5 3 2 1");
        ASSERT_EQ(row.measured.size(), out.curves * out.length);
        for (std::size_t i = 0; i < row.measured.size(); ++i)
            EXPECT_EQ(out.isMeasured(static_cast<unsigned>(i / out.length), i % out.length), row.measured[i] == 1) << i;
        EXPECT_FALSE(out.gapsOf(1).empty());
        const std::string table = curves::section_text(out, line, 3, VLAxis(), VLAxis(), 1, 1);
        EXPECT_NE(table.find("\tnan\n"), std::string::npos) << table;
    }
}

TEST(Profile, OfFloatsIsThatOfTheirConversion)
{
    SPMDataStream record = heights("Record", {4}, 2);
    record.convert_stream(SPM_ARRAY_FLOAT32);
    const float values[] = {0.0f, 0.5f, 1.0f, -1.0f, 2.0f, 3.0f, 4.0f, 5.0f};
    record.set_array(values, 8, 0);
    const SPMDataStream before = record;
    points line;
    const profile found = taken(record, line);
    ASSERT_EQ(found.curves, 2u);
    const VLAxis& axis = found.values.get_axis(0);
    for (unsigned i = 0; i < 8; ++i)
        EXPECT_NEAR(axis.at(found.all()[i]), before.values.get_axis(0).at(static_cast<double>(values[i])),
                    0.51 * axis.scale);
    EXPECT_EQ(record.array_type(), SPM_ARRAY_FLOAT32);
    EXPECT_EQ(record.values, before.values);
}

TEST(Profile, FollowsTheNearestSamplesOfItsLine)
{
    const SPMDataStream volume = heights("Volume", {6, 3, 4}, 2);
    const struct {
        points line;
        unsigned halfWidth, subImage, dimension;
        std::vector<int> samples;
    } rows[] = {
        {{{0, 0}, {4, 0}, {4, 2}}, 0, 0, 0, {0, 10, 20, 30, 40, 140, 240}}, // a joint counts once
        {{{1, 1}, {4, 2}}, 0, 0, 0, {110, 120, 230, 240}},                  // sqrt(10) rounds to 3: a step of (1, 1/3)
        {{{3, 2}, {3, 5}}, 0, 0, 1, {230, 330, 430, 530}},
        {{{17, 30}, {100, 30}}, 0, 0, 0, {1270, 1280, 1290}}, // brought into the image
        {{{3, 3}, {3, 3}}, 2, 0, 0, {330}},
        {{{2, 3}, {4, 3}, {4, 5}}, 1, 0, 0, {320, 330, 340, 440, 540}}, // a joint is that of the first segment
        {{{0, 0}, {3, 0}}, 2, 1, 0, {67, 77, 87, 97}},                  // rows -2 ... 2, three of them row 0: 300 / 5
        {{{0, 1, 2}, {5, 1, 2}}, 0, 0, 0, {42, 43, 44, 45, 46, 47}},    // (2 * 3 + 1) * 6
        {{{2, 0, 0}, {2, 0, 3}}, 3, 1, 2, {74, 92, 110, 128}},          // volumes have no width
    };
    for (const auto& row : rows) {
        points line = row.line;
        const profile found = taken(line[0].size() == 3 ? volume : slope(), line, row.halfWidth);
        EXPECT_EQ(curve(found, row.subImage), row.samples);
        EXPECT_EQ(found.dimension(), row.dimension);
    }
}

TEST(Profile, IsEmptyWithoutALineOrSamples)
{
    for (points line : {points{}, points{{3, 3}}}) EXPECT_TRUE(taken(slope(), line).isEmpty());
    SPMDataStream cut = slope();
    cut.set_array_len(100); // fewer than one sub-image
    points line{{0, 0}, {5, 5}};
    EXPECT_TRUE(taken(cut, line).isEmpty());
    EXPECT_TRUE(taken(heights("None", {0, 5}), line).isEmpty());
    EXPECT_TRUE(taken(SPMDataStream(), line).isEmpty());
    SPMDataStream untyped = slope();
    untyped.set_array_type(SPM_ARRAY_VOID);
    EXPECT_TRUE(taken(untyped, line).isEmpty());
}

TEST(Profile, OfAWidthStepsByTheStepOfTheLine)
{
    SPMDataStream rough = slope();
    auto* samples = static_cast<short*>(rough.array_data());
    for (int i = 0; i < 480; ++i) samples[i] = static_cast<short>(i * 7919 % 2000 - 1000);
    points line{{2, 9}, {13, 3}};
    const profile found = taken(rough, line, 2);
    ASSERT_EQ(found.length, 14u); // sqrt(121 + 36) = 12.53
    const double stepX = 11.0 / 13.0, stepY = -6.0 / 13.0;
    for (int i = 0; i < 14; ++i) {
        double mean = 0.0;
        for (int t = -2; t <= 2; ++t)
            mean += samples[std::lround(i * stepY + t * stepX + 9) * 20 + std::lround(i * stepX - t * stepY + 2)] / 5.0;
        EXPECT_NEAR(found.curve(0)[static_cast<std::size_t>(i)], mean, 0.501) << i;
    }
}

TEST(Profile, UsesItsMemoryAgain)
{
    profile out;
    points longer{{0, 0}, {19, 0}}, shorter{{0, 1}, {2, 1}};
    const SPMDataStream image = slope();
    curves::take_profile(image, longer, 0, out);
    const auto* const memory = out.samples.data();
    curves::take_profile(image, shorter, 0, out);
    EXPECT_EQ(out.samples.data(), memory);
    EXPECT_EQ(out.all().size(), 6u);
    EXPECT_THAT(curve(out, 1), ElementsAre(107, 117, 127));
}

TEST(PointOfSample, LiesOnItsSegment)
{
    const points line{{0, 0}, {10, 0}, {10, 5}};
    const std::uint32_t lengths[] = {11, 6};
    EXPECT_EQ(curves::point_of_sample(line, lengths, 0), (grid_point{0, 0}));
    EXPECT_EQ(curves::point_of_sample(line, lengths, 10), (grid_point{10, 0}));
    EXPECT_EQ(curves::point_of_sample(line, lengths, 12), (grid_point{10, 2}));
    EXPECT_EQ(curves::point_of_sample(line, lengths, 15), (grid_point{10, 5}));
}

TEST(TableText, IsALineOfUnitsAndALineASample)
{
    const std::int16_t samples[] = {0, -3};
    const VLAxis x(1.0, 1.0 / 3.0, "um"), y(0.5, 0.25, "nm");
    EXPECT_EQ(curves::table_text(samples, x, y), "X,um\tY,nm\n1\t0.5\n1.33333333333\t-0.25\n");
    EXPECT_EQ(curves::table_text(samples, x, y, {true, ","}),
              "X,um\tY,nm\n1,000000000000e+00\t5,000000000000e-01\n1,333333333333e+00\t-2,500000000000e-01\n");
    EXPECT_TRUE(curves::clipboard_style().isScientific);
}

TEST(SectionText, SaysWhereTheCurvesRun)
{
    points line{{0, 1}, {1, 1}}, whole;
    const profile section = taken(slope(), line), record = taken(heights("R", {1}, 2), whole);
    const VLAxis x(0.0, 2.0, "nm"), y(0.0, 1.0, "V");
    EXPECT_EQ(curves::section_text(section, line, 2, x, y, 0, 1),
              "\tX\tY\nPoint 1\t0\t1\nPoint 2\t1\t1\nCross-Section\nSubimage 1\nX,nm\tY,V\n0\t100\n2\t110\n"
              "Subimage 2\nX,nm\tY,V\n0\t107\n2\t117\n");
    EXPECT_EQ(curves::section_text(record, whole, 1, x, y, 1, 1), "Dependency\nSubimage 2\nX,nm\tY,V\n0\t1\n");
}

} // namespace
