#include "platform/profile/profile_table.h"

#include "base/text.h"

#include <limits>

namespace vldv::platform {

namespace {

template <class T>
std::optional<T> value_as(const profile_value* value)
{
    const T* const typed = value ? std::get_if<T>(value) : nullptr;
    return typed ? std::optional<T>(*typed) : std::nullopt;
}

} // namespace

bool is_within(std::string_view section, std::string_view root)
{
    if (!section.starts_with(root)) return false;
    section.remove_prefix(root.size());
    return section.empty() || section.front() == '\\';
}

profile_table::profile_table(std::string_view file)
{
    // The first block has no name and takes the lines in front of the first section. Blocks and lines stand in
    // std::list, because the hash tables keep iterators and views of the names in them, which must outlive insertions
    // elsewhere.
    block* current = &blocks.emplace_back();
    while (!file.empty()) {
        const std::size_t end = file.find('\n');
        readLine(file.substr(0, end), current);
        file.remove_prefix(end == std::string_view::npos ? file.size() : end + 1);
    }
}

void profile_table::readLine(std::string_view bytes, block*& current)
{
    if (opens_section(bytes)) {
        current = openBlock(bytes);
        return;
    }
    // Behind a broken section line it is unknown where an entry belongs, so that it is only kept as bytes.
    line read{std::string(bytes), current->name ? read_entry_line(bytes) : std::nullopt};
    if (read.entry)
        addEntry(*current, std::move(read));
    else
        current->lines.push_back(std::move(read));
}

/// The block that the section's line opens: a new one, or that of the same name when it comes again.
profile_table::block* profile_table::openBlock(std::string_view bytes)
{
    auto name = read_section_line(bytes);
    if (name) {
        const auto known = named.find(*name);
        if (known != named.end()) return &*known->second;
    }
    block& opened = blocks.emplace_back();
    opened.bytes = bytes;
    opened.name = std::move(name);
    if (opened.name) named.emplace(*opened.name, std::prev(blocks.end()));
    return &opened;
}

void profile_table::addEntry(block& into, line&& added)
{
    const auto known = into.entries.find(added.entry->key);
    if (known != into.entries.end()) {
        line& old = *known->second; // its key stays where it is, the index looks at it
        old.entry->value = std::move(added.entry->value);
        old.bytes = std::move(added.bytes);
        return;
    }
    into.lines.push_back(std::move(added));
    const auto place = std::prev(into.lines.end());
    into.entries.emplace(place->entry->key, place);
}

std::string profile_table::text() const
{
    std::string out;
    const auto append = [&out](const std::string& bytes) {
        out += bytes;
        out += '\n';
    };
    // Bytes that were read go out as they came. Only a section or an entry that has none, as it was made or set since,
    // is written anew: comments, blank lines and foreign spellings of the other lines survive.
    for (const block& part : blocks) {
        if (!part.bytes.empty())
            append(part.bytes);
        else if (part.name)
            append(write_section_line(*part.name));
        for (const line& each : part.lines)
            append(each.entry && each.bytes.empty() ? write_entry_line(*each.entry) : each.bytes);
    }
    return out;
}

const profile_table::block* profile_table::findBlock(const std::string& section) const
{
    const auto found = named.find(section);
    return found == named.end() ? nullptr : &*found->second;
}

const profile_value* profile_table::find(const std::string& section, const std::string& key) const
{
    const block* const part = findBlock(section);
    if (!part) return nullptr;
    const auto found = part->entries.find(key);
    return found == part->entries.end() ? nullptr : &found->second->entry->value;
}

std::optional<int> profile_table::readInt(const std::string& section, const std::string& key) const
{
    const profile_value* const value = find(section, key);
    // A number that someone put in quotes counts as a number when the whole text is one and fits.
    const auto* const text = value ? std::get_if<std::string>(value) : nullptr;
    if (!text) return value_as<int>(value);
    const auto number = base::whole_integer(*text);
    using limits = std::numeric_limits<int>;
    if (!number || *number < limits::min() || *number > limits::max()) return std::nullopt;
    return static_cast<int>(*number);
}

std::optional<std::string> profile_table::readString(const std::string& section, const std::string& key) const
{
    return value_as<std::string>(find(section, key));
}

std::optional<std::vector<std::byte>> profile_table::readBinary(const std::string& section,
                                                                const std::string& key) const
{
    return value_as<std::vector<std::byte>>(find(section, key));
}

std::vector<std::string> profile_table::keys(const std::string& section) const
{
    std::vector<std::string> out;
    if (const block* const part = findBlock(section))
        for (const line& each : part->lines)
            if (each.entry) out.push_back(each.entry->key);
    return out;
}

std::vector<std::string> profile_table::sections(const std::string& prefix) const
{
    std::vector<std::string> out;
    for (const block& part : blocks)
        if (part.name && part.name->starts_with(prefix) && !part.entries.empty()) out.push_back(*part.name);
    return out;
}

profile_table::block& profile_table::blockOf(const std::string& section)
{
    const auto known = named.find(section);
    if (known != named.end()) return *known->second;
    block& made = blocks.emplace_back();
    made.name = section;
    named.emplace(*made.name, std::prev(blocks.end()));
    return made;
}

bool profile_table::set(const std::string& section, const std::string& key, const profile_value& value)
{
    const profile_value* const old = find(section, key);
    if (old && *old == value) return false;
    addEntry(blockOf(section), {{}, profile_entry{key, value}});
    return true;
}

bool profile_table::erase(const std::string& section, const std::string& key)
{
    const auto part = named.find(section);
    if (part == named.end()) return false;
    block& from = *part->second;
    const auto entry = from.entries.find(key);
    if (entry == from.entries.end()) return false;
    const auto gone = entry->second;
    from.entries.erase(entry); // before the line, which holds the key
    from.lines.erase(gone);
    if (from.lines.empty()) {
        const auto empty = part->second;
        named.erase(part);
        blocks.erase(empty);
    }
    return true;
}

bool profile_table::eraseSection(const std::string& section)
{
    bool changed = false;
    for (auto part = blocks.begin(); part != blocks.end();) {
        if (!part->name || !is_within(*part->name, section)) {
            ++part;
            continue;
        }
        named.erase(*part->name);
        part = blocks.erase(part);
        changed = true;
    }
    return changed;
}

} // namespace vldv::platform
