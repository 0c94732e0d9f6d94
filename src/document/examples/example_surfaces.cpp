#include "base/text.h"
#include "document/examples/example_parts.h"

#include <cmath>
#include <numbers>
#include <vector>

namespace vldv::document {

namespace {

constexpr double pi = std::numbers::pi;

/// Round place in an image: centre and radius in its units.
struct disc {
    double x, y, radius;
    double distance(double atX, double atY) const noexcept { return std::hypot(atX - x, atY - y); }
};

std::string plane_text(double slopeX, double slopeY)
{
    return base::shortest(slopeX) + " x + " + base::shortest(slopeY) + " y";
}

// Atomic steps.

/// Lattice constant of gold, 0.40782 nm; layers of the (111) face lie a/√3 apart.
const double goldLayer = 0.40782 / std::sqrt(3.0);

/// Number of the layer that is on top at x, y (nm): six steps across the image, meandering, with islands of one layer
/// and a pit.
double gold_layer(double x, double y, double size)
{
    static constexpr disc islands[] = {{60, 330, 18}, {330, 140, 13}, {368, 400, 22}};
    static constexpr disc pit = {222, 255, 11};
    const double meander = 9.0 * std::sin(2 * pi * y / 310.0 + 0.4) + 5.0 * std::sin(2 * pi * (y + 0.3 * x) / 97.0);
    double layer = std::floor(6.0 * (x + 0.35 * y + meander) / (1.35 * size));
    for (const disc& island : islands)
        if (island.distance(x, y) < island.radius) layer += 1.0;
    return pit.distance(x, y) < pit.radius ? layer - 1.0 : layer;
}

// Grains.

/// Discs inside the image that keep a gap, so that their number is known.
std::vector<disc> scatter_grains(random_numbers& random, std::size_t count, double size)
{
    constexpr double gap = 5.0; // nm
    std::vector<disc> grains;
    while (grains.size() < count) {
        const double radius = random.between(8.0, 20.0);
        const disc grain{random.between(radius + gap, size - radius - gap),
                         random.between(radius + gap, size - radius - gap), radius};
        bool isFree = true;
        for (const disc& other : grains)
            isFree = isFree && other.distance(grain.x, grain.y) > other.radius + radius + gap;
        if (isFree) grains.push_back(grain);
    }
    return grains;
}

/// Adds a cap of an ellipsoid to the points under `grain`: its height is 0.6 of its radius.
void add_grain(std::vector<double>& heights, const square& area, const disc& grain)
{
    const double step = area.step();
    const auto index = [&](double at) { return static_cast<unsigned>(at / step); };
    for (unsigned row = index(grain.y - grain.radius); row <= index(grain.y + grain.radius) + 1; ++row)
        for (unsigned column = index(grain.x - grain.radius); column <= index(grain.x + grain.radius) + 1; ++column) {
            const double part = grain.distance(column * step, row * step) / grain.radius;
            if (part < 1.0)
                heights[std::size_t{row} * area.points + column] += 0.6 * grain.radius * std::sqrt(1.0 - part * part);
        }
}

// Two scan directions.

constexpr double pitch = 3.0, ridgeHeight = 100.0, edgeWidth = 0.06; // µm, nm, µm

/// Height of the grating in nm, and its slope in nm/µm: ridges half a pitch wide with rounded flanks.
struct grating_point {
    double height, slope;
};

grating_point grating(double x, double y)
{
    // cos is above 0 over half a pitch; tanh rounds the flanks, which are edgeWidth wide.
    const double phase = 2 * pi * (x + 0.04 * y) / pitch;
    const double sharpness = pitch / (2 * pi * edgeWidth);
    const double bent = std::tanh(sharpness * std::cos(phase));
    const double slope = -ridgeHeight / 2 * (1.0 - bent * bent) * sharpness * std::sin(phase) * 2 * pi / pitch;
    return {ridgeHeight / 2 * (1.0 + bent), slope};
}

} // namespace

example make_atomic_steps()
{
    constexpr square area{512, 500.0, "nm"};
    constexpr double slopeX = -0.0004, slopeY = 0.0002, lineNoise = 0.012, pointNoise = 0.018; // nm/nm, nm
    example result = empty_example("atomic-steps.spm", "Atomic steps",
                                   "terraces of a gold (111) face with islands and a pit, tilted, with noise");
    result.content.strings["Step height"] = with_unit(goldLayer, "nm");
    result.content.strings["Tilt"] = plane_text(slopeX, slopeY);
    result.content.strings["Line noise (rms)"] = with_unit(lineNoise, "nm");
    result.content.strings["Point noise (rms)"] = with_unit(pointNoise, "nm");

    random_numbers random(1);
    std::vector<double> heights;
    heights.reserve(std::size_t{area.points} * area.points);
    for (unsigned row = 0; row < area.points; ++row) {
        const double lineOffset = lineNoise * random.normal();
        for (unsigned column = 0; column < area.points; ++column) {
            const double x = column * area.step(), y = row * area.step();
            heights.push_back(goldLayer * gold_layer(x, y, area.size) + slopeX * x + slopeY * y + lineOffset +
                              pointNoise * random.normal());
        }
    }
    result.content.items.emplace_back(square_image("Height", area, "nm", heights));
    return result;
}

example make_atomic_lattice()
{
    constexpr square area{256, 6.0, "nm"};
    constexpr double constant = 0.246, turned = 7.0, corrugation = 0.12; // nm, degrees, nm
    constexpr double slopeX = 0.015, slopeY = -0.008, noise = 0.02;      // nm/nm, nm
    example result = empty_example("atomic-lattice.spm", "Atomic lattice",
                                   "a hexagonal lattice of three waves 60 degrees apart, tilted, with noise");
    result.content.strings["Lattice constant"] = with_unit(constant, "nm");
    result.content.strings["Direction of a"] = with_unit(turned, "\xC2\xB0");
    result.content.strings["Corrugation"] = with_unit(corrugation, "nm");
    result.content.strings["Tilt"] = plane_text(slopeX, slopeY);
    result.content.strings["Point noise (rms)"] = with_unit(noise, "nm");

    random_numbers random(7);
    const double wavesPerNm = 2.0 / (std::sqrt(3.0) * constant);
    // Three cosines together run from -1.5, around the atoms, to 3 above them.
    const double amplitude = corrugation / 4.5;
    std::vector<double> heights;
    for (unsigned row = 0; row < area.points; ++row)
        for (unsigned column = 0; column < area.points; ++column) {
            const double x = column * area.step(), y = row * area.step();
            double height = slopeX * x + slopeY * y + noise * random.normal();
            // The steps of the lattice lie half-way between its waves.
            for (const double degrees : {30.0, 90.0, 150.0}) {
                const double angle = (turned + degrees) * pi / 180.0;
                height += amplitude * std::cos(2 * pi * wavesPerNm * (x * std::cos(angle) + y * std::sin(angle)));
            }
            heights.push_back(height);
        }
    result.content.items.emplace_back(square_image("Height", area, "nm", heights));
    return result;
}

example make_grains()
{
    constexpr square area{512, 1000.0, "nm"};
    constexpr std::size_t count = 300;
    constexpr double slopeX = 0.02, slopeY = -0.01, noise = 0.1; // nm/nm, nm
    example result = empty_example("grains.spm", "Grains on a tilted plane",
                                   "separate rounded grains, 0.6 times as high as their radius, on a plane");
    result.content.strings["Grains"] = std::to_string(count);
    result.content.strings["Base plane"] = plane_text(slopeX, slopeY);
    result.content.strings["Point noise (rms)"] = with_unit(noise, "nm");

    random_numbers random(2);
    std::vector<double> heights(std::size_t{area.points} * area.points);
    for (const disc& grain : scatter_grains(random, count, area.size)) add_grain(heights, area, grain);
    for (unsigned row = 0; row < area.points; ++row)
        for (unsigned column = 0; column < area.points; ++column)
            heights[std::size_t{row} * area.points + column] +=
                slopeX * column * area.step() + slopeY * row * area.step() + noise * random.normal();
    result.content.items.emplace_back(square_image("Height", area, "nm", heights));
    return result;
}

example make_two_directions()
{
    constexpr square area{256, 10.0, "\xC2\xB5m"};
    constexpr double shift = 0.15, lag = 0.012, noise = 0.4; // µm, µm, nm
    example result = empty_example("forward-reverse.spm", "Forward and reverse scan",
                                   "a grating scanned both ways; hysteresis shifts the lines most at their middle");
    result.content.strings["Pitch"] = with_unit(pitch, "\xC2\xB5m");
    result.content.strings["Ridge height"] = with_unit(ridgeHeight, "nm");
    result.content.strings["Largest shift between directions"] = with_unit(2 * shift, "\xC2\xB5m");
    result.content.strings["Feedback lag"] = with_unit(lag, "\xC2\xB5m");

    random_numbers random(3);
    std::vector<double> heights, deflections;
    for (const double direction : {1.0, -1.0})
        for (unsigned row = 0; row < area.points; ++row)
            for (unsigned column = 0; column < area.points; ++column) {
                const double x = column * area.step();
                // A piezo's hysteresis loop is nearly a parabola between its ends.
                const double part = x / area.size;
                const grating_point at = grating(x + direction * shift * 4 * part * (1 - part), row * area.step());
                heights.push_back(at.height + noise * random.normal());
                // The error signal of a feedback that lags: the height gained over the lag, against the motion.
                deflections.push_back(direction * lag * at.slope + 0.1 * noise * random.normal());
            }
    result.content.items.emplace_back(square_image("Height", area, "nm", heights, {"Forward", "Reverse"}));
    result.content.items.emplace_back(square_image("Deflection", area, "nm", deflections, {"Forward", "Reverse"}));
    return result;
}

} // namespace vldv::document
