#pragma once
#include "platform/profile/profile_line.h"

#include <list>
#include <unordered_map>

namespace vldv::platform {

/// The values of a profile by section and key, and every other line of its file in its place. Sections and the keys in
/// them keep the order in which they came; all lookups are by hash.
class profile_table {
public:
    profile_table() = default;
    /// Any bytes are a profile. A section that comes twice is one; of a key that comes twice the last value counts.
    explicit profile_table(std::string_view file);
    profile_table(profile_table&&) = default;
    profile_table& operator=(profile_table&&) = default;

    /// The file: lines that were read and not changed since are the same bytes.
    std::string text() const;

    /// Null when there is none. Valid until the value is set or erased.
    const profile_value* find(const std::string& section, const std::string& key) const;
    std::optional<int> readInt(const std::string& section, const std::string& key) const; ///< also a text that is one
    std::optional<std::string> readString(const std::string& section, const std::string& key) const;
    std::optional<std::vector<std::byte>> readBinary(const std::string& section, const std::string& key) const;
    std::vector<std::string> keys(const std::string& section) const;
    /// Sections that hold values and whose names begin with `prefix`.
    std::vector<std::string> sections(const std::string& prefix) const;

    // These tell whether anything changed.

    /// A new key comes last in its section, a new section last of all; others keep their place.
    bool set(const std::string& section, const std::string& key, const profile_value& value);
    /// A section goes with its last line.
    bool erase(const std::string& section, const std::string& key);
    /// Erases the section and all below it, with the lines in them that are no values.
    bool eraseSection(const std::string& section);

private:
    struct line {
        std::string bytes; ///< as read; empty for an entry that was set
        std::optional<profile_entry> entry;
    };
    /// A section's line and those up to the next; without a name in front of the first or behind a broken one.
    struct block {
        std::optional<std::string> name;
        std::string bytes; ///< of the section's line as read
        std::list<line> lines;
        std::unordered_map<std::string_view, std::list<line>::iterator> entries; ///< keys are views of the lines'
    };

    const block* findBlock(const std::string& section) const;
    block& blockOf(const std::string& section);
    void readLine(std::string_view bytes, block*& current);
    block* openBlock(std::string_view bytes);
    static void addEntry(block& into, line&& added);

    std::list<block> blocks;
    std::unordered_map<std::string_view, std::list<block>::iterator> named; ///< keys are views of the blocks'
};

/// True for the section itself and those below it, as "A\B" is below "A".
bool is_within(std::string_view section, std::string_view root);

} // namespace vldv::platform
