#pragma once
#include "base/streams/byte_reader.h"
#include "formats/jpk/jpk_channel.h"
#include "formats/recording.h"
#include "formats/shared/zip_reader.h"
#include "formats/source.h"

#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace vldv::formats {

/// Problems of one kind: how many there are, and the first in words.
struct counted_problem {
    std::size_t count = 0;
    std::string first;
    void add(const std::string& text)
    {
        if (count++ == 0) first = text;
    }
    void add(const counted_problem& others)
    {
        if (count == 0) first = others.first;
        count += others.count;
    }
};

/// One segment of one curve: its channels, and where they lie in the archive.
struct jpk_segment {
    std::string folder; ///< with "/" at its end
    std::shared_ptr<const std::vector<jpk_channel>> channels;
    std::string name;
    double duration = 0.0;      ///< s
    std::uint64_t points = 0;   ///< as the header states them
    bool isTimeDamaged = false; ///< duration or points are stated but no numbers above 0
};

/// One curve; `number` counts in a map, a single curve is 0.
struct jpk_curve {
    std::uint64_t number = 0;
    std::vector<jpk_segment> segments;
};

/// The points of a map.
struct jpk_grid {
    unsigned columns = 0, rows = 0; ///< 0 for a single curve
    bool isBackAndForth = false;
    VLAxis x, y;
    std::vector<std::string> doubts{}; ///< what is to be said of the grid

    std::uint64_t points() const noexcept { return std::uint64_t{columns} * rows; }
    /// Place of a curve in rows from the bottom.
    std::uint64_t place(std::uint64_t number) const noexcept;
};

/// A force archive with all its headers read, its samples still packed.
struct jpk_archive {
    zip_reader zip;
    jpk_properties header, shared;
    std::vector<jpk_properties>
        segments;                  ///< headers of the first curve's segments, references resolved, to keep as texts
    std::vector<jpk_curve> curves; ///< by their number
    std::string places;            ///< of a map's curves, "number: x y" in m, a line each
    jpk_grid grid;
    counted_problem lostHeaders{}; ///< of segments, which then have no name and no channels
    counted_problem lostPlaces{};  ///< headers of a map's curves, or the places in them
};

/// \param done, share  the part of the progress that this takes
base::read_result<jpk_archive> open_jpk_archive(source& file, double share);

/// Points of a channel in a segment, from the size of its member, or of the others for computed data; 0 without any.
std::uint64_t jpk_points(const jpk_archive& archive, const jpk_segment& segment, const jpk_channel& channel);

/// Makes the images of all channels. \param ids  in use already
base::read_result<recording> read_jpk_curves(source& file, const jpk_archive& archive, std::vector<std::string>& ids);

} // namespace vldv::formats
