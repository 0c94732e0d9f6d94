#pragma once
#include "formats/jpk/jpk_archive.h"

namespace vldv::formats {

/// Where the curves of an archive go in the images.
struct jpk_layout {
    std::vector<std::uint64_t> places; ///< of each curve of the archive, in rows from the bottom
    unsigned columns = 0, rows = 0;    ///< 0: curves stand as sub-images one after another
    VLAxis x, y;
    std::size_t segments = 0; ///< most of a curve

    std::uint64_t curves() const noexcept { return columns ? std::uint64_t{columns} * rows : places.size(); }
};

/// Where the samples of a channel lie in a segment of a curve.
struct jpk_channel_part {
    const jpk_segment* segment = nullptr;
    const jpk_channel* channel = nullptr;
    std::uint64_t points = 0;
};

/// All parts of a channel: [segment * curves + place], those that are missing are empty.
struct jpk_channel_parts {
    std::string name;
    std::vector<jpk_channel_part> parts;
    std::uint64_t longest = 0, samples = 0;
    const jpk_channel* first = nullptr;
    bool sameEncoding = true, sameSlots = true;
    std::string units; ///< that all parts are shown in
};

/// What is wrong with channels, by their names.
struct jpk_problems {
    std::map<std::string, std::string> leftOut;     ///< why nothing of a channel is shown
    std::map<std::string, counted_problem> parts;   ///< segments of curves that hold nothing for a channel
    std::map<std::string, std::string> conversions; ///< names of the calibrations that cannot be used
};

/// On the grid, on the measured part of it when the rest would be mostly padding, or one curve after another.
jpk_layout jpk_layout_of(const jpk_archive& archive);

/// What only an archive made to do harm holds, or empty: sizes that its bytes do not justify.
std::string unlikely_jpk_archive(source& file, const jpk_archive& archive, const jpk_layout& layout);

/// The channels in the order in which they occur. \param problems  receives what is not shown of them
std::vector<jpk_channel_parts> collect_jpk_parts(const jpk_archive& archive, const jpk_layout& layout,
                                                 jpk_problems& problems);

} // namespace vldv::formats
