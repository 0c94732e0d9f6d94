#include "surface/views/dialogs/resampling_dialog.h"

#include "base/streams/rounding.h"
#include "base/text.h"
#include "document/StorageDoc.h"
#include "platform/app/WinApp.h"
#include "surface/figures/resampling.h"
#include "view/dialogs/variable_rows.h"

#include <cstddef>
#include <string>
#include <vector>

namespace vldv::surface {

namespace {

/// Sides and steps of the dialog follow each other.
class size_ties : public view::tied_variables {
public:
    size_ties(SPMVarList& list_, double lengthX, double lengthY, double aspect_)
        : tied_variables(list_), lengths{lengthX, lengthY}, aspect(aspect_)
    {
    }

private:
    void userChanged(const std::string& name) override
    {
        for (std::size_t side = 0; side < 2; ++side) {
            const double step = number(steps[side]);
            if (name == steps[side] && step != 0.0) put(sides[side], base::nearest_int(lengths[side] / step));
            if (name == sides[side] || name == steps[side]) follow(side);
        }
        if (name == "proportions") follow(0);
    }
    void follow(std::size_t side)
    {
        put(steps[side], lengths[side] / number(sides[side]));
        if (number("proportions") == 0.0) return;
        const std::size_t other = 1 - side;
        put(sides[other], base::nearest_int(number(sides[side]) * (side == 0 ? aspect : 1.0 / aspect)));
        put(steps[other], lengths[other] / number(sides[other]));
    }

    static constexpr const char* sides[] = {"columns", "rows"}; // at least 1 by their declarations
    static constexpr const char* steps[] = {"step.x", "step.y"};
    double lengths[2], aspect; ///< physical; rows for each column
};

std::vector<SPMVar> size_variables(const SPMDataStream& stream, const VLAxis& x, const VLAxis& y)
{
    const auto side = [](const char* name) { return base::formatted("%s,int,1,%d", name, mostSideSamples); };
    return view::declared({
        {side("columns(Columns)"), {}, std::to_string(stream.get_dimension(0).length)},
        {side("rows(Rows)"), {}, std::to_string(stream.get_dimension(1).length)},
        {"step.x(Step X),double", view::label_with_units("Step X", x.get_units()), base::shortest(x.scale)},
        {"step.y(Step Y),double", view::label_with_units("Step Y", y.get_units()), base::shortest(y.scale)},
        {"proportions(Keep proportions),boolean", {}, "true"},
        {"method(Method),enum,nearest(Nearest),linear(Linear),cubic(Cubic)", {}, "nearest"},
    });
}

} // namespace

bool run_resample(CStorageDoc& document, unsigned image, unsigned axisX, unsigned axisY, CWnd* parent)
{
    if (image >= document.getImagesNumber()) return false;
    const SPMDataStream& stream = document.getImage(image);
    if (stream.get_dimensions_number() < 2) return false;
    const VLAxis x = document.getAxis(image, axisX, 0), y = document.getAxis(image, axisY, 1);
    const double columns = stream.get_dimension(0).length, rows = stream.get_dimension(1).length;
    const std::vector<SPMVar> rowsOfDialog = size_variables(stream, x, y);
    SPMVarList list;
    list.set_variables(rowsOfDialog.data(), static_cast<unsigned>(rowsOfDialog.size()));
    const size_ties ties(list, columns * x.scale, rows * y.scale, rows / columns);
    if (!view::ask_variables(list, "Resample", parent)) return false;
    const resample_choice choice{static_cast<int>(list["columns"]), static_cast<int>(list["rows"]),
                                 static_cast<primitives::interpolation>(static_cast<int>(list["method"]))};
    if (choice.width == static_cast<int>(columns) && choice.height == static_cast<int>(rows)) return false;
    const std::string reason = resample_image(document, image, choice);
    if (!reason.empty()) AfxGetApp()->host().messageBox(reason, message_icon::error);
    return reason.empty();
}

} // namespace vldv::surface
