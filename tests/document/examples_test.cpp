#include "document/examples.h"

#include "base/text.h"
#include "document/contact_model.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstring>
#include <gtest/gtest.h>
#include <map>
#include <numbers>
#include <set>
#include <vector>

namespace {

using namespace document;

constexpr double pi = std::numbers::pi;

const SPMDataStream& stream_of(const example& each, std::size_t index)
{
    return std::get<formats::recorded_image>(each.content.items.at(index)).stream;
}

std::size_t subimage_length(const SPMDataStream& stream)
{
    std::size_t length = 1;
    for (unsigned i = 0; i < stream.get_dimensions_number(); ++i) length *= stream.get_dimension(i).length;
    return length;
}

std::vector<double> physical(const SPMDataStream& stream, std::size_t subimage = 0)
{
    const std::size_t length = subimage_length(stream);
    const auto* raw = static_cast<const std::int16_t*>(stream.array_data()) + subimage * length;
    std::vector<double> values(length);
    for (std::size_t i = 0; i < length; ++i) values[i] = stream.values.get_axis(0).at(raw[i]);
    return values;
}

/// "Force int16 256[nm] 16[nm] 16[nm] -> nN: Approach, Retract"
std::string summary(const SPMDataStream& stream)
{
    std::string text = std::string(stream.get_name()) + " " + array_type_keyword(stream.array_type());
    for (unsigned i = 0; i < stream.get_dimensions_number(); ++i) {
        const auto& dimension = stream.get_dimension(i);
        text += " " + std::to_string(dimension.length) + "[" + dimension.get_axis(0).get_units() + "]";
    }
    text += std::string(" -> ") + stream.values.get_axis(0).get_units();
    const char* mark = ": ";
    for (const smart_string& name : stream.subimage_names()) {
        text += mark + std::string(name.c_str());
        mark = ", ";
    }
    return text;
}

TEST(Examples, HoldTheStatedImagesWithUnitsAndExtents)
{
    const std::map<std::string, std::vector<std::string>> expected = {
        {"atomic-steps.spm", {"Height int16 512[nm] 512[nm] -> nm"}},
        {"grains.spm", {"Height int16 512[nm] 512[nm] -> nm"}},
        {"forward-reverse.spm",
         {"Height int16 256[\xC2\xB5m] 256[\xC2\xB5m] -> nm: Forward, Reverse",
          "Deflection int16 256[\xC2\xB5m] 256[\xC2\xB5m] -> nm: Forward, Reverse"}},
        {"section.spm", {"Section int16 1024[\xC2\xB5m] -> nm"}},
        {"force-curve.spm", {"Force int16 1024[nm] -> nN: Approach, Retract"}},
        {"force-volume.spm",
         {"Force int16 256[nm] 16[nm] 16[nm] -> nN: Approach, Retract", "Height int16 16[nm] 16[nm] -> nm"}},
    };
    std::map<std::string, std::vector<std::string>> found;
    for (const example& each : make_examples()) {
        for (std::size_t i = 0; i < each.content.items.size(); ++i) {
            const SPMDataStream& stream = stream_of(each, i);
            found[each.fileName].push_back(summary(stream));
            const std::size_t subimages = std::max<std::size_t>(stream.subimage_names().size(), 1);
            EXPECT_EQ(stream.array_length(), subimages * subimage_length(stream)) << each.fileName;
        }
        EXPECT_TRUE(each.content.strings.at("Description").starts_with("Synthetic data")) << each.fileName;
        EXPECT_EQ(each.content.title, each.title);
    }
    EXPECT_EQ(found, expected);
}

TEST(Examples, AreWhatTheirTableSays)
{
    for (const example_row& row : example_table()) {
        const example made = row.make();
        EXPECT_EQ(made.fileName, row.fileName);
        EXPECT_EQ(made.title, row.title);
        bool holdsShape = false;
        for (std::size_t i = 0; i < made.content.items.size(); ++i)
            holdsShape |= stream_of(made, i).get_dimensions_number() == row.dimensions;
        EXPECT_TRUE(holdsShape) << row.fileName;
    }
}

TEST(Examples, AreTheSameOnEveryCall)
{
    const auto first = make_examples(), second = make_examples();
    for (std::size_t i = 0; i < first.size(); ++i)
        for (std::size_t k = 0; k < first[i].content.items.size(); ++k) {
            const SPMDataStream &a = stream_of(first[i], k), &b = stream_of(second[i], k);
            ASSERT_EQ(a.data_size(), b.data_size());
            EXPECT_EQ(std::memcmp(a.array_data(), b.array_data(), a.data_size()), 0) << first[i].fileName;
        }
}

/// Takes slopeX x + slopeY y off an image.
std::vector<double> without_plane(const SPMDataStream& stream, double slopeX, double slopeY)
{
    std::vector<double> values = physical(stream);
    const auto &x = stream.get_dimension(0), &y = stream.get_dimension(1);
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] -= slopeX * x.get_axis(0).at(static_cast<double>(i % x.length)) +
                     slopeY * y.get_axis(0).at(static_cast<double>(i / x.length));
    return values;
}

// Interlayer distance of gold: lattice constant 407.82 pm (W. M. Haynes, CRC Handbook) over √3 gives 235.46 pm.
TEST(AtomicSteps, TerracesLieOneGoldLayerApart)
{
    const std::vector<double> heights = without_plane(stream_of(make_atomic_steps(), 0), -0.0004, 0.0002);
    // The histogram's comb: heights on layers d apart add up in phase. Coarse to fine search without the model's value.
    const auto comb = [&](double d) {
        std::complex<double> sum;
        for (std::size_t i = 0; i < heights.size(); i += 37) sum += std::polar(1.0, 2 * pi * heights[i] / d);
        return sum;
    };
    double spacing = 0.15;
    for (double d = 0.15; d < 0.4; d += 0.0005)
        if (std::abs(comb(d)) > std::abs(comb(spacing))) spacing = d;

    std::map<int, std::pair<double, std::size_t>> terraces; // sum and count of each layer
    const double phase = std::arg(comb(spacing)) / (2 * pi) * spacing;
    for (const double height : heights) {
        auto& [sum, count] = terraces[static_cast<int>(std::lround((height - phase) / spacing))];
        sum += height;
        ++count;
    }
    std::erase_if(terraces, [](const auto& each) { return each.second.second < 1000; });
    ASSERT_GE(terraces.size(), 6u);
    const auto mean = [](const auto& each) { return each.second.first / static_cast<double>(each.second.second); };
    for (auto upper = std::next(terraces.begin()); upper != terraces.end(); ++upper)
        EXPECT_NEAR(mean(*upper) - mean(*std::prev(upper)), 0.23546, 0.004) << "layer " << upper->first;
    const double whole = mean(*terraces.rbegin()) - mean(*terraces.begin());
    EXPECT_NEAR(whole / (terraces.rbegin()->first - terraces.begin()->first), 0.23546, 0.0008);
}

/// Numbers of points of the connected areas where `heights` are above `threshold`.
std::vector<std::size_t> areas_above(std::vector<double> heights, std::size_t width, double threshold)
{
    std::vector<std::size_t> areas;
    std::vector<std::size_t> open;
    for (std::size_t seed = 0; seed < heights.size(); ++seed) {
        if (heights[seed] <= threshold) continue;
        areas.push_back(0);
        open.push_back(seed);
        heights[seed] = threshold;
        while (!open.empty()) {
            const std::size_t at = open.back();
            open.pop_back();
            ++areas.back();
            for (const std::size_t next : {at - 1, at + 1, at - width, at + width}) {
                if (next >= heights.size() || heights[next] <= threshold) continue;
                heights[next] = threshold;
                open.push_back(next);
            }
        }
    }
    return areas;
}

TEST(Grains, StandApartOnTheStatedPlane)
{
    const example grains = make_grains();
    EXPECT_EQ(grains.content.strings.at("Base plane"), "0.02 x + -0.01 y");
    const std::vector<double> heights = without_plane(stream_of(grains, 0), 0.02, -0.01);
    const auto areas = areas_above(heights, 512, 2.0);
    EXPECT_EQ(std::to_string(areas.size()), grains.content.strings.at("Grains"));

    double sum = 0.0, squares = 0.0, count = 0.0;
    for (const double height : heights)
        if (height < 1.0) sum += height, squares += height * height, count += 1.0;
    EXPECT_GT(count, 0.7 * 512 * 512); // most of the image is plane
    EXPECT_NEAR(sum / count, 0.0, 0.01);
    EXPECT_NEAR(std::sqrt(squares / count), 0.1, 0.01);
    // The largest grain has a radius of 20 nm at most and is 0.6 times as high.
    EXPECT_NEAR(*std::max_element(heights.begin(), heights.end()), 12.0, 0.5);
}

/// Columns by which `reverse` lies to the right of `forward` around column `centre`, where they agree best.
int shift_at(const std::vector<double>& forward, const std::vector<double>& reverse, int centre)
{
    int best = 0;
    double least = 1e300;
    for (int shift = -16; shift <= 16; ++shift) {
        double sum = 0.0;
        for (int row = 0; row < 256; ++row)
            for (int column = centre - 30; column <= centre + 30; ++column) {
                const auto at = static_cast<std::size_t>(row * 256 + column);
                const double d = forward[at] - reverse[at + static_cast<std::size_t>(shift)];
                sum += d * d;
            }
        if (sum < least) least = sum, best = shift;
    }
    return best;
}

TEST(TwoDirections, AreShiftedByHysteresisAndDeflectOppositely)
{
    const example scan = make_two_directions();
    const SPMDataStream& height = stream_of(scan, 0);
    const auto forward = physical(height, 0), reverse = physical(height, 1);
    EXPECT_EQ(shift_at(forward, reverse, 128), 8);            // 0.3 µm at 39 nm a column are 7.7 columns
    const int shiftNearEdge = shift_at(forward, reverse, 46); // 4 * 0.18 * 0.82 of that: 4.5
    EXPECT_TRUE(shiftNearEdge == 4 || shiftNearEdge == 5) << shiftNearEdge;

    // Across the falling flank at 0.75 µm the error signal adds up to the lag times the ridge: 0.012 µm * 100 nm,
    // against the motion. There the hysteresis stretches the line by 5 % one way and the other.
    for (const int direction : {1, -1}) {
        const auto deflection = physical(stream_of(scan, 1), direction > 0 ? 0 : 1);
        double sum = 0.0;
        for (std::size_t row = 0; row < 10; ++row)
            for (std::size_t column = 8; column < 32; ++column) sum += deflection[row * 256 + column] / 10;
        EXPECT_NEAR(sum * 10.0 / 256, -direction * 1.2, 0.1);
    }
}

TEST(Section, TrenchesHaveTheStatedDepthAndWidth)
{
    const example section = make_section();
    const SPMDataStream& stream = stream_of(section, 0);
    const std::vector<double> heights = physical(stream);
    const auto mean = [&](int first, int last) {
        double sum = 0.0;
        for (int i = first; i < last; ++i) sum += heights[static_cast<std::size_t>(i)];
        return sum / (last - first);
    };
    EXPECT_NEAR(mean(450, 550) - mean(250, 350), 180.0, 2.0);
    const auto below = std::ranges::count_if(heights, [](double height) { return height < -90.0; });
    EXPECT_NEAR(static_cast<double>(below) * stream.get_dimension(0).get_axis(0).scale, 4.0, 0.04); // two of 2 µm
}

/// The same physics from the other side: the height of the cantilever that a measured force implies.
double implied_height(double force, bool inContact)
{
    constexpr double radius = 20.0, modulus = 1.0, hamaker = 0.1, nearest = 0.165, spring = 0.5;
    const double work = hamaker / (12 * pi * nearest * nearest);
    const double adhesion = 2 * pi * radius * work;
    const double separation =
        inContact
            ? nearest - std::pow(std::max(0.0, 3 * (force + adhesion) / (4 * modulus * std::sqrt(radius))), 2.0 / 3.0)
            : std::sqrt(hamaker * radius / (6 * std::max(-force, 1e-6)));
    return separation - force / spring;
}

TEST(ForceCurve, FollowsContactAttractionAndAdhesionOfItsModel)
{
    const example curve = make_force_curve();
    const SPMDataStream& stream = stream_of(curve, 0);
    const VLAxis& z = stream.get_dimension(0).get_axis(0);
    const auto approach = physical(stream, 0), retract = physical(stream, 1);

    const double work = 0.1 / (12 * pi * 0.165 * 0.165);
    const double adhesion = 2 * pi * 20.0 * work; // 12.24 nN
    EXPECT_NEAR(*base::leading_number(curve.content.strings.at("Adhesion force")), adhesion, 1e-9);
    // Sampled each 0.3 nm on a spring of 0.5 N/m the minimum is met within 0.15 nN, and noise of 0.02 nN.
    const auto minimum = std::min_element(retract.begin(), retract.end());
    EXPECT_NEAR(-*minimum, adhesion, 0.15 + 0.08);
    const double snapOff = 0.165 + adhesion / 0.5;
    EXPECT_NEAR(z.at(static_cast<double>(minimum - retract.begin())), snapOff, 0.6);
    EXPECT_NEAR(*(minimum + 2), 0.0, 0.15);

    // The jump into contact: attraction's gradient HR/3d³ reaches the spring at d = 1.101 nm, cantilever at 1.651 nm.
    const double snapIn = std::cbrt(0.1 * 20 / (3 * 0.5)) * 1.5;
    for (std::size_t i = 0; i < approach.size(); ++i) {
        const double at = z.at(static_cast<double>(i));
        if (at < snapIn) {
            EXPECT_NEAR(implied_height(approach[i], true), at, 0.3) << "at " << i;
        } else
            EXPECT_LT(std::fabs(approach[i]), 0.275 + 0.1) << "at " << i;
        if (at < snapOff - 0.3 && retract[i] > 1 - adhesion) {
            EXPECT_NEAR(implied_height(retract[i], true), at, 0.3) << "at " << i;
        }
    }
}

TEST(ContactModel, AttractionJoinsContactWithoutAGap)
{
    const contact pair;
    const double joint = pair.contactDistance;
    EXPECT_NEAR(contact_force(pair, joint), contact_force(pair, joint * (1 + 1e-9)), 1e-6);
    EXPECT_NEAR(contact_force(pair, joint), -adhesion_force(pair), 1e-12);
    for (const double z : {2.0, 3.0, 10.0, 100.0}) // free: the force that this cantilever height implies
        EXPECT_NEAR(implied_height(equilibrium_force(pair, z, false), false), z, 1e-6 * z);
    for (const double z : {-100.0, -10.0, 0.0, 10.0, 24.0})
        EXPECT_NEAR(implied_height(equilibrium_force(pair, z, true), true), z, 1e-6 * (1 + std::fabs(z)));
}

TEST(ForceVolume, CurvesRunFastestAndTheHeightTellsParticleFromMatrix)
{
    const example volume = make_force_volume();
    const auto retract = physical(stream_of(volume, 0), 1);
    const auto heights = physical(stream_of(volume, 1));
    // F_ad = HR/6a0²: 0.1 aJ gives 12.24 nN, 0.04 aJ 4.90 nN.
    std::set<bool> seen;
    for (std::size_t point = 0; point < 256; ++point) {
        const auto first = retract.begin() + static_cast<std::ptrdiff_t>(point * 256);
        const bool isParticle = heights[point] > 1.0;
        EXPECT_NEAR(-*std::min_element(first, first + 256), isParticle ? 4.897 : 12.243, 0.25 + 0.15) << point;
        EXPECT_GT(*first, 20.0); // pressed in at its start
        EXPECT_NEAR(*(first + 255), 0.0, 0.15);
        seen.insert(isParticle);
    }
    EXPECT_EQ(seen.size(), 2u);
}

} // namespace
