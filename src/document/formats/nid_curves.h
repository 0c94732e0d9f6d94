#pragma once
#include "document/formats/nid_channel.h"
#include "document/formats/point_grid.h"
#include "document/formats/recording.h"
#include "document/formats/stream_shape.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace formats {

/// Where the curves of a spectroscopy file were taken; nothing when they were not on a regular grid, or it is not told.
std::optional<point_grid> find_nid_grid(const nid_header& header, unsigned curves);

/// Where the points of one curve lie. It may have fewer than the longest.
struct nid_line {
    double start = 0.0, range = 0.0;
    unsigned points = 0;
    bool operator==(const nid_line&) const noexcept = default;
};

/// How the lines of a group of channels become a stream: one curve, curves as sub-images, or a volume.
struct nid_curve_layout {
    unsigned points = 0, lines = 0, directions = 1;
    std::optional<point_grid> grid;
    std::vector<nid_line> curves; ///< in file order: the lines of a direction, then those of the other
    VLAxis x;
    bool hasOwnAxes = false; ///< curves differ in start, range or number of points

    std::vector<extent> extents() const;
    unsigned subimages() const noexcept { return grid ? directions : directions * lines; }
    /// Which curve of the stream a curve of the file is.
    std::size_t place_of(std::size_t curve) const noexcept;
    std::vector<std::string> subimage_names(const nid_channel& first) const;
};
/// \param channels  the directions of one channel, at least one
nid_curve_layout lay_out_curves(const nid_header& header, std::span<const nid_channel* const> channels);

/// Brings curves of any element type from file order into place and gives short ones their last value as rest.
void arrange_curves(const nid_curve_layout& layout, recorded_image& image);

/// The positions of all points of curves that have axes of their own.
recorded_image make_positions(const nid_curve_layout& layout, const nid_channel& channel, const std::string& id);

} // namespace formats
