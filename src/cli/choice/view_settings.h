#pragma once
#include <span>
#include <string>

class CDCView;

namespace vldv::cli {

/// What is wrong with the form of "NAME=VALUE", or empty.
std::string setting_problem(const std::string& setting);

/// Sets options of a view by their declared names, one after the other.
/// \return empty, or why one of them cannot be set: a name that it does not have, with those that are near, or a value
/// that the option does not take
std::string apply_settings(CDCView& view, std::span<const std::string> settings);

} // namespace vldv::cli
