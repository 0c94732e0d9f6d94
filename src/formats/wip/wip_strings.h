#pragma once
#include "formats/wip/wip_project.h"

#include <map>
#include <string>

namespace vldv::formats {

/// What the tags of an object say in texts, dates and single numbers: under their names, with "Class", and
/// "Excitation wavelength" of its interpretation. Dates are the numbers that stand in the file.
std::map<std::string, std::string> wip_object_strings(source& file, const wip_project& project,
                                                      const wip_object& object);

/// What the tags of a project itself say, outside of its data: "SystemInformation.SystemID".
std::map<std::string, std::string> wip_project_strings(source& file, const wip_tag& root);

} // namespace vldv::formats
