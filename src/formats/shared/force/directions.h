#pragma once
#include "formats/shared/heights.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace vldv::formats {

/// Along which way of the fast axis a plane was recorded.
enum class scan_direction { unknown, forward, reverse };

/// What has to agree before two planes may share an image.
struct channel_plane {
    std::string channel; ///< without the direction
    std::string pass;    ///< whatever else tells planes apart: frame direction, lift mode, date
    scan_direction direction = scan_direction::unknown;
    image_frame frame;
    value_scale scale;
};

/// Indices of planes that belong to one image: one plane, or the forward and the reverse one.
using plane_group = std::vector<std::size_t>;

/// Joins the planes that are the two directions of one channel; each group stands where its first plane stood.
std::vector<plane_group> join_directions(std::span<const channel_plane> planes);

/// Names the sub-images of a group "Forward" and "Reverse"; a plane without partner by its own direction, if known.
/// \param first  the direction of the group's first plane
void name_directions(recorded_image& image, const plane_group& group, scan_direction first);

/// A channel name without its direction: "HeightTrace" and "Height (retrace)" are both "Height".
struct directed_name {
    std::string channel;
    scan_direction direction = scan_direction::unknown;
};

/// Splits the words trace, retrace, forward, backward and reverse off the end of a name, with or without brackets
/// around them.
directed_name split_direction(const std::string& name);

} // namespace vldv::formats
