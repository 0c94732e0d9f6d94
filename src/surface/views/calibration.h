#pragma once
#include "surface/figures/measure/measurement_text.h"

#include <optional>
#include <string>
#include <vector>

class CDocument;
class CWnd;

namespace vldv::surface {

/// Points set on the lines of a grating against its nominal pitch: where each lies, where it should lie, and what the
/// best line through all leaves.
struct calibration_table {
    struct row {
        double position = 0.0, nominal = 0.0, fit = 0.0, residual = 0.0;
    };
    std::vector<row> rows;
    double offset = 0.0, pitch = 0.0; ///< of the best line: position = offset + pitch * number
    double factor = 0.0;              ///< nominal over measured pitch: what steps are to be multiplied by
    double deviation = 0.0;           ///< root of the mean square of the residuals
};

/// Distances of the points from the first along the straight line to the last, in units of the X axis; along the curve
/// itself where it ends at its start.
std::vector<double> curve_positions(const measured_surface& surface, const std::vector<CPoint>& curve);
/// Nothing for fewer than 3 positions, a pitch that is not positive, or positions that do not advance.
std::optional<calibration_table> calibrate(const std::vector<double>& positions, double nominalPitch);
/// The table as lines of cells between tabs, with a heading, and what the line says below.
std::wstring calibration_text(const calibration_table& table, const std::string& units);

/// Asks for the nominal pitch and puts the table on the clipboard and into the text view of the document.
/// \return whether it was made
bool run_calibration(CDocument& document, const measured_surface& surface, const std::vector<CPoint>& curve,
                     CWnd* parent);

} // namespace vldv::surface
