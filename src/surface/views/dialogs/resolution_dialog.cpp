#include "surface/views/dialogs/resolution_dialog.h"

#include "base/text.h"
#include "document/StorageDoc.h"
#include "platform/app/WinApp.h"
#include "surface/figures/measure/measurement_text.h"
#include "surface/views/dialogs/variable_rows.h"

#include <cmath>
#include <string>
#include <utility>
#include <vector>

namespace vldv::surface {

namespace {

constexpr const char* sizes[] = {"size.x", "size.y"};
constexpr const char* steps[] = {"step.x", "step.y"};

/// Sizes, steps and the length of a drag follow each other.
class resolution_ties : public tied_variables {
public:
    resolution_ties(SPMVarList& list_, CSize samples, const std::optional<selection_rect>& drag_)
        : tied_variables(list_), lengths{double(samples.cx), double(samples.cy)}, drag(drag_)
    {
    }

    double dragLength() const
    {
        measured_surface surface;
        surface.x = {0.0, number(steps[0]), text("units.x")};
        surface.y = {0.0, number(steps[1]), text("units.y")};
        return drag ? drag_length(surface, *drag) : 0.0;
    }

private:
    const char* text(const char* name) const
    {
        const char* const stored = list[name].value.string.text;
        return stored ? stored : "";
    }
    void userChanged(const std::string& name) override
    {
        const double before = dragLength();
        if (drag && name == "distance" && before > 0.0)
            for (const char* step : steps) put(step, number(step) * number("distance") / before);
        for (std::size_t side = 0; side < 2; ++side)
            if (name == sizes[side]) put(steps[side], number(sizes[side]) / lengths[side]);
        for (std::size_t side = 0; side < 2; ++side)
            if (name != sizes[side]) put(sizes[side], number(steps[side]) * lengths[side]);
        if (drag && name != "distance") put("distance", dragLength());
    }

    double lengths[2]; ///< samples
    std::optional<selection_rect> drag;
};

std::vector<SPMVar> resolution_variables(CSize samples, const VLAxis& x, const VLAxis& y, const VLAxis& z,
                                         const std::optional<selection_rect>& drag)
{
    const auto text = [](double value) { return base::shortest(value); };
    const auto product = [](double value) { return base::general(value, 12); }; // without the last bits' noise
    std::vector<variable_row> rows = {
        {"size.x(Size X),double", {}, product(samples.cx * x.scale)},
        {"step.x(Sample X),double", {}, text(x.scale)},
        {"units.x(Units X),string", {}, x.get_units()},
        {"size.y(Size Y),double", {}, product(samples.cy * y.scale)},
        {"step.y(Sample Y),double", {}, text(y.scale)},
        {"units.y(Units Y),string", {}, y.get_units()},
        {"step.z(Step Z),double", {}, text(z.scale)},
        {"units.z(Units Z),string", {}, z.get_units()},
    };
    if (drag) {
        measured_surface surface;
        surface.x = x;
        surface.y = y;
        rows.push_back({"distance(Measured distance),double,0", {}, product(drag_length(surface, *drag))});
    }
    return declared(rows);
}

VLAxis changed_axis(const VLAxis& before, const SPMVarList& list, char letter)
{
    VLAxis axis = before;
    axis.scale = list[std::string("step.") + letter];
    const SPMVar& units = list[std::string("units.") + letter];
    axis.set_units(units.value.string.text ? units.value.string.text : "");
    return axis;
}

/// Tells the user of the first axis without a usable step. \return all of them have one
bool tells_steps(std::initializer_list<std::pair<const char*, const VLAxis&>> axes)
{
    for (const auto& [name, axis] : axes)
        if (axis.scale == 0.0 || !std::isfinite(axis.scale)) {
            AfxGetApp()->host().messageBox(
                base::formatted("%s: %s is no distance between samples", name, base::shortest(axis.scale).c_str()),
                message_icon::error);
            return false;
        }
    return true;
}

} // namespace

bool run_resolution(CStorageDoc& document, unsigned image, const shown_axes& chosen,
                    const std::optional<selection_rect>& distance, CWnd* parent)
{
    if (image >= document.getImagesNumber() || document.getImage(image).get_dimensions_number() < 2) return false;
    const SPMDataStream& stream = document.getImage(image);
    const auto inRange = [](unsigned axis, const VLAxesContainer& all) {
        return axis < all.get_axes_number() ? axis : 0;
    };
    const shown_axes axes{inRange(chosen.x, stream.get_dimension(0)), inRange(chosen.y, stream.get_dimension(1)),
                          inRange(chosen.z, stream.values)};
    const VLAxis x = document.getAxis(image, axes.x, 0), y = document.getAxis(image, axes.y, 1);
    const VLAxis z = document.getAxis(image, axes.z, valueAxes);
    const CSize samples{static_cast<int>(stream.get_dimension(0).length),
                        static_cast<int>(stream.get_dimension(1).length)};
    const std::vector<SPMVar> rows = resolution_variables(samples, x, y, z, distance);
    SPMVarList list;
    list.set_variables(rows.data(), static_cast<unsigned>(rows.size()));
    const resolution_ties ties(list, samples, distance);
    VLAxis newX, newY, newZ;
    do { // what was entered stays until all of it can be used
        if (!ask_variables(list, "Resolution", parent)) return false;
        newX = changed_axis(x, list, 'x');
        newY = changed_axis(y, list, 'y');
        newZ = changed_axis(z, list, 'z');
    } while (!tells_steps({{"Sample X", newX}, {"Sample Y", newY}, {"Step Z", newZ}}));
    if (newX == x && newY == y && newZ == z) return false;
    set_resolution(document, image, axes, newX, newY, newZ);
    return true;
}

} // namespace vldv::surface
