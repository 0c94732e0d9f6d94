#include "spectra/figures/spectrum_stream.h"

#include "spectra/figures/fourier.h"

#include <algorithm>
#include <string>

namespace vldv::spectra {

namespace {

/// Cycles per unit of a dimension's axes, of which it has at least one.
SPMDataStream::dimension frequencies(const SPMDataStream::dimension& places)
{
    SPMDataStream::dimension made;
    made.length = places.length;
    for (unsigned i = 0; i < places.get_axes_number(); ++i) {
        const VLAxis& axis = places.get_axis(i);
        // One step of frequency is one period over the whole length; sample zero_frequency is frequency 0.
        const double extent = axis.scale * places.length;
        const double step = extent != 0.0 ? 1.0 / extent : 1.0;
        const std::string units = *axis.get_units() ? std::string("1/") + axis.get_units() : std::string();
        made.set_axis(i, VLAxis(-step * zero_frequency(static_cast<int>(places.length)), step, units.c_str()));
    }
    return made;
}

} // namespace

SPMDataStream make_spectrum_stream(const SPMDataStream& surface, std::span<const unsigned> subs,
                                   std::span<const std::vector<std::int16_t>> pictures)
{
    std::size_t count = 0;
    for (const auto& each : pictures) count += each.size();
    SPMDataStream stream;
    const std::string id = std::string(surface.get_name()) + "_Spectrum";
    stream.Init(id.c_str(), "Spectrum", SPM_VAR_ARRAY, static_cast<unsigned>(count), 2u);
    stream.set_array_type(SPM_ARRAY_INT16);
    auto* to = static_cast<std::int16_t*>(stream.array_data());
    for (const auto& each : pictures) to = std::copy(each.begin(), each.end(), to);
    for (unsigned d = 0; d < surface.get_dimensions_number(); ++d)
        stream.set_dimension(d, frequencies(surface.get_dimension(d)));
    // The samples -32768 to 32767 stand for brightness 0 to 1.
    stream.values.set_axis(0, VLAxis(32768.0 / 65535.0, 1.0 / 65535.0, ""));
    std::vector<smart_string> names;
    for (const unsigned sub : subs)
        if (sub < surface.subimage_names().size()) names.push_back(surface.subimage_names()[sub]);
    if (names.size() == subs.size()) stream.set_subimage_names(std::move(names));
    return stream;
}

} // namespace vldv::spectra
