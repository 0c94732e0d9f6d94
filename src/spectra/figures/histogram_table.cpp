#include "spectra/figures/histogram_table.h"

#include "base/text.h"

namespace vldv::spectra {

std::string histogram_table(const height_histogram& histogram, const char* units)
{
    std::string text = std::string("X,") + units + "\tY,\n";
    const std::size_t bars = histogram.bins.size();
    const double step = bars > 1 ? histogram.valueRange / static_cast<double>(bars - 1) : 0.0;
    for (std::size_t bin = 0; bin < bars; ++bin)
        text +=
            base::formatted("%.12g\t%u\n", histogram.valueMin + static_cast<double>(bin) * step, histogram.bins[bin]);
    return text;
}

} // namespace vldv::spectra
