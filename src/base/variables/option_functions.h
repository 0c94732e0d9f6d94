#pragma once
#include "vldv_api.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace vldv::base {

/// A C function as a module exports it, whatever its type.
using any_function = void (*)();
/// `char* name(void)`, or `char* name(int, …)` when a call names it with "@d": up to four arguments.
using text_function = char* (*)();
using text_release = void (*)(char*);

/// Enters a function that declarations call as "module:name"; a second one of that name replaces the first, a null
/// function removes it. Interface thread only.
VLDV_INTERNAL_API void register_option_function(std::string_view module, std::string_view name, any_function function);

/// Calls "module:function[@d]*freeFunction" and frees the text that it returns; a null one counts as empty.
/// \param arguments  truncated to integers, for a function with "@d"; others get none
/// \return nothing when the function or the one that frees its text is not registered, or the name is malformed
std::optional<std::string> call_option_function(std::string_view target, std::span<const double> arguments);

/// The fonts of the machine as a list value, from "vldv:GetFontList*FreeSettingsString": entry 0 of `list` comes first,
/// then all others. Only entry 0 where no such function is registered.
std::string font_list(std::string_view list);

} // namespace vldv::base
