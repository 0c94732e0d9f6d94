#pragma once
#include <string>
#include <vector>

namespace surface {

/// A row of the statistics panel. Without a name it is a heading, whose text stands in `units`.
struct statistics_row {
    std::string name;
    double value = 0.0;
    std::string units;
    bool operator==(const statistics_row&) const = default;
};

} // namespace surface
