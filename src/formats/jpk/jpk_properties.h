#pragma once
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace vldv::formats {

/// A text of lines `key=value`: comments are left out, escapes resolved, values UTF-8. The first of equal keys counts.
class jpk_properties {
public:
    jpk_properties() = default;
    explicit jpk_properties(std::string_view text);

    /// Empty when there is no such key.
    const std::string& value(const std::string& key) const;
    std::optional<double> number(const std::string& key) const;
    const std::map<std::string, std::string, std::less<>>& all() const noexcept { return lines; }

    /// Replaces references: after `channel.height.lcd-info.*=2` every line of `shared` under "lcd-info.2." is read as
    /// one under "channel.height."; "force-segment-header-info.*=0" alone stands for "force-segment-header.".
    void resolve(const jpk_properties& shared);

private:
    std::map<std::string, std::string, std::less<>> lines;
};

} // namespace vldv::formats
