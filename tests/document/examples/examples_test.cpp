#include "document/examples/examples.h"

#include "base/text.h"
#include "document/contact_model.h"

#include <algorithm>
#include <cmath>
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
        {"atomic-lattice.spm", {"Height int16 256[nm] 256[nm] -> nm"}},
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

TEST(Grains, StandOnTheStatedPlane)
{
    const example grains = make_grains();
    EXPECT_EQ(grains.content.strings.at("Base plane"), "0.02 x + -0.01 y");
    const std::vector<double> heights = without_plane(stream_of(grains, 0), 0.02, -0.01);
    double sum = 0.0, squares = 0.0, count = 0.0;
    for (const double height : heights)
        if (height < 1.0) sum += height, squares += height * height, count += 1.0;
    EXPECT_GT(count, 0.7 * 512 * 512); // most of the image is plane
    EXPECT_NEAR(sum / count, 0.0, 0.01);
    EXPECT_NEAR(std::sqrt(squares / count), 0.1, 0.01);
    // The largest grain has a radius of 20 nm at most and is 0.6 times as high.
    EXPECT_NEAR(*std::max_element(heights.begin(), heights.end()), 12.0, 0.5);
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
        if (at >= snapIn) { EXPECT_LT(std::fabs(approach[i]), 0.275 + 0.1) << "at " << i; }
    }
}

TEST(ContactModel, AttractionJoinsContactWithoutAGap)
{
    const contact pair;
    const double joint = pair.contactDistance;
    EXPECT_NEAR(contact_force(pair, joint), contact_force(pair, joint * (1 + 1e-9)), 1e-6);
    EXPECT_NEAR(contact_force(pair, joint), -adhesion_force(pair), 1e-12);
}

TEST(ForceVolume, CurvesRunFastestAndTheHeightTellsParticleFromMatrix)
{
    const example volume = make_force_volume();
    const auto retract = physical(stream_of(volume, 0), 1);
    const auto heights = physical(stream_of(volume, 1));
    // F_ad = HR/6a0²: 0.08 aJ gives 9.79 nN, 0.04 aJ 4.90 nN. Sampled each 0.5 nm on a spring of 1 N/m the minimum is
    // met within 0.5 nN, and five deviations of the noise.
    constexpr double noise = 5 * 0.05;
    std::set<bool> seen;
    for (std::size_t point = 0; point < 256; ++point) {
        const auto first = retract.begin() + static_cast<std::ptrdiff_t>(point * 256);
        const bool isParticle = heights[point] > 1.0;
        EXPECT_NEAR(-*std::min_element(first, first + 256), isParticle ? 4.897 : 9.795, 0.5 + noise) << point;
        EXPECT_GT(*first, 20.0); // pressed in at its start
        EXPECT_NEAR(*(first + 255), 0.0, noise);
        seen.insert(isParticle);
    }
    EXPECT_EQ(seen.size(), 2u);
}

} // namespace
