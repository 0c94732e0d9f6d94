#include "view/dialogs/resolution_dialog.h"

#include "base/text.h"
#include "base/units.h"
#include "document/StorageDoc.h"
#include "platform/app/WinApp.h"
#include "view/dialogs/variable_rows.h"

#include <array>
#include <cmath>
#include <string>
#include <vector>

namespace vldv::view {

namespace {

constexpr const char* sizes[] = {"size.x", "size.y"};
constexpr const char* steps[] = {"step.x", "step.y"};

/// What the dialog is about: the shown axes of an image, without Y for a curve.
struct shown_image {
    CSize samples;
    bool isCurve = false;
    VLAxis x, y, z;

    std::size_t sides() const noexcept { return isCurve ? 1 : 2; }
};

/// The length of a distance in units of X.
double length_of(const measured_distance& distance, const VLAxis& x, const VLAxis& y, bool isCurve)
{
    const double dx = distance.samples.cx * x.scale;
    if (isCurve) return std::fabs(dx);
    return std::hypot(dx, convert_size(y.get_units(), x.get_units(), distance.samples.cy * y.scale));
}

/// Sizes, steps, and the length and height of what was measured follow each other.
class resolution_ties : public tied_variables {
public:
    resolution_ties(SPMVarList& list_, const shown_image& image_, const std::optional<measured_distance>& distance_)
        : tied_variables(list_), image(image_), distance(distance_)
    {
    }

private:
    const char* text(const char* name) const
    {
        const char* const stored = list[name].value.string.text;
        return stored ? stored : "";
    }
    double length() const
    {
        const VLAxis x(0.0, number(steps[0]), text("units.x"));
        if (image.isCurve) return length_of(*distance, x, x, true);
        return length_of(*distance, x, VLAxis(0.0, number(steps[1]), text("units.y")), false);
    }
    double samples(std::size_t side) const noexcept { return side == 0 ? image.samples.cx : image.samples.cy; }
    void userChanged(const std::string& name) override
    {
        if (distance) followDistance(name);
        for (std::size_t side = 0; side < image.sides(); ++side)
            if (name == sizes[side]) put(steps[side], number(sizes[side]) / samples(side));
        for (std::size_t side = 0; side < image.sides(); ++side)
            if (name != sizes[side]) put(sizes[side], number(steps[side]) * samples(side));
        if (!distance) return;
        if (hasLength() && name != "distance") put("distance", length());
        if (distance->height != 0 && name != "height") put("height", distance->height * number("step.z"));
    }
    void followDistance(const std::string& name)
    {
        const double before = length();
        if (name == "distance" && before > 0.0)
            for (std::size_t side = 0; side < image.sides(); ++side)
                put(steps[side], number(steps[side]) * number("distance") / before);
        if (name == "height" && distance->height != 0) put("step.z", number("height") / distance->height);
    }
    bool hasLength() const { return list.get_var_i("distance") != unsigned(-1); }

    shown_image image;
    std::optional<measured_distance> distance;
};

std::vector<SPMVar> resolution_variables(const shown_image& image, const std::optional<measured_distance>& distance)
{
    const auto text = [](double value) { return base::shortest(value); };
    const auto product = [](double value) { return base::general(value, 12); }; // without the last bits' noise
    std::vector<variable_row> rows = {
        {"size.x(Size X),double", {}, product(image.samples.cx * image.x.scale)},
        {"step.x(Sample X),double", {}, text(image.x.scale)},
        {"units.x(Units X),string", {}, image.x.get_units()},
    };
    if (!image.isCurve) {
        rows.push_back({"size.y(Size Y),double", {}, product(image.samples.cy * image.y.scale)});
        rows.push_back({"step.y(Sample Y),double", {}, text(image.y.scale)});
        rows.push_back({"units.y(Units Y),string", {}, image.y.get_units()});
    }
    rows.push_back({"step.z(Step Z),double", {}, text(image.z.scale)});
    rows.push_back({"units.z(Units Z),string", {}, image.z.get_units()});
    if (!distance) return declared(rows);
    if (const double length = length_of(*distance, image.x, image.y, image.isCurve); length > 0.0)
        rows.push_back({"distance(Measured distance),double,0", {}, product(length)});
    if (distance->height != 0)
        rows.push_back({"height(Measured height),double", {}, product(distance->height * image.z.scale)});
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

shown_image changed(const shown_image& before, const SPMVarList& list)
{
    shown_image after = before;
    after.x = changed_axis(before.x, list, 'x');
    if (!before.isCurve) after.y = changed_axis(before.y, list, 'y');
    after.z = changed_axis(before.z, list, 'z');
    return after;
}

/// Tells the user of the first axis without a usable step. \return all of them have one
bool has_steps(const shown_image& image)
{
    struct named_axis {
        const char* name;
        const VLAxis& axis;
    };
    for (const auto& [name, axis] :
         std::array<named_axis, 3>{{{"Sample X", image.x}, {"Sample Y", image.y}, {"Step Z", image.z}}})
        if (axis.scale == 0.0 || !std::isfinite(axis.scale)) {
            AfxGetApp()->host().messageBox(
                base::formatted("%s: %s is no distance between samples", name, base::shortest(axis.scale).c_str()),
                message_icon::error);
            return false;
        }
    return true;
}

/// Each of the axes, the first one where a view's choice is none of the image's.
shown_axes settled(const SPMDataStream& stream, const shown_axes& chosen)
{
    const auto inRange = [](unsigned axis, const VLAxesContainer& all) {
        return axis < all.get_axes_number() ? axis : 0;
    };
    const bool isCurve = stream.get_dimensions_number() < 2;
    return {inRange(chosen.x, stream.get_dimension(0)), isCurve ? 0 : inRange(chosen.y, stream.get_dimension(1)),
            inRange(chosen.z, stream.values)};
}

shown_image shown_of(CStorageDoc& document, unsigned image, const shown_axes& axes)
{
    const SPMDataStream& stream = document.getImage(image);
    shown_image made;
    made.isCurve = stream.get_dimensions_number() < 2;
    made.samples.cx = static_cast<int>(stream.get_dimension(0).length);
    made.samples.cy = made.isCurve ? 1 : static_cast<int>(stream.get_dimension(1).length);
    made.x = document.getAxis(image, axes.x, 0);
    if (!made.isCurve) made.y = document.getAxis(image, axes.y, 1);
    made.z = document.getAxis(image, axes.z, valueAxes);
    if (made.isCurve) made.y = made.x;
    return made;
}

} // namespace

bool run_resolution(CStorageDoc& document, unsigned image, const shown_axes& chosen,
                    const std::optional<measured_distance>& distance, CWnd* parent)
{
    if (image >= document.getImagesNumber() || document.getImage(image).get_dimensions_number() < 1) return false;
    const shown_axes axes = settled(document.getImage(image), chosen);
    const shown_image before = shown_of(document, image, axes);
    const std::vector<SPMVar> rows = resolution_variables(before, distance);
    SPMVarList list;
    list.set_variables(rows.data(), static_cast<unsigned>(rows.size()));
    const resolution_ties ties(list, before, distance);
    shown_image after;
    do { // what was entered stays until all of it can be used
        if (!ask_variables(list, "Resolution", parent)) return false;
        after = changed(before, list);
    } while (!has_steps(after));
    if (after.x == before.x && after.y == before.y && after.z == before.z) return false;
    set_resolution(document, image, axes, after.x, after.y, after.z);
    return true;
}

} // namespace vldv::view
