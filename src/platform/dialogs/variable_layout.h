#pragma once
#include "platform/draw/geometry.h"

#include <istream>
#include <optional>
#include <string>
#include <vector>

namespace vldv::platform {

/// A button of a variable dialog. `name` holds "&" in front of its access key.
struct layout_button {
    enum class kind { ok, cancel, user };
    kind what = kind::user;
    RECT place;        ///< dialog units
    std::string id;    ///< of a user button: what is reported
    std::string name;  ///< empty for a standard button with its usual text
    std::string tip{}; ///< what it does, shown while the pointer rests on it; may be empty
};

/// How the dialog that edits a list of variables is laid out, in dialog units: a quarter of the average character's
/// width and an eighth of its height.
struct variable_layout {
    std::string title; ///< empty: none
    RECT grid;
    std::string nameHeading, valueHeading; ///< of the grid's two columns; empty: none
    std::vector<layout_button> buttons;    ///< in order
};

/// Reads a layout: root `varlist` with `defaultvarlist`, `userbutton` and `button`; other elements are passed over.
/// \param problem  receives the reason when it cannot be used
std::optional<variable_layout> parse_variable_layout(std::istream& in, std::string* problem = nullptr);

/// A layout of the string table.
variable_layout built_in_layout(unsigned id);

/// The layout in the interface file, or the built-in one when there is none, it is broken or something else.
/// \param builtIn  number of a layout in the string table
variable_layout load_variable_layout(const std::string& file, unsigned builtIn);

constexpr unsigned saveFilesLayout = 4998, optionsLayout = 4999, settingsLayout = 5000, recoveryLayout = 5001;

} // namespace vldv::platform
