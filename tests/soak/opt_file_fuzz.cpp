// Any text as an option file: each section is written back as it was read, the others stay as they were.
#include "platform/dialogs/options_file.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

using namespace vldv;

namespace {

/// The first section of a name counts.
bool is_first(const std::vector<platform::options_section>& sections, const platform::options_section& section)
{
    return &*std::ranges::find(sections, section.name, &platform::options_section::name) == &section;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    const std::vector<platform::options_section> sections = platform::parse_options(text);
    for (std::size_t i = 0; i < std::min<std::size_t>(sections.size(), 8); ++i) {
        if (!is_first(sections, sections[i])) continue;
        if (platform::parse_options(platform::replace_options(text, sections[i])) != sections) std::abort();
    }
    // What the text says as one value comes back beside it.
    const platform::options_section whole{text, {{text, text}, {"", text}}};
    const auto is = platform::parse_options(platform::replace_options({}, whole));
    if (is.size() != 1 || is.front() != whole) std::abort();
    return 0;
}
