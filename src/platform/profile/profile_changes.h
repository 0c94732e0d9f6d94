#pragma once
#include "platform/profile/profile_table.h"

#include <list>
#include <map>

namespace vldv::platform {

/// What was done to a table since it was last stored, to be done again to another one in the same order. A value that
/// is set many times takes the room of one.
class profile_changes {
public:
    void set(const std::string& section, const std::string& key, const profile_value& value);
    void erase(const std::string& section, const std::string& key);
    void eraseSection(const std::string& section);

    bool empty() const noexcept { return steps.empty(); }
    void clear() noexcept;
    void apply(profile_table& table) const;

private:
    struct step {
        std::string section;
        std::optional<std::string> key;     ///< none: the whole section goes
        std::optional<profile_value> value; ///< none: it is erased
    };

    std::list<step> steps;
    /// By section and key: where it was set, unless it was erased behind that.
    std::map<std::pair<std::string, std::string>, std::list<step>::iterator> lastSet;
};

} // namespace vldv::platform
