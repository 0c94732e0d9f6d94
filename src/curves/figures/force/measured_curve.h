#pragma once
#include "base/VLAxis.h"
#include "curves/figures/force/force_curve_stats.h"
#include "vldv_api.h"

#include <cstdint>
#include <span>
#include <vector>

namespace vldv::curves {

/// A curve of samples as its force is analysed: from the first that was measured to the last. Samples are numbered in
/// the whole curve throughout, and so are the lines.
class VLDV_INTERNAL_API measured_curve {
public:
    /// \param gaps  which samples were not measured; empty when all were
    measured_curve(std::span<const std::int16_t> raw, const VLAxis& values, const std::vector<bool>& gaps);

    /// Nothing was measured.
    bool isEmpty() const noexcept { return values.empty(); }
    /// Replaces all of `stats` by the lines of contact and free stretch.
    void findLines(double zeroThreshold, double slantThreshold, force_curve_stats& stats) const;
    /// Replaces its minima by those between these lines. \param window  samples on either side
    void findMinima(int window, force_curve_stats& stats) const;
    void findValleys(force_curve_stats& stats) const;
    /// The smallest value above the zero line.
    double minimum(const force_curve_stats& stats) const noexcept;

private:
    int count() const noexcept { return static_cast<int>(values.size()); }
    /// Calls `use` while the samples of `stats` are numbered from the first one that was measured.
    template <class Use>
    void fromFirst(force_curve_stats& stats, Use use) const;

    int first = 0;
    std::vector<double> values; ///< physical
    std::vector<bool> voids;    ///< among them; empty for none
};

} // namespace vldv::curves
