#pragma once
#include <filesystem>
#include <string>

/// Where dialog layouts, label files and descriptors lie: the folder of the running program, and in it the folder of
/// the language that the variable "language" of "global_options" names, unless that is empty or `noLanguage` is set.
std::filesystem::path get_interface_directory(bool noLanguage);

namespace platform {

/// An interface file: in the language's folder when it is there, else without language. The path need not exist.
std::filesystem::path find_interface_file(const std::string& name);

} // namespace platform
