#include "formats/jpk/jpk_channel.h"

#include "base/text.h"
#include "formats/shared/stated_number.h"
#include "formats/shared/text_units.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace vldv::formats {

namespace {

/// Bytes of a number by the data type; 0 for those that are no file of numbers.
unsigned bytes_of_data(std::string_view type)
{
    if (type == "short" || type == "short-data" || type == "memory-short-data") return 2;
    if (type == "integer" || type == "integer-data" || type == "memory-integer-data") return 4;
    if (type == "long" || type == "long-data" || type == "memory-long-data") return 8;
    return 0;
}

SPMVarArrayType number_type(const std::string& data, std::string encoder)
{
    if (data == "float" || data == "float-data" || data == "memory-float-data") return SPM_ARRAY_FLOAT32;
    if (data == "double" || data == "double-data" || data == "memory-double-data") return SPM_ARRAY_FLOAT64;
    if (encoder.ends_with("-limited")) encoder.resize(encoder.size() - 8);
    static const struct {
        const char* encoder;
        SPMVarArrayType type;
    } rows[] = {{"signedshort", SPM_ARRAY_INT16},   {"unsignedshort", SPM_ARRAY_UINT16},
                {"signedinteger", SPM_ARRAY_INT32}, {"unsignedinteger", SPM_ARRAY_UINT32},
                {"signedlong", SPM_ARRAY_INT64},    {"unsignedlong", SPM_ARRAY_UINT64}};
    for (const auto& row : rows)
        if (encoder == row.encoder && element_size(row.type) == bytes_of_data(data)) return row.type;
    return SPM_ARRAY_VOID;
}

/// Reads the first of two keys that has a text: newer files write some without "data.".
class channel_keys {
public:
    channel_keys(const jpk_properties& header_, const std::string& name)
        : header(header_), prefix("channel." + name + ".")
    {
    }
    const std::string& text(const std::string& key) const
    {
        const std::string& own = header.value(prefix + "data." + key);
        return own.empty() ? header.value(prefix + key) : own;
    }
    /// NaN for a text that is no number or empty.
    double number(const std::string& key, double otherwise) const
    {
        return has(key) ? lone_number(text(key)).value_or(std::nan("")) : otherwise;
    }

    /// True when there are keys that begin so.
    bool hasAny(const std::string& start) const
    {
        const auto found = [&](const std::string& whole) {
            const auto line = header.all().lower_bound(whole);
            return line != header.all().end() && line->first.starts_with(whole);
        };
        return found(prefix + "data." + start) || found(prefix + start);
    }

private:
    bool has(const std::string& key) const
    {
        return header.all().contains(prefix + "data." + key) || header.all().contains(prefix + key);
    }

    const jpk_properties& header;
    std::string prefix;
};

/// Follows the slots from `name` down to the base. \return the scale of numbers in the base slot; nothing when no
/// conversion is defined or when they never lead there, which `problem` then tells, or are not described or have no
/// usable numbers, which `damaged` is told of
std::optional<value_scale> walk_slots(const channel_keys& keys, const std::string& name, const std::string& base,
                                      std::size_t most, std::string& problem, std::string& damaged)
{
    const std::string set = "conversion-set.conversion.";
    value_scale scale{1.0, 0.0, "", ""};
    std::string slot = name;
    const auto leaveOut = [&](const char* why) {
        damaged += (damaged.empty() ? "" : ", ") + name + " (" + why + ")";
        return std::nullopt;
    };
    for (std::size_t i = 0; slot != base && !slot.empty(); ++i) {
        if (i > most) {
            problem = ", conversions of " + name + " run in a circle";
            return std::nullopt;
        }
        const std::string prefix = set + slot + ".";
        if (i == 0 && !keys.hasAny(prefix)) return leaveOut("it is not described");
        if (keys.text(prefix + "defined") != "false") {
            const double factor = keys.number(prefix + "scaling.multiplier", 1.0);
            const double offset = keys.number(prefix + "scaling.offset", 0.0);
            scale.offset += scale.step * offset; // y = s * (x * factor + offset) + o
            scale.step *= factor;
            if (scale.units.empty()) {
                const std::string& units = keys.text(prefix + "scaling.unit.unit");
                scale.units = normal_unit(units.empty() ? keys.text(prefix + "scaling.unit") : units);
            }
            scale.origin = slot + (scale.origin.empty() ? "" : ", ") + scale.origin;
        }
        slot = keys.text(prefix + "base-calibration-slot");
    }
    if (scale.origin.empty()) return std::nullopt;
    if (!is_usable(scale)) return leaveOut("a multiplier or offset is no number, infinite or 0");
    scale.origin = "encoder, conversions " + scale.origin;
    return scale;
}

void read_slots(const channel_keys& keys, jpk_channel& channel)
{
    const std::string set = "conversion-set.conversions.";
    const std::string base = keys.text(set + "base"), shown = keys.text(set + "default");
    std::string units = keys.text("encoder.scaling.unit.unit");
    if (units.empty()) units = keys.text("encoder.scaling.unit");
    if (units.empty()) units = keys.text("unit.unit");
    value_scale encoded{1.0, 0.0, normal_unit(units), base.empty() ? "encoder" : "encoder, base " + base};
    const auto names = base::split(keys.text(set + "list"), ' ');
    constexpr std::size_t mostSlots = 20;
    const std::size_t most = std::min(names.size() + 1, mostSlots);
    std::string problem;
    std::string& damaged = channel.damagedSlots;
    if (auto first = walk_slots(keys, shown, base, most, problem, damaged)) channel.slots.push_back(std::move(*first));
    encoded.origin += problem;
    if (channel.slots.empty()) channel.slots.push_back(encoded);
    const bool isBaseShown = channel.slots.front().origin == encoded.origin;
    for (std::size_t i = 0; i < names.size() && i < mostSlots; ++i) {
        const std::string name(base::trimmed(names[i]));
        if (name.empty() || name == shown || name == base) continue;
        if (auto other = walk_slots(keys, name, base, most, problem, damaged))
            channel.slots.push_back(std::move(*other));
    }
    if (!isBaseShown) channel.slots.push_back(encoded);
}

jpk_channel read_channel(const jpk_properties& header, const std::string& name)
{
    const channel_keys keys(header, name);
    jpk_channel channel;
    channel.name = name;
    channel.file = keys.text("file.name");
    const std::string &data = keys.text("type"), &encoder = keys.text("encoder.type");
    if (data == "constant-data" || data == "raster-data") {
        channel.isComputed = true;
        channel.file.clear();
        channel.type = SPM_ARRAY_FLOAT64;
        channel.start = keys.number(data == "constant-data" ? "value" : "start", 0.0);
        channel.step = data == "constant-data" ? 0.0 : keys.number("step", 0.0);
    } else {
        channel.type = number_type(data, encoder);
        if (channel.type == SPM_ARRAY_VOID)
            channel.problem = "data type \"" + data + "\" with encoder \"" + encoder + "\" is not known";
        else if (channel.file.empty())
            channel.problem = "data.file.name is missing";
    }
    channel.encoderFactor = keys.number("encoder.scaling.multiplier", 1.0);
    channel.encoderOffset = keys.number("encoder.scaling.offset", 0.0);
    if (!is_usable({channel.encoderFactor, channel.encoderOffset, {}, {}}))
        channel.problem = "the multiplier or offset of its encoder is no number, infinite or 0";
    if (!std::isfinite(channel.start) || !std::isfinite(channel.step))
        channel.problem = "value, start or step of its data is no number or infinite";
    read_slots(keys, channel);
    return channel;
}

} // namespace

bool is_usable(const value_scale& scale) noexcept
{
    return std::isfinite(scale.step) && scale.step != 0.0 && std::isfinite(scale.offset);
}

value_scale jpk_channel::ofRaw(const value_scale& slot) const
{
    return {slot.step * encoderFactor, slot.step * encoderOffset + slot.offset, slot.units, slot.origin};
}

const value_scale* jpk_channel::slotIn(const std::string& units) const noexcept
{
    const auto found = std::ranges::find(slots, units, &value_scale::units);
    return found == slots.end() ? nullptr : &*found;
}

bool jpk_channel::sameEncoding(const jpk_channel& other) const noexcept
{
    return type == other.type && isComputed == other.isComputed && encoderFactor == other.encoderFactor &&
           encoderOffset == other.encoderOffset;
}

bool jpk_channel::sameSlots(const jpk_channel& other) const noexcept
{
    if (slots.size() != other.slots.size()) return false;
    for (std::size_t i = 0; i < slots.size(); ++i)
        if (slots[i].step != other.slots[i].step || slots[i].offset != other.slots[i].offset ||
            slots[i].units != other.slots[i].units)
            return false;
    return true;
}

std::vector<jpk_channel> read_jpk_channels(const jpk_properties& header)
{
    constexpr std::size_t maxChannels = 200;
    std::vector<jpk_channel> channels;
    const std::string& list = header.value("channels.list");
    for (const std::string_view each : base::split(list, ' ')) {
        const std::string name(base::trimmed(each));
        if (!name.empty() && channels.size() < maxChannels) channels.push_back(read_channel(header, name));
    }
    return channels;
}

std::string jpk_segment_name(const jpk_properties& header)
{
    const std::string prefix = "force-segment-header.settings.";
    std::string style = header.value(prefix + "segment-settings.style");
    if (style.empty()) style = header.value(prefix + "style");
    if (style == "extend") return "Approach";
    if (style == "retract") return "Retract";
    if (!style.empty() && style[0] >= 'a' && style[0] <= 'z') style[0] = static_cast<char>(style[0] - 'a' + 'A');
    return style.empty() ? "Segment" : style;
}

} // namespace vldv::formats
