#pragma once
#include "base/VLAxis.h"
#include "vldv_api.h"

#include <cstdint>
#include <span>
#include <vector>

namespace vldv::document {

/// The axis that gives the same values over raw numbers that are counted the other way: raw' = -1 - raw.
VLAxis turned_axis(const VLAxis& axis);
void turn_heights(std::span<const std::int16_t> samples, std::int16_t* out) noexcept;

/// Heights of which larger samples are larger values, for all that compares samples as they are: those that are given,
/// or, where their axis has a negative step, a turned copy.
class VLDV_INTERNAL_API rising_heights {
public:
    /// The samples must outlive this. \throws std::bad_alloc
    rising_heights(std::span<const std::int16_t> given, const VLAxis& givenAxis);
    rising_heights(rising_heights&&) noexcept = default;
    rising_heights& operator=(rising_heights&&) noexcept = default;

    std::span<const std::int16_t> samples() const noexcept { return shown; }
    const VLAxis& axis() const noexcept { return shownAxis; }

private:
    std::vector<std::int16_t> turned;
    std::span<const std::int16_t> shown;
    VLAxis shownAxis;
};

} // namespace vldv::document
