#include "surface/figures/measure/step_results.h"

#include "base/SPMVarList.h"
#include "base/text.h"
#include "document/step_texts.h"
#include "surface/figures/measure/step_variables.h"

#include <string_view>

namespace vldv::surface {

namespace {

constexpr std::uint32_t maskColorIndex = 192;
constexpr const char* lineUnits = "line";

} // namespace

step_mask::step_mask(const std::deque<surface_step>& steps, CSize image_) : sample_mask(image_)
{
    for (const surface_step& step : steps)
        for (const auto [row, column] : step) set({column, row});
}

VLPluginDecoration step_mask::record(const VLAxis& x, const VLAxis& y)
{
    return sample_mask::record(x, y, stepsMaskName, maskColorIndex, 0);
}

SPMDataStream make_step_stream(const surface_step& step, unsigned number, steps_direction direction, int width,
                               const VLAxis& x, const VLAxis& y)
{
    SPMDataStream stream;
    const std::string id = base::formatted("step%u", number), label = base::formatted("Step %u", number + 1);
    stream.Init(id.c_str(), label.c_str(), SPM_VAR_ARRAY, static_cast<unsigned>(step.size()), 2u);
    stream.set_array_type(SPM_ARRAY_INT16);
    auto* to = static_cast<std::int16_t*>(stream.array_data());
    for (const auto [row, column] : step)
        *to++ = static_cast<std::int16_t>(direction == steps_direction::rightToLeft ? width - column - 1 : column);
    VLAxis columns = x;
    columns.scale = 1.0;
    columns.set_units(lineUnits);
    stream.values.set_axis(0, x);
    stream.values.set_axis(1, columns);
    const double first = step.empty() ? 0.0 : static_cast<double>(step.front().row);
    SPMDataStream::dimension rows;
    rows.length = static_cast<unsigned>(step.size());
    rows.set_axis(0, VLAxis(first * y.scale, y.scale, y.get_units()));
    rows.set_axis(1, VLAxis(first, 1.0, lineUnits));
    stream.set_dimension(0, rows);
    return stream;
}

std::vector<unsigned> step_images(const CStorageDoc& document, unsigned kept)
{
    std::vector<unsigned> found;
    for (unsigned image = 0; image < document.getImagesNumber(); ++image)
        if (image != kept && std::string_view(document.getImage(image).get_name()).starts_with("step"))
            found.push_back(image);
    return found;
}

void remove_step_images(CStorageDoc& document, unsigned kept)
{
    const std::vector<unsigned> found = step_images(document, kept);
    for (auto image = found.rbegin(); image != found.rend(); ++image) document.RemoveImage(*image);
}

unsigned add_step_images(CStorageDoc& document, unsigned image, const std::deque<surface_step>& steps,
                         const step_settings& settings, unsigned firstNumber, unsigned axisX, unsigned axisY)
{
    const int width = static_cast<int>(document.getImage(image).get_dimension(0).length);
    const VLAxis x = document.getAxis(image, axisX, 0), y = document.getAxis(image, axisY, 1);
    const int height = static_cast<int>(document.getImage(image).get_dimension(1).length);
    const std::vector<SPMVar> variables = step_variables(settings, {width, height});
    SPMVarList list;
    list.set_variables(variables.data(), static_cast<unsigned>(variables.size()));
    unsigned number = firstNumber;
    const std::string name = document.getImage(image).get_name();
    for (const surface_step& step : steps) {
        const SPMDataStream stream = make_step_stream(step, number++, settings.direction, width, x, y);
        document.AddNewImages(&stream, 1);
        const unsigned added = document.getImagesNumber() - 1;
        for (const auto& [key, value] : shown_values(list)) document.setString(key.c_str(), value.c_str(), added);
        document.setString(vldv::document::stepImageKey, name.c_str(), added);
    }
    return number;
}

} // namespace vldv::surface
