#pragma once
#include "vldv_api.h"

/// Range of 16-bit data. Cleared: empty, with range 1.
class VLDV_API CMinMaxInfo {
public:
    CMinMaxInfo() noexcept { Clear(); }
    CMinMaxInfo(const CMinMaxInfo&) = default;
    CMinMaxInfo& operator=(const CMinMaxInfo&) = default;
    virtual ~CMinMaxInfo() = default;

    void Clear() noexcept;
    /// Widens the range by a block; a count of 0 changes nothing.
    void Adjust(const short* data, unsigned count) noexcept;
    /// Replaces the range by that of a block; a count of 0 changes nothing.
    void Readjust(const short* data, unsigned count) noexcept;

    int range; ///< maximum - minimum, or 1 when they are equal
    int maximum;
    int minimum;
};

/// Range of floating-point data. Cleared: range 1.0, maximum the lowest `double`, minimum the largest.
class VLDV_API CMinMaxDoubleInfo {
public:
    CMinMaxDoubleInfo() noexcept { Clear(); }
    CMinMaxDoubleInfo(const CMinMaxDoubleInfo&) = default;
    CMinMaxDoubleInfo& operator=(const CMinMaxDoubleInfo&) = default;
    virtual ~CMinMaxDoubleInfo() = default;

    void Clear() noexcept;
    void Adjust(const double* data, unsigned count) noexcept;
    void Readjust_d(const double* data, unsigned count) noexcept;
    void Readjust_s(const short* data, unsigned count) noexcept;

    double range; ///< maximum - minimum, or 1.0 when they are equal or not comparable
    double maximum;
    double minimum;
};
