#include "formats/shared/wyko_names.h"

namespace vldv::formats {

bool holds_wyko_heights(const std::string& name)
{
    for (const char* known : {"RAW_DATA", "RAW DATA", "OPD", "SAMPLE_DATA", "Raw"})
        if (name == known) return true;
    return false;
}

} // namespace vldv::formats
