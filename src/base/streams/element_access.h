#pragma once
#include "base/SPMVar.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace vldv::base {

/// Calls `use` with a null pointer of the element's C++ type. \return false for `void` and unknown types
template <class Use>
bool with_element_type(SPMVarArrayType type, Use&& use)
{
    switch (type) {
    case SPM_ARRAY_INT8:
        use(static_cast<std::int8_t*>(nullptr));
        return true;
    case SPM_ARRAY_UINT8:
        use(static_cast<std::uint8_t*>(nullptr));
        return true;
    case SPM_ARRAY_INT16:
        use(static_cast<std::int16_t*>(nullptr));
        return true;
    case SPM_ARRAY_UINT16:
        use(static_cast<std::uint16_t*>(nullptr));
        return true;
    case SPM_ARRAY_INT32:
        use(static_cast<std::int32_t*>(nullptr));
        return true;
    case SPM_ARRAY_UINT32:
        use(static_cast<std::uint32_t*>(nullptr));
        return true;
    case SPM_ARRAY_INT64:
        use(static_cast<std::int64_t*>(nullptr));
        return true;
    case SPM_ARRAY_UINT64:
        use(static_cast<std::uint64_t*>(nullptr));
        return true;
    case SPM_ARRAY_FLOAT32:
        use(static_cast<float*>(nullptr));
        return true;
    case SPM_ARRAY_FLOAT64:
        use(static_cast<double*>(nullptr));
        return true;
    default:
        return false;
    }
}

/// A double as an element: clamped to what the type holds, NaN the lowest integer; integers must be whole already.
template <class T>
T element_from(double v) noexcept
{
    if constexpr (std::is_floating_point_v<T>) {
        if (std::isfinite(v) && std::abs(v) > static_cast<double>(std::numeric_limits<T>::max()))
            return std::copysign(std::numeric_limits<T>::max(), static_cast<T>(v > 0 ? 1 : -1));
        return static_cast<T>(v);
    } else {
        // 2^63 and 2^64 are the first doubles that do not fit; their predecessors do.
        if (!(v > static_cast<double>(std::numeric_limits<T>::min()))) return std::numeric_limits<T>::min();
        if (v >= static_cast<double>(std::numeric_limits<T>::max())) return std::numeric_limits<T>::max();
        return static_cast<T>(v);
    }
}

} // namespace vldv::base
