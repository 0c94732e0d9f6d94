#include "surface/views/calibration.h"

#include "base/text.h"
#include "base/units.h"
#include "platform/app/Clipboard.h"
#include "platform/app/WinApp.h"
#include "view/dialogs/variable_rows.h"
#include "view/panes/TextView.h"

#include <cmath>

namespace vldv::surface {

namespace {

struct place {
    double x, y;
};

place place_of(const measured_surface& surface, CPoint from, CPoint to)
{
    return {(to.x - from.x) * surface.x.scale,
            convert_size(surface.y.get_units(), surface.x.get_units(), (to.y - from.y) * surface.y.scale)};
}

} // namespace

std::vector<double> curve_positions(const measured_surface& surface, const std::vector<CPoint>& curve)
{
    std::vector<double> positions;
    if (curve.empty()) return positions;
    // Positions are the projections of the points on the line from the first to the last, so that points set a little
    // beside it do no harm. A curve that ends where it began has no such line; its positions are counted along it.
    const place whole = place_of(surface, curve.front(), curve.back());
    const double length = std::hypot(whole.x, whole.y);
    double along = 0.0;
    for (std::size_t i = 0; i < curve.size(); ++i) {
        const place from = place_of(surface, curve.front(), curve[i]);
        const place step = place_of(surface, curve[i > 0 ? i - 1 : 0], curve[i]);
        along += std::hypot(step.x, step.y);
        positions.push_back(length > 0.0 ? (from.x * whole.x + from.y * whole.y) / length : along);
    }
    return positions;
}

std::optional<calibration_table> calibrate(const std::vector<double>& positions, double nominalPitch)
{
    const double count = static_cast<double>(positions.size()), centre = 0.5 * (count - 1.0);
    if (positions.size() < 3 || !(nominalPitch > 0.0) || !std::isfinite(nominalPitch)) return std::nullopt;
    // The best line through position against number. The numbers count from their middle, so that pitch and mean do not
    // depend on each other: pitch = sum (i - c) x_i / sum (i - c)^2.
    double sum = 0.0, moment = 0.0, spread = 0.0, squares = 0.0;
    for (std::size_t i = 0; i < positions.size(); ++i) {
        const double number = static_cast<double>(i) - centre;
        sum += positions[i];
        moment += number * positions[i];
        spread += number * number;
    }
    calibration_table table;
    table.pitch = moment / spread;
    table.offset = sum / count - table.pitch * centre;
    if (!(table.pitch > 0.0)) return std::nullopt;
    table.factor = nominalPitch / table.pitch;
    constexpr double rounding = 1e-13; // share of the longest position: less is none
    const double least = rounding * (std::fabs(table.offset) + table.pitch * count);
    for (std::size_t i = 0; i < positions.size(); ++i) {
        const double number = static_cast<double>(i), fit = table.offset + table.pitch * number;
        const double residual = std::fabs(positions[i] - fit) > least ? positions[i] - fit : 0.0;
        table.rows.push_back({positions[i], nominalPitch * number, fit, residual});
        squares += residual * residual;
    }
    table.deviation = std::sqrt(squares / count);
    return table;
}

std::wstring calibration_text(const calibration_table& table, const std::string& units)
{
    const char* const u = units.c_str();
    std::string text = base::formatted("N\tPosition, %s\tNominal, %s\tFit, %s\tResidual, %s\r\n", u, u, u, u);
    for (std::size_t i = 0; i < table.rows.size(); ++i) {
        const calibration_table::row& row = table.rows[i];
        text += base::formatted("%d\t%G\t%G\t%G\t%G\r\n", static_cast<int>(i), row.position, row.nominal, row.fit,
                                row.residual);
    }
    text += base::formatted("Pitch, %s\t%G\r\nOffset, %s\t%G\r\nNominal / measured\t%G\r\nRMS residual, %s\t%G\r\n", u,
                            table.pitch, u, table.offset, table.factor, u, table.deviation);
    return base::widen(text);
}

bool run_calibration(CDocument& document, const measured_surface& surface, const std::vector<CPoint>& curve,
                     CWnd* parent)
{
    const std::vector<double> positions = curve_positions(surface, curve);
    if (positions.size() < 3) return false;
    const std::string units = surface.x.get_units();
    const double measured = positions.back() / static_cast<double>(positions.size() - 1);
    const std::vector<SPMVar> rows =
        view::declared({{"pitch(Nominal pitch),double,0", view::label_with_units("Nominal pitch", units.c_str()),
                         base::general(measured)}});
    SPMVarList list;
    list.set_variables(rows.data(), static_cast<unsigned>(rows.size()));
    if (!view::ask_variables(list, "Calibration Curve", parent)) return false;
    const auto table = calibrate(positions, static_cast<double>(list["pitch"]));
    if (!table) {
        AfxGetApp()->host().messageBox("Nominal pitch: the pitch must be positive and the points must advance",
                                       message_icon::error);
        return false;
    }
    const std::wstring text = calibration_text(*table, units);
    if (const open_clipboard clipboard; clipboard) {
        clipboard->empty();
        clipboard->setText(text);
    }
    if (CTextView* const view = GetTextView(nullptr, &document)) view->appendText(text);
    return true;
}

} // namespace vldv::surface
