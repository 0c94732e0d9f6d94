#include "view/scale/palette_profile.h"

#include "base/text.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace vldv::view {

namespace {

constexpr const char* section = "Palette";
constexpr const char* valuesKey = "Values";
constexpr const char* lengthKey = "CustomMaxColorN";
constexpr const char* tableKey = "CustomColorTable";
constexpr std::size_t maxUnitBytes = 99, maxValuesBytes = 1023;
constexpr int defaultLength = 255, maxLength = 1 << 20;

/// Reads "number," from the front; false when there is none, and the rest is not looked at either.
bool take_number(std::string_view& text, double& value, bool isLast)
{
    std::size_t used = 0;
    const auto number = base::leading_number(text, &used);
    if (!number || !std::isfinite(*number)) return false;
    value = *number;
    text.remove_prefix(used);
    if (isLast || !text.starts_with(',')) return text.starts_with(',');
    text.remove_prefix(1);
    return true;
}

/// A text of at most `limit` bytes that does not end inside a character.
std::string cut(std::string_view text, std::size_t limit)
{
    std::string out(text.substr(0, limit));
    while (!out.empty() && !base::is_utf8(out)) out.pop_back();
    return out;
}

int clamped(double value, int low, int high) { return static_cast<int>(std::clamp<double>(value, low, high)); }

} // namespace

void read_scale_values(const IProfile& profile, scale_state& state)
{
    const auto saved = profile.readString(section, valuesKey);
    if (saved) {
        // "palette,mode,start,size,offset,units". Reading ends at the first field that is broken; those before it
        // count.
        std::string_view text = *saved;
        double palette = state.paletteId, mode = state.autoScaling;
        double* const fields[] = {&palette, &mode, &state.fixedStart, &state.fixedSize, &state.relativeMeanOffset};
        bool more = true;
        for (double* field : fields) more = more && take_number(text, *field, field == fields[4]);
        state.paletteId = clamped(palette, 0, builtInPalettes - 1);
        state.autoScaling = clamped(mode, fixedScale, perLinePlanefit);
        if (more) {
            const std::string_view rest = base::trimmed(text.substr(1));
            const std::string units = cut(rest.substr(0, rest.find_first_of(" \t\r\n")), maxUnitBytes);
            if (!units.empty()) state.fixedUnits = units;
        }
    }
    state.upperDelimiter = state.scaleLength >> 2;
    state.lowerDelimiter = state.scaleLength - (state.scaleLength >> 2);
}

bool write_scale_values(IProfile& profile, const scale_state& state)
{
    const std::string text = base::formatted("%u,%u,%f,%f,%f,%s", static_cast<unsigned>(state.paletteId),
                                             static_cast<unsigned>(state.autoScaling), state.fixedStart,
                                             state.fixedSize, state.relativeMeanOffset, state.fixedUnits.c_str());
    return profile.writeString(section, valuesKey, cut(text, maxValuesBytes));
}

color_table read_custom_palette(const IProfile& profile)
{
    const int length = std::clamp(profile.readInt(section, lengthKey).value_or(defaultLength), 1, maxLength);
    const auto saved = profile.readBinary(section, tableKey);
    if (!saved || saved->size() < sizeof(colorEntry)) return color_table(static_cast<std::size_t>(length));
    color_table table(saved->size() / sizeof(colorEntry));
    std::memcpy(table.data(), saved->data(), table.size() * sizeof(colorEntry));
    return table;
}

bool write_custom_palette(IProfile& profile, const color_table& table)
{
    return profile.writeInt(section, lengthKey, static_cast<int>(table.size())) &&
           profile.writeBinary(section, tableKey, std::as_bytes(std::span(table)));
}

} // namespace vldv::view
