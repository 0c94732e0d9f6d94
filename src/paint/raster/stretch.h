#pragma once
#include "paint/raster/pixel_rows.h"
#include "platform/draw/geometry.h"

#include <vector>

namespace vldv::paint {

/// Which pixels of a source make each of `size` pixels along one axis: those that it covers, or, where it covers less
/// than one, the two that it lies between. Positions are counted in 1/256 of a source pixel.
class stretched_axis {
public:
    struct taps {
        int first = 0; ///< pixel of the source
        int count = 1;
        unsigned firstWeight = 256, lastWeight = 256; ///< those between weigh 256
    };

    /// \param from_,count_  part of the source, which has `limit_` pixels   \param flips_  the last becomes the first
    stretched_axis(int from_, int count_, int limit_, int size_, bool flips_);

    /// The pixels begin … end - 1 have a source, the others lie beside it.
    int begin() const noexcept { return first; }
    int end() const noexcept { return last; }
    taps at(int index) const noexcept;
    /// The source pixel nearest to the middle.
    int nearest(int index) const noexcept;

private:
    std::int64_t from, count, limit, size;
    bool flips;
    int first = 0, last = 0;
};

/// A bitmap's part as it looks stretched to a size, made row by row.
class stretched_picture {
public:
    stretched_picture(const pixel_rows& source_, const CRect& from, CSize to, bool flipX, bool flipY, bool averages_);

    /// Chooses the part to make. \return what of it has a source
    CRect choose(const CRect& wanted);
    /// Row y of the chosen part, as 0xFFRRGGBB.
    void row(int y, std::uint32_t* out);

private:
    void meanRow(int y, std::uint32_t* out);

    pixel_rows source;
    stretched_axis columns, rows;
    bool averages;
    bool isPlain;                             ///< columns follow each other as in the source
    std::vector<stretched_axis::taps> across; ///< of the chosen columns, when it averages
    std::vector<std::ptrdiff_t> offsets;      ///< of their nearest pixels in bytes, when it does not
    std::vector<std::uint32_t> sums;          ///< weighted bytes of a row's sources
};

/// What fits the arithmetic: sizes beyond are no picture that anyone looks at.
inline constexpr int largestSource = 1 << 24, largestPicture = 1 << 28;

} // namespace vldv::paint
