#include "spectra/views/fourier_options.h"

#include "view/frame/option_rows.h"

namespace vldv::spectra {

namespace {

constexpr view::option_row rows[] = {
    {"selmode(Selection mode),enum,Rectangular,Elliptic", "Elliptic"},
    {"normalize_spectrum(Normalize spectrum),boolean", "true"},
    {"spectrum_mode(Spectrum Calculation),enum,Power,Magnitude", "Power"},
    {"LeftMarginOpt(Left Margin),int,0", "0"},
    {"RightMarginOpt(Right Margin),int,0", "0"},
    {"TopMarginOpt(Top Margin),int,0", "0"},
    {"BottomMarginOpt(Bottom Margin),int,0", "0"},
    {"contrast(Contrast),double,0.0000001", "0.5"},
    {"SelColor(Selection Color),int,0,(1<<25)-1,hex(##)", "0x00ffff"},
    {"ShowZScale(Show Palette Strip),boolean", "true"},
    {"ShowFrequencyScale(Show Frequency Scale),boolean", "true"},
};

} // namespace

std::vector<SPMVar> fourier_options()
{
    std::vector<SPMVar> options;
    for (const view::option_row& row : rows) options.push_back(view::declared_option(row));
    return options;
}

} // namespace vldv::spectra
