#include "formats/nanoscope/nanoscope_scale.h"
#include "formats/shared/stated_number.h"

#include "base/text.h"
#include "base/units.h"

#include <cmath>

namespace vldv::formats {

namespace {

constexpr const char* degree = "\u00B0";

/// The text up to the bracket that closes the one at the start; nothing when it is not closed.
std::optional<std::string_view> bracketed(std::string_view text, char open, char close) noexcept
{
    int depth = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == open)
            ++depth;
        else if (text[i] == close && --depth == 0)
            return text.substr(1, i - 1);
    }
    return std::nullopt;
}

/// A number and the text behind it; text without a number is left alone.
std::optional<double> number_with_units(std::string_view text, std::string& units)
{
    const auto number = stated_number(text, &text);
    if (!number) return std::nullopt;
    units = base::trimmed(text);
    return number;
}

/// "Sens. Zsens = 20.82646 nm/V", a term of `value_scale::origin`.
std::string term(std::string_view name, double number, std::string_view units = {})
{
    std::string text = std::string(name) + " = " + base::shortest(number);
    if (!units.empty()) text += " " + std::string(units);
    return text;
}

void add_term(value_scale& scale, const std::string& text)
{
    if (!scale.origin.empty()) scale.origin += ", ";
    scale.origin += text;
}

value_scale unknown_scale(const std::string& reason)
{
    value_scale scale;
    scale.origin = reason;
    return scale;
}

/// The scale of a line whose text is no number: no image can be of it.
value_scale no_scale() { return {std::nan(""), 0.0, "", "no number in Z scale"}; }

/// How many raw steps the hard value spans: 2^(8 * Bytes/pixel), whatever the width of the stored samples.
double raw_span(const nanoscope_section& image)
{
    const double bytes = image.number("bytes/pixel").value_or(2.0);
    const bool plausible = bytes == 1.0 || bytes == 2.0 || bytes == 3.0 || bytes == 4.0;
    return std::exp2(8.0 * (plausible ? bytes : 2.0));
}

bool is_phase(const nanoscope_section& image)
{
    return base::lower_ascii(nanoscope_channel(image)).find("phase") != std::string::npos;
}

/// What the soft scale in brackets stands for; without a value when there is none.
nanoscope_value sensitivity_of(const nanoscope_header& header, const nanoscope_value& hard)
{
    const std::string* line = hard.bracket.empty() ? nullptr : header.typedSetting(base::lower_ascii(hard.bracket));
    return line ? parse_nanoscope_value(*line) : nanoscope_value{};
}

value_scale hard_scale(const nanoscope_section& image, const nanoscope_value& hard)
{
    return {*hard.value / raw_span(image), 0.0, hard.units, term("Z scale", *hard.value, hard.units)};
}

/// Header 4.3 and later: `@2:Z scale: V [soft scale] (hard scale) hard value`. The hard scale does not count: after
/// offline processing only the hard value follows the raw numbers.
value_scale typed_scale(const nanoscope_header& header, const nanoscope_section& image, const std::string& text)
{
    const nanoscope_value hard = parse_nanoscope_value(text);
    if (!hard.value) return no_scale();
    value_scale scale = hard_scale(image, hard);
    const nanoscope_value soft = sensitivity_of(header, hard);
    if (!hard.bracket.empty()) {
        double factor = 1.0;
        if (soft.value) {
            scale.units = multiply_units(hard.units, soft.units, factor);
            scale.step *= *soft.value * factor;
            add_term(scale, term(hard.bracket, *soft.value, soft.units));
        } else {
            scale.units.clear();
            add_term(scale, hard.bracket + " not found");
        }
    }
    const bool isKnown = hard.bracket.empty() || soft.value;
    if (isKnown && hard.units.empty() && soft.units.empty()) scale.units = is_phase(image) ? degree : "V";
    add_term(scale, term("raw span", raw_span(image)));
    return scale;
}

/// Header 3 to 4.2: `Z scale: 312.5 nm (...)` is the height of the full 16-bit range.
value_scale plain_scale(const std::string& text)
{
    std::string units;
    const auto number = number_with_units(text.substr(0, text.find('(')), units);
    if (!number) return no_scale();
    value_scale scale;
    scale.units = nanoscope_units(units);
    scale.step = *number / 65536.0;
    add_term(scale, term("Z scale", *number, scale.units));
    add_term(scale, term("raw span", 65536.0));
    return scale;
}

/// A row of the table for headers without any `Z scale` line.
struct old_channel {
    const char* channel;
    const char* units;
    double unit;            ///< value of raw 1 when all factors are 1
    const char* factors[3]; ///< header lines to multiply with; null for none
    const char* divisor;    ///< header line to divide by, or null
};

/// A number of the image list, else of the list that owns it, else of any other.
std::optional<double> old_number(const nanoscope_header& header, const nanoscope_section& image, std::string_view key)
{
    const auto own = image.number(key);
    if (own) return own;
    const bool ofController = key == "z max" || key == "in1 max"; // scanner lists have a "Z max", too
    const nanoscope_section* controller = ofController ? header.section("controller list") : nullptr;
    const auto controlled = controller ? controller->number(key) : std::nullopt;
    return controlled ? controlled : header.settingNumber(key);
}

value_scale old_scale(const nanoscope_header& header, const nanoscope_section& image)
{
    static const old_channel rows[] = {
        {"height", "nm", 2.0 / 65536.0, {"z scale height", "z max", "z sensitivity"}, nullptr},
        {"deflection", "nm", 2.0 / 65536.0, {"z scale defl", "in1 max", "in sensitivity"}, "detect sens."},
        {"amplitude", "nm", 2.0 / 65536.0, {"z scale ampl", "in1 max", "in sensitivity"}, "detect sens."},
        {"phase", degree, 180.0 / 65536.0, {"z scale phase", nullptr, nullptr}, nullptr},
        {"frequency", "Hz", 25e6 / 32768.0, {"z scale freq", nullptr, nullptr}, nullptr},
        {"current", "nA", 2.0 / 32768.0, {"z scale amplitude", "in1 max", "in sensitivity"}, nullptr},
    };
    const std::string channel = base::lower_ascii(nanoscope_channel(image));
    for (const old_channel& row : rows) {
        if (channel != row.channel) continue;
        value_scale scale{row.unit, 0.0, row.units, {}};
        const auto apply = [&](const char* key, bool divide) {
            const auto number = old_number(header, image, key);
            if (!number) return false;
            scale.step *= divide ? 1.0 / *number : *number;
            add_term(scale, term(key, *number));
            return true;
        };
        bool complete = row.divisor == nullptr || apply(row.divisor, true);
        for (const char* factor : row.factors)
            if (factor) complete = apply(factor, false) && complete;
        return complete ? scale : unknown_scale("the header has not all of the channel's Z scale");
    }
    return unknown_scale("no Z scale in the header");
}

} // namespace

nanoscope_value parse_nanoscope_value(std::string_view text)
{
    nanoscope_value value;
    text = base::trimmed(text);
    if (text.empty()) return value;
    value.kind = text.front();
    text = base::trimmed(text.substr(1));
    if (text.starts_with('[')) {
        const auto inner = bracketed(text, '[', ']');
        if (!inner) return value;
        value.bracket = *inner;
        text = base::trimmed(text.substr(inner->size() + 2));
    }
    if (text.starts_with('(')) {
        const auto inner = bracketed(text, '(', ')');
        if (!inner) return value;
        value.statesHardScale = true;
        value.hardScale = number_with_units(*inner, value.hardScaleUnits);
        text = base::trimmed(text.substr(inner->size() + 2));
    }
    const std::size_t open = text.find('"'), close = text.rfind('"');
    if (open < close && close != std::string_view::npos) value.display = text.substr(open + 1, close - open - 1);
    std::string units;
    value.value = number_with_units(text, units);
    value.units = nanoscope_units(units);
    return value;
}

std::string nanoscope_units(std::string_view units)
{
    units = base::trimmed(units);
    for (const std::string_view spelling : {"\u00BA", "\u00B0", "deg", "degree", "degrees"})
        if (units == spelling) return degree;
    for (const std::string_view micro : {"~", "u", "\u03BC", "\u00E6"}) // the last of old code pages
        if (units.size() > micro.size() && units.starts_with(micro))
            return "\u00B5" + std::string(units.substr(micro.size()));
    return std::string(units);
}

std::string multiply_units(const std::string& units, const std::string& sensitivityUnits, double& factor)
{
    factor = 1.0;
    if (sensitivityUnits.empty()) return units;
    const std::size_t slash = sensitivityUnits.find('/');
    if (slash == std::string::npos) return units.empty() ? sensitivityUnits : units + "*" + sensitivityUnits;
    const std::string upper = sensitivityUnits.substr(0, slash);
    const std::string result = upper == "1" ? std::string() : nanoscope_units(upper);
    const std::string lower = nanoscope_units(sensitivityUnits.substr(slash + 1));
    if (units.empty() || units == lower) return result;
    if (units_convertable(units.c_str(), lower.c_str()) > 0) {
        factor = convert_size(units.c_str(), lower.c_str(), 1.0);
        return result;
    }
    if (lower.ends_with("*" + units)) return result + "/" + lower.substr(0, lower.size() - units.size() - 1);
    return units + "*" + sensitivityUnits;
}

std::string nanoscope_channel(const nanoscope_section& image)
{
    if (const std::string* typed = image.findTyped("image data")) {
        const nanoscope_value value = parse_nanoscope_value(*typed);
        if (!value.display.empty()) return value.display;
        if (!value.bracket.empty()) return value.bracket;
    }
    const std::string* plain = image.find("image data");
    return plain && !plain->empty() ? *plain : "Image";
}

value_scale nanoscope_image_scale(const nanoscope_header& header, const nanoscope_section& image)
{
    if (const std::string* typed = image.findTyped("z scale")) return typed_scale(header, image, *typed);
    if (const std::string* plain = image.find("z scale")) return plain_scale(*plain);
    return old_scale(header, image);
}

std::string nanoscope_sensitivity_doubt(const nanoscope_header& header, const nanoscope_section& section)
{
    const std::string* typed = section.findTyped("z scale");
    const nanoscope_value hard = typed ? parse_nanoscope_value(*typed) : nanoscope_value{};
    const bool isStated = !hard.bracket.empty() && header.typedSetting(base::lower_ascii(hard.bracket));
    if (!isStated || sensitivity_of(header, hard).value) return {};
    return hard.bracket + " is no number: values are not converted with it";
}

std::optional<value_scale> nanoscope_image_volts(const nanoscope_header& header, const nanoscope_section& image)
{
    const std::string* typed = image.findTyped("z scale");
    if (!typed) return std::nullopt;
    const nanoscope_value hard = parse_nanoscope_value(*typed), soft = sensitivity_of(header, hard);
    if (!is_usable_factor(hard.value) || !is_usable_factor(soft.value) || hard.units.empty()) return std::nullopt;
    const value_scale shown = typed_scale(header, image, *typed), volts = hard_scale(image, hard);
    if (shown.step == volts.step && shown.units == volts.units) return std::nullopt;
    return volts;
}

double nanoscope_offset(const nanoscope_header& header, const nanoscope_section& section, const char* key,
                        const std::string& units)
{
    const std::string* line = section.find(key);
    if (!line) line = header.setting(key);
    std::string text;
    if (!line || base::trimmed(*line).empty()) return 0.0;
    const auto offset = number_with_units(*line, text);
    if (!offset || !std::isfinite(*offset)) return std::nan("");
    const std::string own = nanoscope_units(text);
    if (own == units) return *offset;
    return units_convertable(own.c_str(), units.c_str()) > 0 ? convert_size(own.c_str(), units.c_str(), *offset) : 0.0;
}

} // namespace vldv::formats
