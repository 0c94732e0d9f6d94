#pragma once
#include "formats/nanoscope/nanoscope_header.h"
#include "formats/shared/heights.h"

#include <cmath>
#include <optional>
#include <string>
#include <string_view>

namespace vldv::formats {

/// The right side of an `\@n:Key:` line, "V [soft scale] (hard scale) hard value" or `S [internal name] "display
/// name"`.
struct nanoscope_value {
    char kind = ' ';                 ///< V value, C scale, S selection
    std::string bracket;             ///< soft scale or internal name: "Sens. Zsens", "ZSensor"
    std::optional<double> hardScale; ///< "0.005035400" of "(0.005035400 V/LSB)"
    std::string hardScaleUnits;      ///< "V/LSB"
    bool statesHardScale = false;    ///< the brackets stand there, whatever is in them
    std::optional<double> value;
    std::string units;   ///< of the value, spelt as this library does
    std::string display; ///< text between double quotes
};

nanoscope_value parse_nanoscope_value(std::string_view text);

/// A number that a scale can be made of: it is there, finite and not 0.
inline bool is_usable_factor(const std::optional<double>& number) noexcept
{
    return number && std::isfinite(*number) && *number != 0.0;
}

/// Units as this library spells them: "~m" and "um" become "µm", the degree of any spelling becomes "°".
std::string nanoscope_units(std::string_view units);

/// Units of a value in `units` times a sensitivity in `sensitivityUnits`: "V" times "nm/V" is "nm".
/// \param factor  receives what the number has to be multiplied with besides: 0.001 for "mV" times "nm/V"
std::string multiply_units(const std::string& units, const std::string& sensitivityUnits, double& factor);

/// Channel of an image list: display name, else internal name, else "Image".
std::string nanoscope_channel(const nanoscope_section& image);

/// What a raw sample of an image means. A scale that the header does not tell leaves raw numbers without units.
value_scale nanoscope_image_scale(const nanoscope_header& header, const nanoscope_section& image);

/// What is to be said of a channel whose sensitivity stands in the header and is no number; empty otherwise.
std::string nanoscope_sensitivity_doubt(const nanoscope_header& header, const nanoscope_section& section);

/// What the instrument measured, as a rule volts, before a sensitivity made the image's scale of it; nothing when that
/// is the same.
std::optional<value_scale> nanoscope_image_volts(const nanoscope_header& header, const nanoscope_section& image);

/// An offset line such as "x offset" of the section, else of the scan, in the units of an axis; 0 when there is none.
double nanoscope_offset(const nanoscope_header& header, const nanoscope_section& section, const char* key,
                        const std::string& units);

} // namespace vldv::formats
