// What marks select on a section, copies of it, and drawings that lie on it.
#include "curves/figures/section_decoration.h"
#include "curves/figures/section_selection.h"
#include "document/fixtures.h"

#include <gmock/gmock.h>

namespace {

using curves::grid_point;
using points = std::vector<grid_point>;
using testing::ElementsAre;

/// Kind and numbers of a record.
std::vector<int> numbers(const VLPluginDataSelection& record, int count)
{
    std::vector<int> out{static_cast<int>(record.kind)};
    out.insert(out.end(), record.data, record.data + count);
    return out;
}

struct taken_section {
    SPMDataStream stream;
    points line;
    curves::profile profile;

    taken_section(SPMDataStream source, points through, const char* lengths = nullptr)
        : stream(std::move(source)), line(std::move(through))
    {
        curves::take_profile(stream, line, 0, profile, lengths);
    }
    std::vector<VLPluginDataSelection> selected(const curves::section_marks& marks) const
    {
        return curves::section_selections(curves::grid(stream), line, profile, marks);
    }
    SPMDataStream copy(const std::vector<VLPluginDataSelection>& records) const
    {
        SPMDataStream target;
        target.Init("copy", "", SPM_VAR_ARRAY, 0u, stream.array_element_size());
        target.set_array_type(stream.array_type());
        target.values = stream.values;
        curves::copy_section(target, stream, records, profile);
        return target;
    }
};

std::vector<int> samples(const SPMDataStream& stream)
{
    const auto* data = static_cast<const short*>(stream.array_data());
    return {data, data + stream.array_length()};
}

VLPluginDataSelection record(plugin_selection_kind kind, int a, int b = 0, int c = 0, int d = 0)
{
    return {pluginSelectionSize, pluginSelectionVersion, kind, {a, b, c, d, 0, 0}};
}

TEST(SectionSelection, OfARecordIsARangeInEachCurve)
{
    const taken_section section(heights("Record", {11}, 2), {});
    const auto ranges = section.selected({false, 0.84, 0.2, 0.0}); // samples 8 and 2, crossed
    ASSERT_EQ(ranges.size(), 2u);
    EXPECT_THAT(numbers(ranges[0], 2), ElementsAre(SELECTION_RANGE, 2, 8));
    EXPECT_THAT(numbers(ranges[1], 2), ElementsAre(SELECTION_RANGE, 13, 19));
    EXPECT_EQ(ranges[1].size, 36u);
    EXPECT_EQ(ranges[1].version, 1u);
    const auto at = section.selected({true, 0.0, 1.0, 0.65});
    ASSERT_EQ(at.size(), 2u);
    for (const auto& each : at) EXPECT_THAT(numbers(each, 1), ElementsAre(SELECTION_POSITION, 7));

    const taken_section ragged(heights("Record", {11}, 3), {}, "11 6 0");
    const auto ends = ragged.selected({false, 0.2, 0.84, 0.0});
    EXPECT_THAT(numbers(ends[0], 2), ElementsAre(SELECTION_RANGE, 2, 8));
    EXPECT_THAT(numbers(ends[1], 2), ElementsAre(SELECTION_RANGE, 13, 16)); // the last of six samples
    EXPECT_THAT(numbers(ends[2], 2), ElementsAre(SELECTION_RANGE, 22, 22));
}

TEST(SectionSelection, OfALineIsAPointSegmentOrPolyline)
{
    // Segments of 11 and 6 samples, 16 in all.
    const taken_section section(heights("Topo", {20, 12}), {{0, 0}, {10, 0}, {10, 5}});
    const auto point = [&](double mark) { return numbers(section.selected({true, 0, 1, mark}).at(0), 2); };
    EXPECT_THAT(point(0.25), ElementsAre(SELECTION_POINT, 4, 0));  // 4 of 11 over 10 samples
    EXPECT_THAT(point(0.75), ElementsAre(SELECTION_POINT, 10, 1)); // 12 - 11 = 1 of 6 over 5 samples
    const auto inOne = section.selected({false, 0.5, 0.125, 0.0}); // 2 and 8 of the first segment
    ASSERT_EQ(inOne.size(), 1u);
    EXPECT_THAT(numbers(inOne[0], 4), ElementsAre(SELECTION_SEGMENT, 2, 0, 7, 0)); // 2/11 and 8/11 of 10
    const auto overTheCorner = section.selected({false, 0.125, 0.875, 0.0});       // 2 and 14
    ASSERT_EQ(overTheCorner.size(), 3u);
    EXPECT_THAT(numbers(overTheCorner[0], 2), ElementsAre(SELECTION_POLYLINE, 2, 0));
    EXPECT_THAT(numbers(overTheCorner[1], 2), ElementsAre(SELECTION_POLYLINE, 10, 0));
    EXPECT_THAT(numbers(overTheCorner[2], 2), ElementsAre(SELECTION_POLYLINE_END, 10, 3)); // 14 - 11 = 3 of 6
}

TEST(SectionSelection, OfALineStaysOnItWhereverTheMarksStand)
{
    const taken_section section(heights("Topo", {20, 12}), {{0, 0}, {10, 0}, {10, 0}, {3, 9}, {19, 11}});
    for (int a = 0; a <= 40; ++a) {
        section.selected({true, 0, 1, a / 40.0});
        for (int b = 0; b <= 40; ++b) {
            const auto found = section.selected({false, a / 40.0, b / 40.0, 0.0});
            ASSERT_FALSE(found.empty());
            for (const VLPluginDataSelection& each : found)
                for (int i = 0; i < (each.kind == SELECTION_SEGMENT ? 4 : 2); i += 2) {
                    EXPECT_TRUE(each.data[i] >= 0 && each.data[i] < 20) << a << ' ' << b;
                    EXPECT_TRUE(each.data[i + 1] >= 0 && each.data[i + 1] < 12) << a << ' ' << b;
                }
        }
    }
}

TEST(SectionSelection, OfAVolumeIsItsPointsAsFarAsThereIsRoom)
{
    const taken_section section(heights("Volume", {6, 3, 4}), {{0, 1, 2}, {5, 1, 2}});
    const auto found = section.selected({});
    ASSERT_EQ(found.size(), 2u);
    EXPECT_THAT(numbers(found[1], 3), ElementsAre(SELECTION_POINT_3D, 5, 1, 2));
    VLPluginDataSelection entries[2];
    EXPECT_EQ(curves::write_selections(found, 3, entries, 1), 1u);
    EXPECT_EQ(curves::write_selections(found, 1, entries, 1), 0u);
    EXPECT_EQ(curves::write_selections(found, 1, entries, 2), 2u);
    EXPECT_TRUE(taken_section(heights("4D", {2, 2, 2, 2}), {}).selected({}).empty());
}

TEST(SectionCopy, OfRangesLeavesOutTheirLastSampleAndFillsUp)
{
    const taken_section section(heights("Record", {10}, 2), {});
    const SPMDataStream copy = section.copy({record(SELECTION_RANGE, 2, 6), record(SELECTION_RANGE, 13, 15)});
    EXPECT_THAT(samples(copy), ElementsAre(2, 3, 4, 5, 13, 14, 14, 14));
    EXPECT_EQ(copy.get_dimension(0).length, 4u);
    EXPECT_DOUBLE_EQ(copy.get_dimension(0).get_axis(0).start, 2 * 0.25);
}

TEST(SectionCopy, OfASegmentTakesRoundedSamplesOfAllSubImages)
{
    const taken_section section(heights("Topo", {20, 12}, 2), {{0, 0}, {10, 0}});
    const SPMDataStream copy = section.copy({record(SELECTION_SEGMENT, 1, 1, 4, 2)});
    // L = 3: x 1 2 3 4, y 1 + round(0, 1/3, 2/3, 1).
    EXPECT_THAT(samples(copy), ElementsAre(21, 22, 43, 44, 261, 262, 283, 284));
    EXPECT_EQ(copy.get_dimension(0).length, 4u);
    EXPECT_EQ(copy.get_dimension(0).get_axis(0).start, 0.0);
}

TEST(SectionCopy, OfAPolylineDeclaresOneSampleMoreThanItFills)
{
    const taken_section section(heights("Topo", {20, 12}), {{0, 0}, {10, 0}});
    const SPMDataStream copy = section.copy({record(SELECTION_POLYLINE, 0, 0), record(SELECTION_POLYLINE, 2, 0),
                                             record(SELECTION_POLYLINE_END, 2, 2), record(SELECTION_POLYLINE, 9, 9)});
    EXPECT_EQ(copy.get_dimension(0).length, 6u); // 2 + 3 + 3 - 2
    EXPECT_THAT(samples(copy), ElementsAre(0, 1, 2, 22, 42, 0));
}

TEST(SectionCopy, WithoutAUsableSelectionIsTheCurves)
{
    const taken_section section(heights("Topo", {20, 12}), {{0, 1}, {3, 1}});
    for (const auto& records : {std::vector<VLPluginDataSelection>{},
                                {record(SELECTION_POINT, 3, 3)},
                                {record(SELECTION_SEGMENT, 3, 3, 3, 3)},
                                {record(SELECTION_SEGMENT, 0, 0, 20, 3)},
                                {record(SELECTION_POLYLINE, 0, -1), record(SELECTION_POLYLINE_END, 3, 3)},
                                {record(SELECTION_POLYLINE, 1, 1)}}) {
        const SPMDataStream copy = section.copy(records);
        EXPECT_THAT(samples(copy), ElementsAre(20, 21, 22, 23));
        EXPECT_EQ(copy.get_dimension(0).length, 4u);
    }
    const taken_section curve(heights("Record", {4}), {});
    for (const auto& range :
         {record(SELECTION_RANGE, 2, 2), record(SELECTION_RANGE, -1, 2), record(SELECTION_RANGE, 2, 4)})
        EXPECT_EQ(curve.copy({range}).array_length(), 4u);
}

TEST(DecorationAtSection, FindsTheSampleUnderAPoint)
{
    const points line{{0, 0}, {10, 0}, {10, 5}, {4, 5}};
    const std::uint32_t lengths[] = {11, 6, 7};
    const curves::axes_xy axes{VLAxis(100.0, 2.0, "nm"), VLAxis(0.0, 0.5, "nm")};
    std::vector<std::uint32_t> found;
    // Samples (3, 0), (10, 2) and (7, 5): 3; 11 + 2; 11 + 6 - 1 + 3.
    const double on[] = {106.0, 0.0, 120.0, 1.0, 114.0, 2.5};
    EXPECT_TRUE(curves::Decoration_at_Section(on, axes, line, lengths, &found));
    EXPECT_THAT(found, ElementsAre(3, 13, 19));
    const double off[] = {106.0, 0.0, 106.0, 1.0};
    EXPECT_FALSE(curves::Decoration_at_Section(off, axes, line, lengths, &found));
    EXPECT_TRUE(found.empty());
    EXPECT_FALSE(curves::Decoration_at_Section(on, axes, line, lengths, nullptr));
}

TEST(DecorationAtSection, AllowsOneSampleBesideTheLine)
{
    const points steep{{0, 0}, {10, 10}};
    const std::uint32_t lengths[] = {15};
    const curves::axes_xy axes;
    std::vector<std::uint32_t> found;
    const double near[] = {5.0, 6.0}, far[] = {5.0, 7.0}; // 0.71 and 1.41 from the line
    EXPECT_TRUE(curves::Decoration_at_Section(near, axes, steep, lengths, &found));
    EXPECT_THAT(found, ElementsAre(7));
    EXPECT_FALSE(curves::Decoration_at_Section(far, axes, steep, lengths, &found));
}

} // namespace
