#pragma once
#include "base/SPMDataStream.h"

namespace vldv::view {

/// Gives `target` name, label, value axes and sub-image names of `source`, without its shape and samples.
inline void copy_outline(SPMDataStream& target, const SPMDataStream& source)
{
    target.Init(source.get_name(), source.get_description(), SPM_VAR_ARRAY, 0u, source.array_element_size());
    target.set_array_type(source.array_type());
    target.values = source.values;
    const std::vector<smart_string>& names = source.subimage_names();
    target.set_subimage_names(names.data(), static_cast<unsigned>(names.size()));
}

} // namespace vldv::view
