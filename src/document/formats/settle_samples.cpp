#include "base/stream_fitting.h"
#include "base/text.h"
#include "document/formats/stream_shape.h"
#include "document/formats/void_points.h"

#include <algorithm>
#include <cmath>

// How the numbers of files become 16-bit samples.

namespace formats {

namespace {

constexpr const char* bridgedWords = " (on lines between their neighbours)";
constexpr double coarseStep = 0.1; ///< of the span of the middle

void note_voids(recorded_image& image, const void_count& voids)
{
    if (voids.all == 0) return;
    const bool isOne = voids.all == 1;
    image.strings["\\Void points"] = std::to_string(voids.all) + (voids.areBridged ? bridgedWords : "");
    std::string note = std::to_string(voids.all) + (isOne ? " sample was" : " samples were") + " not measured and " +
                       (isOne ? "lies" : "lie") +
                       (voids.areBridged ? " on the line between measured neighbours" : " at the lowest value");
    if (voids.absurd != 0) {
        image.strings["\\Absurd points"] = std::to_string(voids.absurd);
        note += "; " + std::to_string(voids.absurd) +
                " of them 1e30 or more, or further from the middle 99.8 % of all than 10^6 times their span";
    }
    image.notes.push_back(note);
}

/// Says so when 16 bits cannot resolve what most samples tell. `span` is that of their middle, in the value's unit.
void note_coarse_step(recorded_image& image, double span)
{
    const VLAxis& axis = image.stream.values.get_axis(0);
    if (!(span > 0.0) || !(std::fabs(axis.scale) > coarseStep * span)) return;
    const std::string units = *axis.get_units() ? std::string(" ") + axis.get_units() : std::string();
    image.notes.push_back("values are rounded to steps of " + base::general(std::fabs(axis.scale)) + units +
                          ", while the middle 99.8 % of them span " + base::general(span) + units);
}

/// Whole numbers from 0 to 65535 keep every bit: they move down by 32768 and the axes up.
void shift_to_signed(SPMDataStream& stream)
{
    constexpr double middle = 32768.0;
    const base::element_map down{middle, 0.0, 1.0};
    base::rewrite_elements(stream, SPM_ARRAY_INT16, &down);
    for (unsigned i = 0; i < stream.values.get_axes_number(); ++i) {
        VLAxis axis = stream.values.get_axis(i);
        axis.start += middle * axis.scale;
        stream.values.set_axis(i, axis);
    }
}

/// Whole numbers that 16 bits hold stay as they are. \return false, with nothing done, for others
bool keep_numbers(SPMDataStream& stream, const base::element_range& range)
{
    if (base::fits_as_it_stands(range, SPM_ARRAY_INT16))
        base::fit_stream(stream, SPM_ARRAY_INT16, range);
    else if (base::fits_as_it_stands(range, SPM_ARRAY_UINT16))
        shift_to_signed(stream);
    else
        return false;
    return true;
}

} // namespace

void settle_samples(recorded_image& image, std::span<const void_range> ranges)
{
    SPMDataStream& stream = image.stream;
    const filled_samples filled = fill_unmeasured(stream, ranges);
    note_voids(image, filled.voids);
    if (stream.array_type() == SPM_ARRAY_INT16 || keep_numbers(stream, filled.range)) return;
    const double span = filled.middle ? filled.middle->span() * std::fabs(stream.values.get_axis(0).scale) : 0.0;
    base::fit_stream(stream, SPM_ARRAY_INT16, filled.range);
    note_coarse_step(image, span);
}

void settle_markers(recorded_image& image, std::span<const std::int16_t> markers)
{
    note_voids(image, fill_marked(image.stream, markers));
}

} // namespace formats
