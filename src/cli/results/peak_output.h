#pragma once
#include "cli/choice/frame_choice.h"
#include "spectra/figures/spectrum_peaks.h"

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

class CStorageDoc;

namespace vldv::cli {

/// What stands out of the spectrum of a frame.
struct told_peaks {
    std::vector<spectra::spectrum_peak> peaks;
    spectra::spectrum_grid grid;
    VLAxis heights;
};
told_peaks peaks_of(const CStorageDoc& document, const frame& which, const spectra::frame_spectrum& spectrum);

/// Adds "peaks", and "lattice" where there is one.
void add_peaks(nlohmann::ordered_json& entry, const told_peaks& told);
/// A table in columns after four blanks, and the lattice.
std::string peaks_lines(const told_peaks& told);

} // namespace vldv::cli
