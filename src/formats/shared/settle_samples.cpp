#include "base/streams/stream_fitting.h"
#include "base/text.h"
#include "formats/shared/left_out.h"
#include "formats/shared/stream_shape.h"
#include "formats/shared/void_points.h"

#include <algorithm>
#include <cmath>

// How the numbers of files become 16-bit samples.

namespace vldv::formats {

namespace {

constexpr const char* bridgedWords = " (on lines between their neighbours)";
constexpr double coarseStep = 0.1;   ///< of the span of the middle
constexpr double coarsestStep = 1.0; ///< of the span of half of the samples

void note_voids(recorded_image& image, const void_count& voids)
{
    if (voids.all == 0) return;
    const bool isOne = voids.all == 1;
    image.strings["\\Void points"] = std::to_string(voids.all) + (voids.areBridged ? bridgedWords : "");
    if (const std::string told = void_ranges_text(image.stream.array_length(), voids.ranges); !told.empty())
        image.strings[voidRangesKey] = told;
    std::string note = std::to_string(voids.all) + (isOne ? " sample was" : " samples were") + unmeasuredNote +
                       (isOne ? "lies" : "lie") +
                       (voids.areBridged ? " on the line between measured neighbours" : " at the lowest value");
    if (voids.absurd != 0) {
        image.strings["\\Absurd points"] = std::to_string(voids.absurd);
        note += "; " + std::to_string(voids.absurd) +
                " of them 1e30 or more, or further from the middle 99.8 % of all than 10^6 times their span";
    }
    image.notes.push_back(note);
}

/// Physical values that most samples have, before they are rounded.
struct most_values {
    const char* share; ///< how many these are
    double value, span;
    double mostStep; ///< up to which they are told apart
};

/// The middle of the samples as physical values; half of them where a middle of so many is not narrow.
std::optional<most_values> values_of_most(const VLAxis& axis, const filled_samples& samples)
{
    const auto physical = [&](const middle_range& part, const char* share, double steps) {
        const double span = part.span() * std::fabs(axis.scale), value = axis.at(part.lowest);
        return most_values{share, value, span, steps * (span > 0.0 ? span : std::fabs(value))};
    };
    if (samples.middle) return physical(*samples.middle, "the middle 99.8 %", coarseStep);
    const bool isSpread = samples.half && samples.half->span() > 0.0;
    return isSpread ? std::optional(physical(*samples.half, "half", coarsestStep)) : std::nullopt;
}

/// Says so when 16 bits cannot resolve what most samples tell.
void note_coarse_step(recorded_image& image, const most_values& most)
{
    const VLAxis& axis = image.stream.values.get_axis(0);
    if (!(std::fabs(axis.scale) > most.mostStep)) return;
    const std::string units = *axis.get_units() ? std::string(" ") + axis.get_units() : std::string();
    const std::string told = most.span > 0.0 ? "span " + base::general(most.span) : "are " + base::general(most.value);
    image.notes.push_back("values are rounded to steps of " + base::general(std::fabs(axis.scale)) + units +
                          ", while " + most.share + " of them " + told + units);
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
    const auto most = values_of_most(stream.values.get_axis(0), filled);
    base::fit_stream(stream, SPM_ARRAY_INT16, filled.range);
    if (most) note_coarse_step(image, *most);
}

void settle_markers(recorded_image& image, std::span<const std::int16_t> markers)
{
    note_voids(image, fill_marked(image.stream, markers));
}

} // namespace vldv::formats
