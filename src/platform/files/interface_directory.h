#pragma once
#include "vldv_api.h"

#include <filesystem>
#include <string>

/// Where dialog layouts, label files and descriptors lie: the folder of the running program, and in it the folder of
/// the language that the variable "language" of "global_options" names, unless that is empty or `noLanguage` is set.
VLDV_API std::filesystem::path get_interface_directory(bool noLanguage);

namespace vldv::platform {

/// An interface file or folder: in the language's folder when it is there, else without language; beside the program,
/// else in `share/vldv` of the prefix that the library is installed below. The path need not exist.
std::filesystem::path find_interface_file(const std::string& name);

} // namespace vldv::platform
