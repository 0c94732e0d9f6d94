#include "cli/results/peak_output.h"

#include "base/text.h"
#include "cli/output/aligned.h"
#include "document/StorageDoc.h"

#include <cmath>
#include <nlohmann/json.hpp>
#include <sstream>

namespace vldv::cli {

using json = nlohmann::ordered_json;

told_peaks peaks_of(const CStorageDoc& document, const frame& which, const spectra::frame_spectrum& spectrum)
{
    told_peaks told;
    told.peaks = spectra::find_peaks(spectrum);
    told.grid = {spectrum.width, spectrum.height, document.getAxis(which.image, 0, 0),
                 document.getAxis(which.image, 0, 1)};
    told.heights = document.getAxis(which.image, 0, unsigned(-1));
    return told;
}

void add_peaks(json& entry, const told_peaks& told)
{
    json& peaks = entry["peaks"] = json::array();
    for (const spectra::spectrum_peak& each : told.peaks) {
        const spectra::wave at = spectra::wave_at(told.grid, each.u, each.v);
        json row = {{"u", each.u}, {"v", each.v}};
        if (at.hasLength())
            row.update({{"period", 1.0 / at.frequency()},
                        {"frequency", at.frequency()},
                        {"direction", at.direction()},
                        {"units", at.unitX}});
        else
            row.update({{"fx", at.fx}, {"fy", at.fy}, {"units_x", at.unitX}, {"units_y", at.unitY}});
        row["magnitude"] = each.magnitude * std::fabs(told.heights.scale);
        peaks.push_back(std::move(row));
    }
    entry["magnitude_units"] = told.heights.get_units();
    if (const auto found = spectra::find_lattice(told.peaks, told.grid))
        entry["lattice"] = {{"a", found->a},
                            {"b", found->b},
                            {"angle", found->angle},
                            {"direction_a", found->directionA},
                            {"units", found->units}};
}

std::string peaks_lines(const told_peaks& told)
{
    // The text of the window, in columns.
    std::vector<std::vector<std::string>> rows;
    std::istringstream text(spectra::peaks_text(told.peaks, told.grid, told.heights));
    for (std::string line; std::getline(text, line);) {
        std::istringstream cells{std::string(base::trimmed(line))};
        std::vector<std::string>& row = rows.emplace_back();
        for (std::string cell; std::getline(cells, cell, '\t');) row.push_back(cell);
    }
    return aligned(rows, "    ");
}

} // namespace vldv::cli
