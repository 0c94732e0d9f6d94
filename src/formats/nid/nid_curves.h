#pragma once
#include "formats/nid/nid_channel.h"
#include "formats/recording.h"
#include "formats/shared/force/force_order.h"
#include "formats/shared/point_grid.h"
#include "formats/shared/stream_shape.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace vldv::formats {

/// Where the curves of a spectroscopy file were taken.
struct nid_places {
    std::optional<point_grid> grid; ///< nothing when they were not on a regular grid
    std::string text;               ///< "x y" of each, a line each; empty when it is not told
};
nid_places find_nid_places(const nid_header& header);

/// Where the points of one curve lie. It may have fewer than the longest, and none when it was not measured.
struct nid_line {
    double start = 0.0, range = 0.0;
    unsigned points = 0;
    bool operator==(const nid_line&) const noexcept = default;
};

/// How the lines of a group of channels become a stream: one curve, curves as sub-images, or a volume.
struct nid_curve_layout {
    unsigned points = 0, lines = 0, directions = 1;
    std::optional<point_grid> grid;
    std::vector<nid_line> curves;   ///< in file order: the lines of a direction, then those of the other
    std::vector<std::string> names; ///< of the sub-images; may be empty
    VLAxis x;
    bool hasOwnAxes = false; ///< curves differ in start, range or number of points

    std::vector<extent> extents() const;
    unsigned subimages() const noexcept { return grid ? directions : directions * lines; }
    /// Which curve of the stream a curve of the file is.
    std::size_t placeOf(std::size_t curve) const noexcept;
};
/// \param channels  the directions of one channel, at least one, with equal numbers of lines
base::read_result<nid_curve_layout> lay_out_curves(const nid_places& places,
                                                   std::span<const nid_channel* const> channels);

/// The curves of the channels in their places, short ones with their last value as rest. Finds the lines that were not
/// measured yet, too, and says so in `layout`.
base::read_result<recorded_image> read_nid_curves(source& file, std::span<const nid_channel* const> channels,
                                                  nid_curve_layout& layout, const std::string& id);

/// Where the contact lies in each curve of a force image: approaches run in time, a retract is compared with where its
/// approach ended. An axis that both share says little of how retracts are stored: there the forces tell first.
/// \param positions  null for those of the axis
/// \param forces  the image of the same shape that holds forces or deflections, or null
std::vector<contact_end> nid_contacts(const recorded_image& image, const recorded_image* positions,
                                      const recorded_image* forces);

/// The positions of all points of curves that have axes of their own.
recorded_image make_nid_positions(const nid_curve_layout& layout, const nid_channel& channel, const std::string& id);

} // namespace vldv::formats
