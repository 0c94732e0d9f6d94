#include "formats/shared/finish_recording.h"

#include "formats/recorded_values.h"
#include "formats/shared/left_out.h"
#include "formats/shared/stream_shape.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

// What every recording goes through before it leaves the readers.

namespace {

using namespace formats;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

/// A row of two samples with these axes.
recorded_image row_with(const VLAxis& side, const value_scale& scale, const std::string& id = "Height")
{
    const extent length[] = {{2, side}};
    recorded_image image = make_samples(id, id, length, 1, scale);
    elements_of<std::int16_t>(image)[0] = elements_of<std::int16_t>(image)[1] = 7;
    return image;
}

template <class T>
void expect_turned(SPMVarArrayType type)
{
    SCOPED_TRACE(type);
    const T numbers[] = {std::numeric_limits<T>::lowest(), T{0}, T{1}, T{100}, std::numeric_limits<T>::max()};
    const extent length[] = {{5, {}}};
    const value_scale falling{-0.25, 8.0, "nm", {}}; // exact in binary, so that the sums are, too
    recorded_image image = make_samples("id", "label", length, 1, falling, type);
    add_calibration(image, falling, {0.5, 0.0, "V", {}});
    std::ranges::copy(numbers, elements_of<T>(image).begin());
    make_step_positive(image.stream);
    const VLAxis nm = image.stream.values.get_axis(0), volts = image.stream.values.get_axis(1);
    EXPECT_EQ(nm.scale, 0.25);
    EXPECT_EQ(volts.scale, -0.5);
    // Doubles do not count as far as 64 bits.
    const double error = std::is_integral_v<T> && sizeof(T) == 8 ? 1e-15 * static_cast<double>(numbers[4]) : 0.0;
    for (int i = 0; i < 5; ++i) {
        const double raw = static_cast<double>(elements_of<T>(image)[i]), before = static_cast<double>(numbers[i]);
        EXPECT_NEAR(nm.at(raw), 8.0 - 0.25 * before, error) << i;
        EXPECT_NEAR(volts.at(raw), 0.5 * before, error) << i;
    }
}

TEST(FinishedRecording, RisesAndEverySampleKeepsItsValue)
{
    expect_turned<std::int8_t>(SPM_ARRAY_INT8), expect_turned<std::uint8_t>(SPM_ARRAY_UINT8);
    expect_turned<std::int16_t>(SPM_ARRAY_INT16), expect_turned<std::uint16_t>(SPM_ARRAY_UINT16);
    expect_turned<std::int32_t>(SPM_ARRAY_INT32), expect_turned<std::uint32_t>(SPM_ARRAY_UINT32);
    expect_turned<std::int64_t>(SPM_ARRAY_INT64), expect_turned<std::uint64_t>(SPM_ARRAY_UINT64);
    expect_turned<float>(SPM_ARRAY_FLOAT32), expect_turned<double>(SPM_ARRAY_FLOAT64);
}

TEST(FinishedRecording, HasNoAxisThatPlacesNothing)
{
    const VLAxis good(0.0, 0.5, "nm");
    const value_scale values{2.0, 1.0, "nm", {}};
    const struct {
        VLAxis side;
        value_scale values;
        const char* reason;
    } rows[] = {
        {{0.0, nan, "nm"}, values, "the scale of axis 1 is no number"},
        {{0.0, 0.0, "nm"}, values, "the scale of axis 1 is 0"},
        {{nan, 1.0, "nm"}, values, "the start of axis 1 is no number"},
        {{infinity, 1.0, "nm"}, values, "the start of axis 1 is infinite"},
        {good, {nan, 0.0, "nm", {}}, "the scale of the values is no number"},
        {good, {0.0, 0.0, "nm", {}}, "the scale of the values is 0"},
        {good, {1.0, nan, "nm", {}}, "the start of the values is no number"},
        {stated_side(0.0, -3.0, 2, "nm"), values, "the scale of axis 1 is below 0"},
        {{0.0, 1.0, "nm"}, {1e300, 0.0, "m", {}}, "the scale of the values is 1e30 or more"},
    };
    for (const auto& row : rows) {
        recording alone;
        alone.items.emplace_back(row_with(row.side, row.values));
        const auto refused = finish_recording(std::move(alone));
        ASSERT_FALSE(refused) << row.reason;
        EXPECT_EQ(refused.error().reason, std::string("\"Height\": ") + row.reason);

        recording two;
        two.items.emplace_back(row_with(row.side, row.values));
        two.items.emplace_back(row_with(good, values, "Phase"));
        std::get<recorded_image>(two.items[1]).stream.set_parameter_stream("Height");
        const auto rest = finish_recording(std::move(two));
        ASSERT_TRUE(rest);
        ASSERT_EQ(rest->items.size(), 1u);
        EXPECT_EQ(item(*rest, 0).stream.get_parameter_stream(), nullptr) << "its parameter stream is gone";
        EXPECT_EQ(rest->warnings, std::vector{std::string("\"Height\" is left out: ") + row.reason});
    }
    recording empty;
    empty.items.emplace_back(recorded_image{});
    SPMDataStream::dimension side;
    std::get<recorded_image>(empty.items[0]).stream.set_dimension(0, side);
    EXPECT_EQ(finish_recording(std::move(empty)).error().reason, "\"\": the length of axis 1 is 0");
}

TEST(FinishedRecording, TellsLittleOfManyParts)
{
    left_out many;
    for (int i = 0; i < 60000; ++i) {
        many.add({0, "a part is cut short"});
        many.add({0, "part " + std::to_string(i)});
    }
    recording read;
    many.tell(read);
    ASSERT_EQ(read.warnings.size(), 21u) << "twenty reasons and what is not told";
    EXPECT_EQ(read.warnings[0], "left out: a part is cut short (60000 times)");
    EXPECT_EQ(read.warnings[1], "left out: part 0");
    EXPECT_EQ(read.warnings[20], "left out: 59981 more parts");
    for (int i = 0; i < 1000; ++i) add_warning(read, "more");
    EXPECT_EQ(read.warnings.size(), 101u);
    EXPECT_EQ(read.warnings.back(), "further notes are not shown");
    EXPECT_EQ(std::ranges::count(read.strings.at("\\Reader note"), '\n'), 100);
}

TEST(FinishedRecording, TellsItsWarningsInATextToo)
{
    recording read;
    read.items.emplace_back(row_with({}, {-2.0, 1.0, "nm", {}}));
    std::get<recorded_image>(read.items[0]).notes = {"3 samples count as not measured"};
    leave_note(read, "Frames left out", "frame 2");
    left_out missing;
    missing.add({0, "page 3: cut short"});
    missing.tell(read);
    const auto finished = finish_recording(std::move(read));
    ASSERT_TRUE(finished);
    EXPECT_EQ(finished->strings.at("Frames left out"), "frame 2");
    EXPECT_EQ(finished->strings.at("\\Reader note"),
              "Frames left out: frame 2\nleft out: page 3: cut short\n\"Height\": 3 samples count as not measured");
    EXPECT_EQ(finished->warnings.size(), 3u);
    EXPECT_EQ(item(*finished, 0).stream.values.get_axis(0).scale, 2.0) << "turned over";
    EXPECT_EQ(physical(item(*finished, 0).stream), (std::vector<double>{-13.0, -13.0}));

    EXPECT_EQ(finish_recording(base::read_error{5, "no header"}).error().reason, "no header");
}

} // namespace
