#pragma once
#include "base/SPMDataStream.h"
#include "curves/figures/pairs/pair_series.h"
#include "formats/shared/void_ranges.h"
#include "vldv_api.h"

#include <cstddef>
#include <vector>

namespace vldv::curves {

/// The curves of one image over those of another: one a sub-image of Y. Where X has fewer of them they begin again, so
/// that one record of positions serves a whole series. Curves are made as they are asked for; the images must outlive
/// the source.
class VLDV_INTERNAL_API pair_source {
public:
    pair_source() = default;
    pair_source(const pair_image& x_, const pair_image& y_);

    bool isEmpty() const noexcept { return x.count == 0 || y.count == 0; }
    unsigned curves() const noexcept { return isEmpty() ? 0 : static_cast<unsigned>(y.count); }
    pair_series curve(unsigned number) const;

private:
    /// One of the two images: its curves stand one behind the other.
    struct side {
        const SPMDataStream* stream = nullptr;
        SPMDataStream converted; ///< of an image whose samples are no integers of 16 bits
        std::vector<std::size_t> lengths;
        std::vector<formats::void_range> voids;
        std::size_t step = 0, count = 0; ///< samples of a curve with its padding; curves

        const SPMDataStream& samples() const noexcept { return converted.array_data() ? converted : *stream; }
        void open(const pair_image& image);
        void values(std::size_t number, std::vector<double>& out) const;
        void markVoids(std::size_t number, std::vector<bool>& gaps) const;
    };
    side x, y;
};

} // namespace vldv::curves
