#include "formats/nid/nid_channel.h"

#include "base/text.h"
#include "formats/shared/sample_numbers.h"
#include "formats/shared/stream_shape.h"
#include "formats/shared/text_units.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace vldv::formats {

namespace {

constexpr unsigned maxGroups = 1000, maxChannels = 10000;

/// Place of a channel in the file's order, from its key "Gr1-Ch3".
struct channel_key {
    unsigned group, channel;
    std::string section;
};

std::optional<unsigned> take_number(std::string_view& text)
{
    const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
    const auto number = base::whole_integer(text.substr(0, digits));
    if (!number || *number < 0 || *number >= maxChannels) return std::nullopt;
    text.remove_prefix(digits);
    return static_cast<unsigned>(*number);
}

std::optional<channel_key> parse_key(std::string_view key, const std::string& value)
{
    if (!key.starts_with("Gr")) return std::nullopt;
    key.remove_prefix(2);
    const auto group = take_number(key);
    if (!group || !key.starts_with("-Ch")) return std::nullopt;
    key.remove_prefix(3);
    const auto channel = take_number(key);
    if (!channel || !key.empty()) return std::nullopt;
    return channel_key{*group, *channel, std::string(base::trimmed(value))};
}

/// Samples stand in the order of groups and channels, whatever the order of the keys.
std::vector<channel_key> channel_keys(const nid_section& set, unsigned groups)
{
    std::vector<channel_key> keys;
    for (const auto& [key, value] : set.entries)
        if (auto parsed = parse_key(key, value); parsed && parsed->group < groups) keys.push_back(std::move(*parsed));
    std::sort(keys.begin(), keys.end(), [](const channel_key& a, const channel_key& b) {
        return a.group != b.group ? a.group < b.group : a.channel < b.channel;
    });
    return keys;
}

/// Reads what tells how samples are stored. \return a reason why they cannot be read, or an empty text
std::string read_storage(const nid_section& section, nid_channel& channel)
{
    const auto is = [&](const char* key, std::string_view wanted) {
        return base::equal_ignoring_case(section.text(key), wanted);
    };
    channel.points = section.count("Points").value_or(0);
    channel.lines = section.count("Lines").value_or(0);
    const unsigned bits = section.count("SaveBits").value_or(0);
    channel.sampleBytes = bits / 8;
    if (channel.points == 0 || channel.lines == 0) return "Points or Lines is missing or 0";
    if (!is_image_side(channel.lines) || (channel.isImage() && !is_image_side(channel.points)))
        return "Points or Lines is above 65536";
    if (!is("SaveMode", "Binary")) return "SaveMode is not Binary";
    if (!is("SaveSign", "Signed")) return "SaveSign is not Signed";
    if (!is("SaveOrder", "Intel")) return "SaveOrder is not Intel";
    if (bits != 8 && bits != 16 && bits != 32) return "SaveBits is not 8, 16 or 32";
    return {};
}

/// The whole range of the raw numbers covers the range of the quantity.
std::string read_scale(const nid_section& section, nid_channel& channel)
{
    for (const char* key : {"Dim2Range", "Dim2Min"})
        if (section.find(key) && !section.number(key))
            return std::string(key) + ", \"" + section.text(key) + "\", is no number";
    const nid_range values = nid_dimension(section, "Dim2");
    if (!std::isfinite(values.range) || !std::isfinite(values.start)) return "Dim2Range or Dim2Min is not finite";
    if (section.text("Dim2Range").empty()) return {}; // no range: raw numbers without units
    channel.scale.step = values.range / std::ldexp(1.0, static_cast<int>(channel.sampleBytes) * 8);
    channel.scale.offset = values.start + values.range / 2.0;
    channel.scale.units = values.units;
    channel.scale.origin = "Dim2Range, Dim2Min, SaveBits";
    return {};
}

std::string read_channel(const nid_section& section, nid_channel& channel)
{
    channel.section = &section;
    channel.frame = section.text("Frame");
    channel.name = section.text("Dim2Name");
    if (channel.name.empty()) channel.name = "Channel";
    if (std::string reason = read_storage(section, channel); !reason.empty()) return reason;
    channel.measuredLines = channel.lines;
    if (const auto last = section.count("CurLine"); last && *last < channel.lines) channel.measuredLines = *last + 1;
    channel.scaleProblem = read_scale(section, channel);
    return {};
}

} // namespace

bool nid_channel::isImage() const noexcept
{
    return lines > 1 && (frame.starts_with("Scan") || frame.starts_with("2nd scan"));
}

scan_direction nid_channel::direction() const noexcept
{
    if (frame.ends_with("forward")) return scan_direction::forward;
    return frame.ends_with("backward") ? scan_direction::reverse : scan_direction::unknown;
}

std::string nid_channel::pass() const
{
    return direction() == scan_direction::unknown ? frame : frame.substr(0, frame.rfind(' '));
}

SPMVarArrayType nid_channel::type() const noexcept
{
    return sampleBytes == 1 ? SPM_ARRAY_INT8 : sampleBytes == 2 ? SPM_ARRAY_INT16 : SPM_ARRAY_INT32;
}

std::string nid_channel::label() const
{
    const std::string told = pass();
    return told.empty() || told == "Scan" || told == "Spec" ? name : name + " (" + told + ")";
}

base::read_error nid_channel::unreadable() const { return {offset, "samples of [" + sectionName + "] cannot be read"}; }

bool is_uniform(std::span<const std::byte> samples, std::size_t sampleBytes)
{
    return samples.size() <= sampleBytes ||
           std::ranges::equal(samples.subspan(sampleBytes), samples.first(samples.size() - sampleBytes));
}

nid_range nid_dimension(const nid_section& section, const std::string& prefix)
{
    const auto stated = [&](const char* part) { // NaN for a text that is no number, 0 for none
        const std::string key = prefix + part;
        return section.number(key).value_or(section.text(key).empty() ? 0.0 : std::nan(""));
    };
    return {stated("Min"), stated("Range"), normal_unit(section.text(prefix + "Unit"))};
}

base::read_result<std::vector<nid_channel>> find_nid_channels(const nid_header& header, std::uint64_t fileSize,
                                                              left_out& missing)
{
    const nid_section* set = header.find("DataSet");
    const unsigned groups = set ? set->count("GroupCount").value_or(0) : 0;
    if (groups == 0) return base::read_error{0, "GroupCount is missing or 0"};
    if (groups > maxGroups) return base::read_error{0, "GroupCount is above 1000"};
    std::vector<nid_channel> channels;
    std::uint64_t total = 0;
    bool isCut = false;
    const std::uint64_t room = fileSize - header.dataStart;
    for (const channel_key& key : channel_keys(*set, groups)) {
        const auto refused = [&](const std::string& why) {
            return base::read_error{header.dataStart + total, "section [" + key.section + "]: " + why};
        };
        const nid_section* section = header.find(key.section);
        if (key.section.empty())
            return base::read_error{0, "Gr" + std::to_string(key.group) + "-Ch" + std::to_string(key.channel) +
                                           " names no section"};
        if (!section) return refused("is missing");
        nid_channel channel;
        channel.sectionName = key.section;
        if (std::string reason = read_channel(*section, channel); !reason.empty()) return refused(reason);
        isCut = isCut || channel.samples() > (room - total) / channel.sampleBytes;
        if (isCut) {
            missing.add(refused("Points times Lines reach beyond the end of the file, which is cut short"));
            continue;
        }
        channel.offset = header.dataStart + total;
        total += channel.samples() * channel.sampleBytes;
        if (channel.scaleProblem.empty())
            channels.push_back(std::move(channel));
        else
            missing.add(refused(channel.scaleProblem));
    }
    if (channels.empty()) return missing.empty() ? base::read_error{0, "no channel is listed"} : missing.first();
    if (isCut) return channels;
    if (const std::string surplus = told_surplus("Points times Lines of all channels", total, room); !surplus.empty())
        missing.add({header.dataStart, surplus});
    for (nid_channel& channel : channels) channel.offset += room - total; // samples end with the file
    return channels;
}

} // namespace vldv::formats
