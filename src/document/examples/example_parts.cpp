#include "document/examples/example_parts.h"

#include "base/text.h"

namespace vldv::document {

std::uint64_t random_numbers::next() noexcept
{
    std::uint64_t z = state += 0x9E3779B97F4A7C15u;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
    return z ^ (z >> 31);
}

double random_numbers::uniform() noexcept { return static_cast<double>(next() >> 11) * 0x1p-53; }

double random_numbers::normal() noexcept
{
    double sum = -6.0;
    for (int i = 0; i < 12; ++i) sum += uniform();
    return sum;
}

namespace {

formats::value_scale in_units(const char* units)
{
    formats::value_scale scale;
    scale.units = units;
    scale.origin = "the model";
    return scale;
}

void name_subimages(SPMDataStream& stream, std::initializer_list<const char*> names)
{
    const std::vector<smart_string> list(names.begin(), names.end());
    stream.set_subimage_names(list.data(), static_cast<unsigned>(list.size()));
}

} // namespace

formats::recorded_image square_image(const std::string& id, const square& area, const char* valueUnits,
                                     std::span<const double> values, std::initializer_list<const char*> subimages)
{
    formats::image_frame frame;
    frame.width = frame.height = area.points;
    frame.frames = subimages.size() == 0 ? 1u : static_cast<unsigned>(subimages.size());
    frame.x = frame.y = area.axis();
    auto image = formats::make_image_from_values(id, id, frame, in_units(valueUnits), values);
    if (subimages.size() != 0) name_subimages(image.stream, subimages);
    return image;
}

formats::recorded_image curve_image(const std::string& id, unsigned points, const VLAxis& x, const char* valueUnits,
                                    std::span<const double> values, std::initializer_list<const char*> subimages)
{
    auto image = formats::make_curve_from_values(id, id, points, x, in_units(valueUnits), values);
    if (subimages.size() != 0) name_subimages(image.stream, subimages);
    return image;
}

example empty_example(const char* fileName, const char* title, const std::string& model)
{
    example result{fileName, title, {}};
    result.content.title = title;
    result.content.strings["Description"] = "Synthetic data, computed and not measured: " + model;
    result.content.strings["\\Date"] = "none: synthetic data";
    return result;
}

std::string with_unit(double value, const char* unit) { return base::shortest(value) + " " + unit; }

} // namespace vldv::document
