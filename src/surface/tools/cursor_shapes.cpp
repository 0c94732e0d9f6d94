#include "surface/tools/cursor_shapes.h"

#include <iterator>

namespace surface {

namespace {

constexpr int firstNumber = 5001, isolineNumber = 5011; // one for each mode

/// The sign of a mode that draws.
cursor_shape mode_shape(cursor_mode mode) noexcept
{
    constexpr cursor_shape shapes[] = {
        cursor_shape::crossRectangle,     cursor_shape::crossEllipse, cursor_shape::crossSection,
        cursor_shape::crossDistance,      cursor_shape::crossAngle,   cursor_shape::crossMark,
        cursor_shape::crossCurve,         cursor_shape::crossLine,    cursor_shape::crossColumn,
        cursor_shape::crossLengthyObject, cursor_shape::crossIsoline,
    };
    const auto index = static_cast<std::size_t>(mode);
    return index < std::size(shapes) ? shapes[index] : cursor_shape::cross;
}

/// \param first  of the three pointers, for adding
tool_pointer combining(int first, combine_mode combine) noexcept
{
    constexpr cursor_shape shapes[] = {cursor_shape::crossPlus, cursor_shape::crossMinus, cursor_shape::move};
    const int index = static_cast<int>(combine) - static_cast<int>(combine_mode::add);
    return {first + index, shapes[index]};
}

} // namespace

tool_pointer mode_pointer(const selection_state& state, modifier_keys keys) noexcept
{
    const tool_pointer plain{firstNumber + static_cast<int>(state.mode), mode_shape(state.mode)};
    const combine_mode combine = state.tracking ? state.combine : combine_of(keys);
    switch (state.mode) {
    case cursor_mode::rectangle:
    case cursor_mode::ellipse:
        return combine == combine_mode::replace ? plain : combining(5034, combine);
    case cursor_mode::isoline:
        return combine == combine_mode::replace ? tool_pointer{isolineNumber, cursor_shape::crossIsoline}
                                                : combining(5037, combine);
    case cursor_mode::lengthyObject:
        return keys.control ? tool_pointer{5041, cursor_shape::crossPlus} : plain;
    case cursor_mode::includeFeatures:
        return {5046, cursor_shape::pen};
    case cursor_mode::excludeFeatures:
        return {5047, cursor_shape::eraser};
    default:
        return plain;
    }
}

combine_mode combine_of(modifier_keys keys) noexcept
{
    if (keys.control) return combine_mode::add;
    if (keys.alt) return combine_mode::subtract;
    return keys.shift ? combine_mode::move : combine_mode::replace;
}

} // namespace surface
