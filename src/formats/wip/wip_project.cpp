#include "formats/wip/wip_project.h"

#include "formats/shared/point_grid.h"
#include "formats/shared/text_units.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace vldv::formats {

namespace {

/// "DataClassName 12" is 12.
constexpr std::string_view classTag = "DataClassName ", dataTag = "Data ";

bool all_finite(const std::vector<double>& values)
{
    return std::ranges::all_of(values, [](double value) { return std::isfinite(value); });
}

/// An axis of `points` through world = origin + step * (index - model), in ascending order.
VLAxis ascending_axis(double origin, double step, double model, unsigned points, const std::string& units)
{
    const double first = origin - step * model;
    const double start = step > 0.0 ? first : first + step * (points - 1);
    return VLAxis(start, std::fabs(step), units.c_str());
}

/// Wavelengths in nm in the unit that the object is shown in.
struct spectral_unit {
    int index;
    const char* units;
    bool isRelative;
    double (*convert)(double nm);
};

double same(double nm) noexcept { return nm; }
double to_micrometres(double nm) noexcept { return nm / 1000.0; }
double to_wave_numbers(double nm) noexcept { return 1e7 / nm; }
double to_electronvolts(double nm) noexcept
{
    return 1239.841984332 / nm;
} // Planck's constant times the speed of light
double to_millielectronvolts(double nm) noexcept { return 1000.0 * to_electronvolts(nm); }

constexpr spectral_unit spectralUnits[] = {
    {0, "nm", false, same},
    {1, "\u00B5m", false, to_micrometres},
    {2, "1/cm", false, to_wave_numbers},
    {3, "1/cm", true, to_wave_numbers},
    {4, "eV", false, to_electronvolts},
    {5, "meV", false, to_millielectronvolts},
    {6, "eV", true, to_electronvolts},
    {7, "meV", true, to_millielectronvolts},
};

} // namespace

wip_project::wip_project(source& file_, const wip_tag& root) : file(file_)
{
    const wip_tag* data = root.find("Data");
    if (!data) return;
    std::map<std::string, const wip_tag*, std::less<>> byName;
    for (const wip_tag& tag : data->children) byName.emplace(tag.name, &tag);
    for (const wip_tag& tag : data->children) {
        if (!tag.name.starts_with(classTag)) continue;
        const auto found = byName.find(std::string(dataTag) + tag.name.substr(classTag.size()));
        if (found == byName.end()) continue;
        wip_object object;
        object.className = read_wip_text(file, &tag);
        object.data = found->second;
        object.content = object.data->find(object.className);
        const wip_tag* common = object.data->find("TData");
        if (common) object.caption = read_wip_text(file, common->find("Caption"));
        const auto number = common ? read_wip_number(file, common->find("ID")) : std::nullopt;
        if (number) byNumber.emplace(static_cast<long long>(*number), list.size());
        list.push_back(std::move(object));
    }
}

double wip_project::number(const wip_object& object, const char* tag, double fallback) const
{
    if (!object.content) return fallback;
    return read_wip_number(file, object.content->find(tag)).value_or(fallback);
}

const wip_object* wip_project::referred(const wip_object& object, const char* tag) const
{
    const double value = number(object, tag, 0.0);
    if (!(std::fabs(value) < 1e15) || value == 0.0) return nullptr;
    const auto found = byNumber.find(static_cast<long long>(value));
    return found == byNumber.end() || !list[found->second].content ? nullptr : &list[found->second];
}

/// At least `count` numbers, or none. Some versions write doubles under a name of their own.
std::vector<double> wip_project::numbers(const wip_tag& tag, const std::string& name, std::size_t count) const
{
    for (const std::string& spelling : {name + "_D", name}) {
        auto found = read_wip_numbers(file, tag.find(spelling));
        if (found.size() >= count) return found;
    }
    return {};
}

std::string wip_project::standardUnit(const wip_object& transformation) const
{
    const wip_tag* base = transformation.data->find("TDTransformation");
    return base ? normal_unit(read_wip_text(file, base->find("StandardUnit"))) : std::string();
}

wip_plane wip_project::plane(const wip_object& object, const char* transformation, unsigned columns,
                             unsigned rows) const
{
    wip_plane plane;
    plane.isMirroredY = true; // as a picture
    const wip_object* space = referred(object, transformation);
    const wip_tag* port = space ? space->content->find("ViewPort3D") : nullptr;
    if (!port) return plane;
    const auto model = numbers(*port, "ModelOrigin", 3), world = numbers(*port, "WorldOrigin", 3),
               scale = numbers(*port, "Scale", 9);
    if (model.empty() || world.empty() || scale.empty()) return plane;
    const std::string units = standardUnit(*space);
    plane.x = ascending_axis(world[0], scale[0], model[0], columns, units);
    plane.y = ascending_axis(world[1], scale[4], model[1], rows, units);
    plane.isMirroredX = scale[0] < 0.0;
    plane.isMirroredY = scale[4] < 0.0;
    return plane;
}

std::string wip_project::valueUnits(const wip_object& object) const
{
    const wip_object* interpretation = referred(object, "ZInterpretationID");
    return interpretation ? normal_unit(read_wip_text(file, interpretation->content->find("UnitName"))) : std::string();
}

/// A polynomial of the pixel's number, its constant first, in nm; none when it turns between its first and last bin.
std::vector<double> wip_project::polynomialWavelengths(const wip_object& transformation, unsigned values) const
{
    const auto factors = numbers(*transformation.content, "FreePolynom", 2);
    if (factors.empty()) return {};
    std::vector<double> places(values);
    for (unsigned i = 0; i < values; ++i)
        for (std::size_t power = factors.size(); power-- > 0;) places[i] = places[i] * i + factors[power];
    const double last = values - 1.0;
    const auto bin = [&](const char* name, double otherwise) {
        const double found = number(transformation, name, otherwise);
        return static_cast<std::size_t>(found >= 0.0 && found <= last ? found : otherwise);
    };
    const std::size_t from = bin("FreePolynomStartBin", 0.0), to = bin("FreePolynomStopBin", last);
    const bool isUsable =
        from < to && all_finite(places) && is_strictly_monotonic(std::span(places).subspan(from, to - from + 1));
    return isUsable ? places : std::vector<double>();
}

std::vector<double> wip_project::wavelengths(const wip_object& transformation, unsigned values) const
{
    const bool isGrating = number(transformation, "SpectralTransformationType", 1.0) == 1.0;
    return isGrating ? gratingWavelengths(transformation, values) : polynomialWavelengths(transformation, values);
}

/// The grating equation, pixel by pixel, in nm; none where the parameters do not allow it.
std::vector<double> wip_project::gratingWavelengths(const wip_object& transformation, unsigned values) const
{
    const auto parameter = [&](const char* name) { return number(transformation, name, std::nan("")); };
    const double nC = parameter("nC"), lambdaC = parameter("LambdaC"), gamma = parameter("Gamma"),
                 delta = parameter("Delta"), m = parameter("m"), d = parameter("d"), x = parameter("x"),
                 f = parameter("f");
    const double alpha = std::asin(lambdaC * m / d / 2.0 / std::cos(gamma / 2.0)) - gamma / 2.0;
    const double betaH = gamma + alpha + delta;
    std::vector<double> places(values);
    for (unsigned i = 0; i < values; ++i) {
        const double h = x * (nC - i) + f * std::sin(delta);
        places[i] = d / m * (std::sin(alpha) + std::sin(betaH - std::atan(h / (f * std::cos(delta)))));
    }
    return all_finite(places) ? places : std::vector<double>();
}

void wip_project::interpretWavelengths(const wip_object& object, wip_spectrum_axis& axis) const
{
    const wip_object* interpretation = referred(object, "XInterpretationID");
    const double index = interpretation ? number(*interpretation, "UnitIndex", 0.0) : 0.0;
    const double excitation = interpretation ? number(*interpretation, "ExcitationWaveLength", 0.0) : 0.0;
    const auto unit = std::ranges::find_if(spectralUnits, [&](const spectral_unit& row) { return row.index == index; });
    if (unit == std::end(spectralUnits) || (unit->isRelative && !(excitation > 0.0))) return;
    std::vector<double> converted = axis.places;
    for (double& place : converted)
        place = unit->isRelative ? unit->convert(excitation) - unit->convert(place) : unit->convert(place);
    if (!all_finite(converted)) return;
    axis.places = std::move(converted);
    axis.units = unit->units;
}

wip_spectrum_axis wip_project::spectrumAxis(const wip_object& object, unsigned values) const
{
    wip_spectrum_axis result;
    const wip_object* transformation = referred(object, "XTransformationID");
    if (!transformation) return result;
    if (transformation->className == "TDLinearTransformation") {
        const auto model = numbers(*transformation->content, "ModelOrigin", 1),
                   world = numbers(*transformation->content, "WorldOrigin", 1),
                   scale = numbers(*transformation->content, "Scale", 1);
        if (model.empty() || world.empty() || scale.empty()) return result;
        result.units = standardUnit(*transformation);
        result.axis = VLAxis(world[0] - scale[0] * model[0], scale[0], result.units.c_str());
    } else if (transformation->className == "TDSpectralTransformation") {
        result.places = wavelengths(*transformation, values);
        result.units = "nm";
    } else if (transformation->className == "TDLUTTransformation") {
        result.places = table(*transformation, values);
        result.units = standardUnit(*transformation);
    }
    if (result.places.empty()) return result;
    if (result.units == "nm") interpretWavelengths(object, result);
    if (const auto steps = find_even_steps(result.places)) {
        result.axis = VLAxis(steps->start, steps->step, result.units.c_str());
        result.places.clear();
    }
    return result;
}

/// A place for each value: the first numbers of the object that are enough and run one way.
std::vector<double> wip_project::table(const wip_object& transformation, unsigned values) const
{
    for (const wip_tag& tag : transformation.content->children) {
        if (tag.type != wip_tag::float64 && tag.type != wip_tag::float32) continue;
        auto places = read_wip_numbers(file, &tag);
        if (places.size() < values) continue;
        places.resize(values);
        if (is_strictly_monotonic(places) && all_finite(places)) return places;
    }
    return {};
}

} // namespace vldv::formats
