#pragma once
#include "base/byte_reader.h"
#include "document/formats/recording.h"

#include <string>
#include <utility>
#include <vector>

namespace formats {

/// Tells the user something of what was read: as a warning, and as a line of the text "\Reader note".
inline void add_warning(recording& out, const std::string& text)
{
    std::string& all = out.strings["\\Reader note"];
    all += (all.empty() ? "" : "\n") + text;
    out.warnings.push_back(text);
}

/// Parts of a file that cannot be read, as a rule because the file is cut short: what is whole is shown all the same,
/// and a warning names each part that is not. When nothing is whole, the first reason is why the file is refused.
class left_out {
public:
    void add(base::read_error why) { reasons.push_back(std::move(why)); }
    bool empty() const noexcept { return reasons.empty(); }
    const base::read_error& first() const { return reasons.front(); }
    void tell(recording& out) const
    {
        for (const base::read_error& each : reasons) add_warning(out, "left out: " + each.reason);
    }

private:
    std::vector<base::read_error> reasons;
};

} // namespace formats
