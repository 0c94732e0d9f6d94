#include "formats/wip/wip_strings.h"

#include "base/text.h"
#include "formats/shared/sample_numbers.h"

#include <cmath>

namespace vldv::formats {

namespace {

constexpr std::size_t mostStrings = 64;
constexpr std::uint64_t longestString = 4096;

/// Year, month and so on as they stand, or nothing.
std::string date_text(source& file, const wip_tag& tag)
{
    std::vector<double> numbers;
    if (!read_numbers(file, tag.start, tag.length() / 2, SPM_ARRAY_UINT16, byte_order::little, numbers)) return {};
    std::string text;
    for (const double number : numbers) text += (text.empty() ? "" : " ") + base::shortest(number);
    return text;
}

/// A text, a date or a single number; nothing for other tags and for the numbers that objects refer to each other by.
std::string plain_text(source& file, const wip_tag& tag)
{
    constexpr std::uint64_t dateBytes = 14;
    if (tag.length() > longestString) return {};
    if (tag.type == wip_tag::texts) return read_wip_text(file, &tag);
    if (tag.type == wip_tag::date) return tag.length() == dateBytes ? date_text(file, tag) : std::string();
    if (tag.name.ends_with("ID") && tag.name != "ID") return {};
    const auto numbers = read_wip_numbers(file, &tag);
    return numbers.size() == 1 && std::isfinite(numbers[0]) ? base::shortest(numbers[0]) : std::string();
}

void add_strings(source& file, const wip_tag& tag, std::map<std::string, std::string>& strings,
                 const std::string& prefix = {})
{
    for (const wip_tag& child : tag.children) {
        if (strings.size() >= mostStrings) return;
        if (const std::string text = plain_text(file, child); !text.empty()) strings.emplace(prefix + child.name, text);
    }
}

} // namespace

std::map<std::string, std::string> wip_object_strings(source& file, const wip_project& project,
                                                      const wip_object& object)
{
    std::map<std::string, std::string> strings{{"Class", object.className}};
    for (const char* name : {"XInterpretationID", "ZInterpretationID"})
        if (const wip_object* interpretation = project.referred(object, name))
            if (const double wavelength = project.number(*interpretation, "ExcitationWaveLength", 0.0);
                wavelength > 0.0 && std::isfinite(wavelength))
                strings.emplace("Excitation wavelength", base::shortest(wavelength) + " nm");
    // Its own tags and those of its base classes, of which each has a tag.
    for (const wip_tag& tag : object.data->children) add_strings(file, tag, strings);
    return strings;
}

std::map<std::string, std::string> wip_project_strings(source& file, const wip_tag& root)
{
    std::map<std::string, std::string> strings;
    add_strings(file, root, strings);
    for (const wip_tag& tag : root.children)
        if (tag.name != "Data" && tag.name != "Viewer") add_strings(file, tag, strings, tag.name + ".");
    return strings;
}

} // namespace vldv::formats
