#include "document/contact_model.h"
#include "document/examples/example_parts.h"

#include <cmath>
#include <vector>

namespace vldv::document {

namespace {

/// Appends the force curve of one direction: the cantilever's height runs along `z`.
void append_force(std::vector<double>& forces, const contact& pair, const VLAxis& z, unsigned points, bool touching,
                  double noise, random_numbers& random)
{
    for (unsigned i = 0; i < points; ++i)
        forces.push_back(equilibrium_force(pair, z.at(i), touching) + noise * random.normal());
}

void state_contact(formats::recording& content, const contact& pair)
{
    content.strings["Contact model"] = "Derjaguin-Muller-Toporov with van der Waals attraction, quasi-static";
    content.strings["Tip radius"] = with_unit(pair.tipRadius, "nm");
    content.strings["Spring constant"] = with_unit(pair.spring, "N/m");
    content.strings["Contact distance"] = with_unit(pair.contactDistance, "nm");
}

/// A particle in the sample of the force volume: stiff and slippery, standing out of the matrix.
struct particle {
    double x, y, radius; // nm
};

constexpr particle particles[] = {{300, 350, 210}, {720, 640, 170}, {180, 820, 110}};

/// Height of the sample above its matrix, nm.
double sample_height(double x, double y)
{
    for (const particle& each : particles) {
        const double part = std::hypot(x - each.x, y - each.y) / each.radius;
        if (part < 1.0) return 40.0 * std::sqrt(1.0 - part * part);
    }
    return 0.0;
}

} // namespace

example make_section()
{
    constexpr unsigned points = 1024;
    constexpr double step = 0.01, depth = 180.0, flank = 0.05, roughness = 1.5; // µm, nm, µm, nm
    example result = empty_example("section.spm", "Profile across trenches",
                                   "two trenches with sloping walls in a slightly rough face");
    result.content.strings["Trench depth"] = with_unit(depth, "nm");
    result.content.strings["Trench width at half depth"] = with_unit(2.0, "\xC2\xB5m");

    random_numbers random(4);
    std::vector<double> heights;
    double rough = 0.0;
    for (unsigned i = 0; i < points; ++i) {
        const double x = i * step;
        rough = 0.9 * rough + roughness * std::sqrt(1.0 - 0.9 * 0.9) * random.normal();
        double height = rough;
        for (const double centre : {3.0, 7.0})
            height -= depth / (1.0 + std::exp((std::fabs(x - centre) - 1.0) / flank));
        heights.push_back(height);
    }
    result.content.items.emplace_back(curve_image("Section", points, VLAxis(0.0, step, "\xC2\xB5m"), "nm", heights));
    return result;
}

example make_force_curve()
{
    constexpr unsigned points = 1024;
    constexpr double noise = 0.02; // nN
    const contact pair;
    const VLAxis z(-105.0, 0.3, "nm");
    example result = empty_example("force-curve.spm", "Force curve with adhesion",
                                   "force on a probe over the height of its cantilever above the surface");
    state_contact(result.content, pair);
    result.content.strings["Reduced modulus"] = with_unit(pair.modulus, "GPa");
    result.content.strings["Hamaker constant"] = with_unit(pair.hamaker, "aJ");
    result.content.strings["Adhesion force"] = with_unit(adhesion_force(pair), "nN");
    result.content.strings["Noise (rms)"] = with_unit(noise, "nN");

    random_numbers random(5);
    std::vector<double> forces;
    for (const bool touching : {false, true}) append_force(forces, pair, z, points, touching, noise, random);
    result.content.items.emplace_back(curve_image("Force", points, z, "nN", forces, {"Approach", "Retract"}));
    return result;
}

example make_force_volume()
{
    constexpr unsigned points = 256;
    constexpr square area{16, 1000.0, "nm"};
    constexpr double noise = 0.05, statedLoad = 25.0; // nN
    // A spring so stiff that the steps in contact stand out beside the jump off, as the analysis measures steps by
    // their spread: they are k z' = 0.45 nN a sample, the jump of 10 nN over the five samples that are smoothed makes
    // 0.27.
    const contact matrix{20.0, 0.5, 0.08, 0.165, 1.0}, inParticle{20.0, 5.0, 0.04, 0.165, 1.0};
    const VLAxis z(-60.0, 0.5, "nm");
    example result = empty_example("force-volume.spm", "Force volume",
                                   "force curves over stiff particles in a softer, stickier matrix; heights count from "
                                   "the surface under each point");
    state_contact(result.content, matrix);
    result.content.strings["Reduced modulus"] = with_unit(matrix.modulus, "GPa, particles 5 GPa");
    result.content.strings["Adhesion force"] =
        with_unit(adhesion_force(matrix), "nN, particles ") + with_unit(adhesion_force(inParticle), "nN");
    result.content.strings["Contact stiffness"] = with_unit(contact_stiffness(matrix, statedLoad), "N/m, particles ") +
                                                  with_unit(contact_stiffness(inParticle, statedLoad), "N/m") +
                                                  ", at a load of " + with_unit(statedLoad, "nN");
    result.content.strings["Noise (rms)"] = with_unit(noise, "nN");

    random_numbers random(6);
    std::vector<double> forces, heights;
    for (const bool touching : {false, true})
        for (unsigned row = 0; row < area.points; ++row)
            for (unsigned column = 0; column < area.points; ++column) {
                const double height = sample_height(column * area.step(), row * area.step());
                append_force(forces, height > 0.0 ? inParticle : matrix, z, points, touching, noise, random);
                if (touching) heights.push_back(height);
            }
    auto volume = curve_image("Force", points, z, "nN", forces, {"Approach", "Retract"});
    for (const unsigned index : {1u, 2u}) { // the curve is dimension 0, then x and y
        SPMDataStream::dimension side;
        side.length = area.points;
        side.set_axis(0, area.axis());
        volume.stream.set_dimension(index, side);
    }
    result.content.items.emplace_back(std::move(volume));
    result.content.items.emplace_back(square_image("Height", area, "nm", heights));
    return result;
}

} // namespace vldv::document
