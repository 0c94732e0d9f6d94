#pragma once
#include "base/SPMVarList.h"
#include "vldv_api.h"

#include <string>
#include <vector>

namespace vldv::base {

/// How the field of a variable looks to the one who edits it.
struct shown_field {
    enum class kind { value, hexadecimal, path, list };
    kind what = kind::value;
    std::string filter;               ///< of a path: "name|pattern|name|pattern"
    bool saves = false;               ///< of a path: the browse button asks where to save
    std::vector<std::string> choices; ///< of a list
};

/// Whether the number is a colour, 0x00BBGGRR: a whole one that is shown in hexadecimal digits, or whose name ends in
/// "color".
VLDV_INTERNAL_API bool is_color(const SPMVarList& list, const SPMVar& variable);

VLDV_INTERNAL_API shown_field shown_field_of(const SPMVarList& list, const SPMVar& variable);

/// The text that the user sees: the evaluated value through the display expression, numbers to 15 digits, an enum's
/// label.
VLDV_INTERNAL_API std::string shown_text(const SPMVarList& list, const SPMVar& variable);

/// Stores into `variable` what the user typed over its shown text: the value whose shown form comes nearest, within the
/// limits. A display of numbers is inverted by bisection, so it has to be monotone between the limits. A hexadecimal
/// field reads its digits with or without "0x".
/// \return false, with the value as it was, for text that cannot be read or a number that the display never reaches
VLDV_INTERNAL_API bool take_shown_text(const SPMVarList& list, SPMVar& variable, const char* text);

} // namespace vldv::base
