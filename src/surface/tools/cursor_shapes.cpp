#include "surface/tools/cursor_shapes.h"

#include <iterator>

namespace surface {

namespace {

int mode_cursor(const selection_state& state, modifier_keys keys) noexcept
{
    const int plain = cursorFirstMode + static_cast<int>(state.mode);
    const combine_mode combine = state.tracking ? state.combine : combine_of(keys);
    const int combining = static_cast<int>(combine) - static_cast<int>(combine_mode::add);
    switch (state.mode) {
    case cursor_mode::rectangle:
    case cursor_mode::ellipse:
        return combine == combine_mode::replace ? plain : cursorAdd + combining;
    case cursor_mode::isoline:
        return combine == combine_mode::replace ? static_cast<int>(cursorIsoline) : cursorIsolineAdd + combining;
    case cursor_mode::lengthyObject:
        return keys.control ? static_cast<int>(cursorContinueObject) : plain;
    case cursor_mode::includeFeatures:
        return cursorInclude;
    case cursor_mode::excludeFeatures:
        return cursorExclude;
    default:
        return plain;
    }
}

/// The sign of a mode that draws; include and exclude have pointers of their own.
cursor_shape mode_shape(int mode) noexcept
{
    constexpr cursor_shape shapes[] = {
        cursor_shape::crossRectangle,     cursor_shape::crossEllipse, cursor_shape::crossSection,
        cursor_shape::crossDistance,      cursor_shape::crossAngle,   cursor_shape::crossMark,
        cursor_shape::crossCurve,         cursor_shape::crossLine,    cursor_shape::crossColumn,
        cursor_shape::crossLengthyObject, cursor_shape::crossIsoline,
    };
    const auto index = static_cast<std::size_t>(mode);
    return mode >= 0 && index < std::size(shapes) ? shapes[index] : cursor_shape::cross;
}

} // namespace

combine_mode combine_of(modifier_keys keys) noexcept
{
    if (keys.control) return combine_mode::add;
    if (keys.alt) return combine_mode::subtract;
    return keys.shift ? combine_mode::move : combine_mode::replace;
}

int cursor_of(const selection_state& state, modifier_keys keys) noexcept
{
    switch (state.hotAction) {
    case hot_action::sectionVertex:
        return cursorSectionVertex;
    case hot_action::moveMark:
        return cursorMoveMark;
    case hot_action::deleteMark:
        return cursorDeleteMark;
    case hot_action::moveVertex:
        return cursorMoveVertex;
    case hot_action::deleteVertex:
        return keys.control ? cursorDeleteRest : cursorDeleteVertex;
    case hot_action::volumeMark:
        return cursorVolumeMark;
    case hot_action::insertVertex:
        return cursorInsertVertex;
    case hot_action::activateCurve:
        return cursorActivateCurve;
    case hot_action::decoration:
        return cursorDecoration;
    case hot_action::pan:
        return cursorPan;
    case hot_action::moveSection:
        return cursorMoveSection;
    case hot_action::none:
        break;
    }
    return mode_cursor(state, keys);
}

cursor_shape shape_of(int number) noexcept
{
    switch (number) {
    case cursorSectionVertex:
    case cursorMoveMark:
    case cursorMoveVertex:
    case cursorVolumeMark:
    case cursorMoveSection:
    case cursorMove:
    case cursorIsolineMove:
        return cursor_shape::move;
    case cursorDeleteMark:
    case cursorDeleteVertex:
    case cursorDeleteRest:
    case cursorExclude:
        return cursor_shape::eraser;
    case cursorAdd:
    case cursorIsolineAdd:
    case cursorInsertVertex:
    case cursorContinueObject:
        return cursor_shape::crossPlus;
    case cursorSubtract:
    case cursorIsolineSubtract:
        return cursor_shape::crossMinus;
    case cursorActivateCurve:
    case cursorDecoration:
        return cursor_shape::hand;
    case cursorPan:
        return cursor_shape::grab;
    case cursorInclude:
        return cursor_shape::pen;
    default:
        return mode_shape(number - cursorFirstMode);
    }
}

} // namespace surface
