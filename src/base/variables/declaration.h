#pragma once
#include "base/SPMVar.h"
#include "vldv_api.h"

#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace vldv::base {

struct declared_item {
    std::string key;
    std::string label; ///< equal to the key when none is given
    bool operator==(const declared_item&) const = default;
};

/// The content of one declaration line, in plain values. docs/declarations.md tells the language.
struct declaration {
    std::string name;
    std::string label;              ///< empty: the variable is hidden
    SPMVarType type = SPM_VAR_NONE; ///< none with a label: a heading
    double minimum = -std::numeric_limits<double>::infinity();
    double maximum = std::numeric_limits<double>::infinity();
    double step = 0.0;
    std::vector<declared_item> items;
    unsigned length = 0;
    unsigned elementSize = 1;
    SPMVarArrayType elementType = SPM_ARRAY_VOID;
    std::string shape;   ///< words that follow an array's element size and type
    std::string options; ///< display and evaluation expressions as written
    bool operator==(const declaration&) const = default;
};

/// A name and a label without a type stand over the variables behind it whose names begin with that name.
inline bool is_heading(const SPMVar& variable) noexcept
{
    return variable.type == SPM_VAR_NONE && *variable.get_name() && *variable.get_description();
}
/// The name of a variable under a heading goes on behind that of the heading with "." or "_".
bool stands_under(const SPMVar& heading, const SPMVar& variable) noexcept;

/// "double" … "array"; empty for no type.
VLDV_INTERNAL_API const char* type_keyword(SPMVarType type) noexcept;

/// Never fails: what is not understood gives a declaration of type 0, with the name and label as far as they were.
/// Limits may be expressions; there is no list behind them, so that names in them read 0.
/// \param problem  receives the reason why the type is 0
VLDV_INTERNAL_API declaration parse_declaration(std::string_view text, std::string* problem = nullptr);
/// The inverse: parsing the text gives an equal declaration, for any content.
std::string write_declaration(const declaration& source);

/// The two expressions of an option text, without the blanks around them.
struct option_fields {
    std::string_view display, evaluation;
};
VLDV_INTERNAL_API option_fields split_options(std::string_view text);

/// True for an item that stands for those that a function supplies, "call_function(…)".
VLDV_INTERNAL_API bool is_function_item(const declared_item& item);
/// The items that the function of such an item returns: "(key:label)", "(name)" or plain texts, separated by commas.
/// None when it cannot be called.
std::vector<declared_item> supplied_items(const declared_item& item);

/// One enum item, `key` or `key(label)`.
declared_item parse_item(std::string_view text);

/// A text as one word of a declaration: as it stands when it is plain, else as \"…\" with special bytes as \HH.
std::string encode_word(std::string_view text);
/// Reads a word from the front of `text`, ending at a blank, and removes it with the blanks around it.
std::string take_word(std::string_view& text);

} // namespace vldv::base
