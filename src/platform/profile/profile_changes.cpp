#include "platform/profile/profile_changes.h"

namespace vldv::platform {

void profile_changes::set(const std::string& section, const std::string& key, const profile_value& value)
{
    // Setting a key again rewrites its earlier step: a value that changes with each drag of the mouse stays one step.
    const auto [known, isNew] = lastSet.try_emplace({section, key}, steps.end());
    if (isNew)
        known->second = steps.insert(steps.end(), {section, key, value});
    else
        known->second->value = value;
}

void profile_changes::erase(const std::string& section, const std::string& key)
{
    // An earlier set stays: it may have opened the section, in front of others that came meanwhile.
    lastSet.erase({section, key});
    steps.push_back({section, key, std::nullopt});
}

void profile_changes::eraseSection(const std::string& section)
{
    std::erase_if(lastSet, [&](const auto& known) { return is_within(known.first.first, section); });
    std::erase_if(steps, [&](const step& done) { return is_within(done.section, section); });
    steps.push_back({section, std::nullopt, std::nullopt});
}

void profile_changes::clear() noexcept
{
    steps.clear();
    lastSet.clear();
}

void profile_changes::apply(profile_table& table) const
{
    for (const step& done : steps) {
        if (!done.key)
            table.eraseSection(done.section);
        else if (done.value)
            table.set(done.section, *done.key, *done.value);
        else
            table.erase(done.section, *done.key);
    }
}

} // namespace vldv::platform
