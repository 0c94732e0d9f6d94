#pragma once
#include "platform/app/keys.h"
#include "surface/figures/selection_state.h"

namespace surface {

/// Numbers of the pointers over a surface.
enum cursor_number : int {
    cursorFirstMode = 5001, ///< and one for each further mode
    cursorIsoline = 5011,
    cursorSectionVertex = 5014,
    cursorMoveMark = 5015,
    cursorDeleteMark = 5016,
    cursorMoveVertex = 5017,
    cursorDeleteVertex = 5018,
    cursorVolumeMark = 5019,
    cursorInsertVertex = 5020,
    cursorAdd = 5034, ///< to a rectangle or ellipse
    cursorSubtract = 5035,
    cursorMove = 5036,
    cursorIsolineAdd = 5037,
    cursorIsolineSubtract = 5038,
    cursorIsolineMove = 5039,
    cursorActivateCurve = 5040,
    cursorContinueObject = 5041,
    cursorDeleteRest = 5042,
    cursorDecoration = 5043,
    cursorPan = 5044,
    cursorMoveSection = 5045,
    cursorInclude = 5046,
    cursorExclude = 5047,
};

/// Which keys are down.
struct modifier_keys {
    bool control = false, alt = false, shift = false;
};

/// How a new shape joins the region with these keys: Ctrl before Alt before Shift.
combine_mode combine_of(modifier_keys keys) noexcept;
/// The pointer that tells what a press does; in a drag of a region, what is done to it.
int cursor_of(const selection_state& state, modifier_keys keys) noexcept;
/// How the host draws it.
cursor_shape shape_of(int number) noexcept;

} // namespace surface
