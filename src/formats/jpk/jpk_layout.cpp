#include "formats/jpk/jpk_layout.h"

#include "formats/shared/force/curve_group.h"

#include <algorithm>
#include <set>

namespace vldv::formats {

namespace {

/// Curves on the part of the grid that was measured, when leaving it whole would be mostly padding.
void crop_to_measured(const jpk_grid& grid, jpk_layout& layout)
{
    std::uint64_t left = grid.columns, right = 0, bottom = grid.rows, top = 0;
    for (const std::uint64_t place : layout.places) {
        left = std::min(left, place % grid.columns);
        right = std::max(right, place % grid.columns);
        bottom = std::min(bottom, place / grid.columns);
        top = std::max(top, place / grid.columns);
    }
    layout.columns = static_cast<unsigned>(right - left + 1);
    layout.rows = static_cast<unsigned>(top - bottom + 1);
    layout.x.start += layout.x.scale * static_cast<double>(left);
    layout.y.start += layout.y.scale * static_cast<double>(bottom);
    for (std::uint64_t& place : layout.places)
        place = (place / grid.columns - bottom) * layout.columns + place % grid.columns - left;
}

/// Why a channel of a segment holds nothing.
std::string absence(const jpk_archive& archive, const jpk_segment& segment, const jpk_channel& channel)
{
    if (channel.isComputed) return "nothing is measured beside it";
    return archive.zip.find(segment.folder + channel.file) ? "its member is empty" : "its member is missing";
}

/// The units that are shown first where they are those of all curves, else of the best calibration that all have.
bool choose_units(jpk_channel_parts& parts)
{
    const auto have = [&](const std::string& units) {
        return std::ranges::all_of(parts.parts, [&](const jpk_channel_part& part) {
            return !part.channel || part.channel == parts.first || part.channel->slotIn(units);
        });
    };
    const auto common = std::ranges::find_if(parts.first->slots, have, &value_scale::units);
    if (common == parts.first->slots.end()) return false;
    parts.units = common->units;
    return true;
}

} // namespace

jpk_layout jpk_layout_of(const jpk_archive& archive)
{
    constexpr std::uint64_t sparse = 16; ///< a grid is shown whole when one in so many points was measured
    jpk_layout layout;
    for (const jpk_curve& curve : archive.curves) layout.segments = std::max(layout.segments, curve.segments.size());
    const jpk_grid& grid = archive.grid;
    const bool isOnGrid = grid.columns != 0 && archive.curves.back().number < grid.points();
    for (std::size_t i = 0; i < archive.curves.size(); ++i)
        layout.places.push_back(isOnGrid ? grid.place(archive.curves[i].number) : i);
    if (!isOnGrid || grid.points() == 1) return layout;
    layout.columns = grid.columns;
    layout.rows = grid.rows;
    layout.x = grid.x;
    layout.y = grid.y;
    if (grid.points() / sparse <= layout.places.size()) return layout;
    crop_to_measured(grid, layout);
    if (layout.curves() / sparse > layout.places.size()) { // scattered over the grid: no use in a volume
        layout.columns = layout.rows = 0;
        for (std::size_t i = 0; i < layout.places.size(); ++i) layout.places[i] = i;
    }
    return layout;
}

std::string unlikely_jpk_archive(source& file, const jpk_archive& archive, const jpk_layout& layout)
{
    constexpr std::uint64_t deflateLimit = 1032, maxChannels = 200;
    std::uint64_t segments = 0, bytes = 0;
    std::set<std::string> channels;
    for (const jpk_curve& curve : archive.curves)
        for (const jpk_segment& segment : curve.segments) {
            ++segments;
            for (const jpk_channel& channel : *segment.channels) {
                if (channels.size() <= maxChannels) channels.insert(channel.name);
                if (!channel.isComputed) bytes += jpk_points(archive, segment, channel) * element_size(channel.type);
            }
        }
    if (bytes / deflateLimit > file.size()) return "the members together claim more bytes than the file can hold";
    if (channels.size() > maxChannels) return "more than 200 channels";
    if (!is_modest_padding(layout.segments * layout.curves(), segments))
        return "curves with too different numbers of segments";
    return {};
}

std::vector<jpk_channel_parts> collect_jpk_parts(const jpk_archive& archive, const jpk_layout& layout,
                                                 jpk_problems& problems)
{
    std::vector<jpk_channel_parts> all;
    std::map<std::string, std::size_t> byName;
    std::map<std::string, std::string> absent;   // why a channel may hold nothing
    std::map<std::string, counted_problem> gaps; // segments whose member of a channel is lost
    for (std::size_t c = 0; c < archive.curves.size(); ++c)
        for (std::size_t s = 0; s < archive.curves[c].segments.size(); ++s) {
            const jpk_segment& segment = archive.curves[c].segments[s];
            for (const jpk_channel& channel : *segment.channels) {
                if (!channel.problem.empty()) problems.parts[channel.name].add(segment.folder + ": " + channel.problem);
                if (!channel.damagedSlots.empty()) problems.conversions.emplace(channel.name, channel.damagedSlots);
                const std::uint64_t points = jpk_points(archive, segment, channel);
                if (points == 0) absent.emplace(channel.name, absence(archive, segment, channel));
                if (points == 0 && channel.problem.empty() && !channel.isComputed)
                    gaps[channel.name].add(segment.folder + ": " + absence(archive, segment, channel));
                if (points == 0 || !channel.problem.empty()) continue;
                const auto [found, isNew] = byName.emplace(channel.name, all.size());
                if (isNew) {
                    all.push_back({channel.name, {}, 0, 0, &channel, true, true, {}});
                    all.back().parts.resize(layout.segments * layout.curves());
                }
                jpk_channel_parts& parts = all[found->second];
                parts.parts[s * layout.curves() + layout.places[c]] = {&segment, &channel, points};
                parts.longest = std::max(parts.longest, points);
                parts.samples += points;
                parts.sameEncoding = parts.sameEncoding && channel.sameEncoding(*parts.first);
                parts.sameSlots = parts.sameSlots && channel.sameSlots(*parts.first);
            }
        }
    for (const auto& [name, part] : problems.parts)
        if (!byName.contains(name)) problems.leftOut.emplace(name, part.first);
    for (const auto& [name, gap] : gaps)
        if (byName.contains(name)) problems.parts[name].add(gap);
    for (const auto& [name, reason] : absent)
        if (!byName.contains(name)) problems.leftOut.emplace(name, reason);
    std::erase_if(all, [&](jpk_channel_parts& parts) {
        if (choose_units(parts)) return false;
        problems.leftOut.emplace(parts.name, "its curves have no calibration in the same units");
        return true;
    });
    return all;
}

} // namespace vldv::formats
