#pragma once
#include "formats/recording.h"
#include "formats/wip/wip_project.h"

#include <string>
#include <vector>

namespace vldv::formats {

/// The images that an object makes: none with a reason, else the object's own and, before it, the places of its
/// values where these are not even. `ids` holds the ids given so far.
base::read_result<std::vector<recorded_image>> read_wip_object(source& file, const wip_project& project,
                                                               const wip_object& object, std::vector<std::string>& ids);

/// True for the classes that are read.
bool is_wip_data(const wip_object& object) noexcept;

} // namespace vldv::formats
