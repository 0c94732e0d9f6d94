#include "curves/figures/math_function.h"

#include "curves/figures/physical.h"

#include <algorithm>
#include <cmath>

namespace vldv::curves {

namespace {

/// What is no result becomes one that is there, so that no room of the samples goes to it.
void fill_unmeasured(physical_curves& curves)
{
    const auto isThere = [](std::uint32_t length) { return length != 0; };
    const auto there = std::ranges::find_if(curves.lengths, isThere);
    if (there == curves.lengths.end()) return;
    const float usual = curves.values[static_cast<std::size_t>(there - curves.lengths.begin()) * curves.length];
    for (std::size_t k = 0; k < curves.lengths.size(); ++k)
        if (curves.lengths[k] == 0)
            std::fill_n(curves.values.begin() + static_cast<std::ptrdiff_t>(k * curves.length), curves.length, usual);
}

} // namespace

physical_curves call_function(const profile& section, const VLAxis& values, const VLAxis& positions,
                              curve_function function, void* parameter)
{
    physical_curves out{physical_floats(section.all(), values), section.length, values.get_units(), section.lengths};
    if (out.lengths.empty()) out.lengths.assign(section.curves, section.length);
    for (unsigned k = 0; k < section.curves; ++k)
        if (!section.gapsOf(k).empty()) out.lengths[k] = 0;
    // Each curve sees the units of the source; those that the last leaves count.
    const std::string units = out.units;
    for (unsigned k = 0; k < section.curves; ++k) {
        out.units = units;
        float* const curve = out.values.data() + std::size_t{k} * out.length;
        const std::uint32_t length = out.lengthOf(k);
        float none = 0.0f; // the function of a curve that was not measured still tells its units
        function(length ? curve : &none, std::max(static_cast<int>(length), 1), values, positions, out.units,
                 parameter);
        std::fill(curve + length, curve + out.length, length ? curve[length - 1] : 0.0f);
    }
    fill_unmeasured(out);
    return out;
}

std::vector<primitives::sample_run> curves_with_gaps(const profile& section)
{
    std::vector<primitives::sample_run> found;
    for (unsigned k = 0; k < section.curves; ++k)
        if (section.lengthOf(k) == 0 || !section.gapsOf(k).empty())
            found.push_back({std::size_t{k} * section.length, section.length});
    return found;
}

std::int16_t packing::operator()(double value) const noexcept
{
    const double steps = std::nearbyint((value - zero) / step);
    return static_cast<std::int16_t>(steps == steps ? std::clamp(steps, -32768.0, 32767.0) : 0.0);
}

packing choose_packing(double mean, double least, double most) noexcept
{
    const auto stepFor = [](double magnitude) {
        int exponent = 0;
        // The magnitude is below 2^exponent, so that 2^15 of these steps reach it. A power of two makes all products
        // with it exact.
        if (std::isfinite(magnitude)) std::frexp(std::fabs(magnitude), &exponent);
        return std::ldexp(1.0, exponent - 15);
    };
    if (least == most && std::isfinite(least)) return {least, stepFor(least)};
    const double below = least - mean, above = most - mean;
    packing out{0.0, stepFor(std::fabs(below) <= std::fabs(above) ? above : below)};
    if (std::isfinite(mean)) out.zero = std::rint(mean / out.step) * out.step;
    return out;
}

packed_curves pack_curves(std::span<const float> values)
{
    packed_curves out;
    if (values.empty()) return out;
    double sum = 0.0;
    for (const float value : values) sum += static_cast<double>(value);
    const double mean = sum / static_cast<double>(values.size());
    const auto [least, most] = std::ranges::minmax(values);
    const packing pack = choose_packing(mean, static_cast<double>(least), static_cast<double>(most));
    out.zero = pack.zero;
    out.step = pack.step;
    out.samples.reserve(values.size());
    for (const float value : values) out.samples.push_back(pack(static_cast<double>(value)));
    return out;
}

SPMDataStream curves_stream(const SPMDataStream& source, const physical_curves& curves, const VLAxis& positions)
{
    const packed_curves packed = pack_curves(curves.values);
    SPMDataStream out;
    out.Init("img0", source.get_description(), SPM_VAR_ARRAY, static_cast<unsigned>(packed.samples.size()),
             static_cast<unsigned>(sizeof(std::int16_t)));
    out.set_array_type(SPM_ARRAY_INT16);
    out.set_array(packed.samples.data(), static_cast<unsigned>(packed.samples.size()), 0);
    out.values.set_axis(0, VLAxis(packed.zero, packed.step, curves.units.c_str()));
    SPMDataStream::dimension along;
    along.length = curves.length;
    along.set_axis(0, positions);
    out.set_dimension(0, along);
    return out;
}

} // namespace vldv::curves
