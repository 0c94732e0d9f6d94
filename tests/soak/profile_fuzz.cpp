// Any bytes as a profile: what is read is read again from what is written, and changes touch nothing else.
#include "platform/profile/profile_changes.h"

#include <cstdint>
#include <cstdlib>

using namespace vldv;

namespace {

void expect(bool holds)
{
    if (!holds) std::abort();
}

/// Every value of `table` is in `other` too.
void expect_values(const platform::profile_table& table, const platform::profile_table& other)
{
    expect(table.sections("") == other.sections(""));
    for (const std::string& section : table.sections("")) {
        const auto keys = table.keys(section);
        expect(keys == other.keys(section));
        for (const std::string& key : keys) {
            expect(*table.find(section, key) == *other.find(section, key));
            platform::profile_entry entry{key, *table.find(section, key)};
            const auto again = platform::read_entry_line(platform::write_entry_line(entry));
            expect(again && again->key == key && again->value == entry.value);
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const platform::profile_table table(bytes);
    const std::string text = table.text();
    platform::profile_table again(text);
    expect_values(table, again);
    expect(again.text() == text);

    // The bytes as a section, a key and a value of their own, which come and go without a trace.
    const std::string name = "fuzz" + bytes;
    platform::profile_changes coming, going;
    coming.set(name, bytes, bytes);
    coming.apply(again);
    const platform::profile_table grown(again.text());
    expect(grown.readString(name, bytes) == bytes);
    going.erase(name, bytes);
    going.apply(again);
    if (table.keys(name).empty()) expect(again.text() == text);
    return 0;
}
