#include "formats/shared/force/directions.h"

#include "base/text.h"
#include "formats/shared/stream_shape.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <string_view>
#include <utility>

namespace vldv::formats {

namespace {

bool is_finite(const VLAxis& axis) noexcept { return std::isfinite(axis.start) && std::isfinite(axis.scale); }

/// Headers state sizes rounded: places that differ by less than a millionth of the side are the same. A side that is
/// nowhere is like no other: its plane is left out, and the other is not to go with it.
bool are_same(const VLAxis& a, const VLAxis& b, unsigned samples)
{
    constexpr double rounding = 1e-6;
    if (!is_finite(a) || !is_finite(b)) return false;
    const double step = std::max(std::fabs(a.scale), std::fabs(b.scale));
    const double reach = std::max({step * samples, std::fabs(a.start), std::fabs(b.start)});
    return std::string_view(a.get_units()) == b.get_units() && std::fabs(a.scale - b.scale) <= rounding * step &&
           std::fabs(a.start - b.start) <= rounding * reach;
}

bool are_two_directions(const channel_plane& a, const channel_plane& b)
{
    const bool opposite = (a.direction == scan_direction::forward && b.direction == scan_direction::reverse) ||
                          (a.direction == scan_direction::reverse && b.direction == scan_direction::forward);
    return opposite && a.channel == b.channel && a.pass == b.pass && a.frame.width == b.frame.width &&
           a.frame.height == b.frame.height && are_same(a.frame.x, b.frame.x, a.frame.width) &&
           are_same(a.frame.y, b.frame.y, a.frame.height) && a.scale.step == b.scale.step &&
           a.scale.offset == b.scale.offset && a.scale.units == b.scale.units;
}

} // namespace

std::vector<plane_group> join_directions(std::span<const channel_plane> planes)
{
    std::vector<plane_group> groups;
    std::map<std::pair<std::string, std::string>, std::vector<std::size_t>> waiting; // groups without a partner
    for (std::size_t i = 0; i < planes.size(); ++i) {
        auto& candidates = waiting[{planes[i].channel, planes[i].pass}];
        const auto partner = std::find_if(candidates.begin(), candidates.end(), [&](std::size_t group) {
            return are_two_directions(planes[groups[group].front()], planes[i]);
        });
        if (partner == candidates.end()) {
            if (planes[i].direction != scan_direction::unknown) candidates.push_back(groups.size());
            groups.push_back({i});
            continue;
        }
        plane_group& joined = groups[*partner];
        joined.insert(planes[i].direction == scan_direction::forward ? joined.begin() : joined.end(), i);
        candidates.erase(partner);
    }
    return groups;
}

void name_directions(recorded_image& image, const plane_group& group, scan_direction first)
{
    static const std::string names[] = {"Forward", "Reverse"};
    const std::span all(names);
    if (group.size() == 2)
        name_subimages(image, all);
    else if (first != scan_direction::unknown)
        name_subimages(image, first == scan_direction::forward ? all.first(1) : all.last(1));
}

directed_name split_direction(const std::string& name)
{
    static const struct {
        std::string_view word;
        scan_direction direction;
    } words[] = {{"retrace", scan_direction::reverse},  {"trace", scan_direction::forward},
                 {"backward", scan_direction::reverse}, {"reverse", scan_direction::reverse},
                 {"forward", scan_direction::forward},  {"fwd", scan_direction::forward},
                 {"bwd", scan_direction::reverse}};
    std::string_view rest = base::trimmed(name);
    const bool isBracketed = rest.ends_with(')') || rest.ends_with(']');
    if (isBracketed) rest.remove_suffix(1);
    const std::string lower = base::lower_ascii(rest);
    for (const auto& each : words) {
        if (!lower.ends_with(each.word)) continue;
        rest.remove_suffix(each.word.size());
        if (isBracketed) {
            if (!rest.ends_with('(') && !rest.ends_with('[')) break;
            rest.remove_suffix(1);
        }
        while (rest.ends_with(' ') || rest.ends_with('_') || rest.ends_with('-')) rest.remove_suffix(1);
        if (rest.empty()) break;
        return {std::string(rest), each.direction};
    }
    return {std::string(base::trimmed(name)), scan_direction::unknown};
}

} // namespace vldv::formats
