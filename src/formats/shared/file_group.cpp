#include "formats/shared/file_group.h"

#include "base/text.h"
#include "formats/shared/heights.h"
#include "formats/shared/left_out.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <tuple>

namespace vldv::formats {

namespace {

constexpr std::string_view channelTags[] = {"z(hgt)", "z(l_r)",         "z(sen)", "z(dem)",
                                            "z(err)", "vertical force", "phase"};

struct channel_label {
    std::string_view tag;
    const char* label;
};
constexpr channel_label channelLabels[] = {
    {"hgt", "Height"}, {"l_r", "L-R"}, {"sen", "Sens"}, {"dem", "Dem"}, {"err", "Error"}};

/// Where the first tag found begins; tags are tried in their order.
std::size_t find_channel_tag(std::string_view lowerName) noexcept
{
    for (const std::string_view tag : channelTags)
        if (const std::size_t at = lowerName.find(tag); at != std::string_view::npos) return at;
    return std::string_view::npos;
}

std::string_view extension_of(std::string_view name) noexcept
{
    const std::size_t dot = name.rfind('.');
    return dot == std::string_view::npos ? std::string_view() : name.substr(dot);
}

/// Names of the files beside `file`, itself included, that begin with `prefix` and have its extension, in order.
std::vector<std::string> find_group(source& file, const std::string& prefix)
{
    const std::string wanted = base::lower_ascii(prefix), extension = base::lower_ascii(extension_of(file.name()));
    std::vector<std::string> names;
    for (std::string& name : file.siblings()) {
        const std::string lower = base::lower_ascii(name);
        if (lower.starts_with(wanted) && extension_of(lower) == extension) names.push_back(std::move(name));
    }
    std::ranges::sort(names, {}, [](const std::string& name) { return base::lower_ascii(name); });
    return names;
}

/// The first image takes its names from the file; what the file itself calls its channel goes before the plain label
/// of a name that says nothing.
void name_images(recording& content, const std::string& fileName)
{
    const channel_file_name names = parse_channel_file_name(fileName);
    auto* image = content.items.empty() ? nullptr : std::get_if<recorded_image>(&content.items.front());
    if (!image) return;
    image->stream.set_name(names.id.c_str());
    const bool isNamed = names.label != channel_file_name().label || *image->stream.get_description() == '\0';
    if (isNamed) image->stream.set_description(names.label.c_str());
    if (names.subimage.empty()) return;
    const char* subimages[] = {names.subimage.c_str()};
    image->stream.set_subimage_names(subimages, 1);
}

base::read_result<recording> read_member(source& file, channel_file_reader read)
{
    auto content = read(file);
    if (content) name_images(*content, file.name());
    return content;
}

/// Moves all images of `part` to `whole`, with ids that are unique in it.
void append(recording& whole, recording part, std::vector<std::string>& ids)
{
    for (auto& item : part.items) {
        if (auto* image = std::get_if<recorded_image>(&item))
            image->stream.set_name(unique_id(image->stream.get_name(), ids).c_str());
        whole.items.push_back(std::move(item));
    }
    for (const std::string& each : part.warnings) add_warning(whole, each);
    whole.strings.merge(part.strings);
}

/// What the names of a group begin with, behind their extension, which no slash is part of.
std::string group_key(const std::string& lowerName, std::size_t length)
{
    return std::string(extension_of(lowerName)) + '/' + lowerName.substr(0, length);
}

struct group_start {
    std::string key;
    const std::string* leader;
};

/// Leaves those that begin with no other, the first one of each, sorted: at most one of them begins a name, and that is
/// the last one that does not come behind it.
void keep_shortest(std::vector<group_start>& starts)
{
    // Equal ones stay in the order of the names, which lie one behind the other.
    std::ranges::sort(starts, {}, [](const group_start& each) { return std::tie(each.key, each.leader); });
    std::size_t kept = 0;
    for (std::size_t i = 0; i < starts.size(); ++i)
        if (kept == 0 || !starts[i].key.starts_with(starts[kept - 1].key)) std::swap(starts[kept++], starts[i]);
    starts.resize(kept);
}

} // namespace

channel_file_name parse_channel_file_name(const std::string& fileName)
{
    channel_file_name names;
    const std::string lower = base::lower_ascii(fileName);
    const std::size_t open = lower.find("z(");
    const std::size_t close = open == std::string::npos ? open : lower.find(')', open);
    if (close != std::string::npos) {
        names.id = lower.substr(open + 2, close - open - 2);
        for (const channel_label& row : channelLabels)
            if (row.tag == names.id) names.label = row.label;
        const std::string_view behind = std::string_view(lower).substr(std::min(close + 2, lower.size()));
        if (behind.starts_with("fwd")) names.subimage = "Forward";
        if (behind.starts_with("rev")) names.subimage = "Reverse";
        return names;
    }
    const std::size_t first = lower.find('.'), last = lower.rfind('.');
    if (first != last) names.label = lower.substr(first + 1, last - first - 1);
    return names;
}

base::read_result<recording> read_file_group(source& file, channel_file_reader read)
{
    const std::size_t tag = find_channel_tag(base::lower_ascii(file.name()));
    recording whole;
    std::vector<std::string> ids, names;
    left_out missing;
    if (tag != std::string::npos) {
        whole.title = file.name().substr(0, tag);
        names = find_group(file, whole.title);
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (!file.progress(static_cast<double>(i) / static_cast<double>(names.size())))
            return base::read_error{0, "reading was cancelled"};
        const auto member = file.sibling(names[i]);
        if (!member) continue;
        if (auto content = read_member(*member, read))
            append(whole, std::move(*content), ids);
        else
            missing.add({content.error().offset, names[i] + ": " + content.error().reason});
    }
    if (!whole.items.empty()) missing.tell(whole);
    if (!whole.items.empty()) return whole;
    auto alone = read_member(file, read);
    if (!alone) return alone.error();
    append(whole, std::move(*alone), ids);
    return whole;
}

std::vector<std::string> group_leaders(const std::vector<std::string>& names)
{
    std::vector<group_start> starts;
    for (const std::string& name : names) {
        std::string lower = base::lower_ascii(name);
        const std::size_t tag = find_channel_tag(lower);
        if (tag != std::string::npos) starts.push_back({group_key(lower, tag), &name});
    }
    keep_shortest(starts);
    std::vector<std::string> leaders;
    for (const std::string& name : names) {
        const std::string key = group_key(base::lower_ascii(name), std::string::npos);
        const auto behind = std::ranges::upper_bound(starts, key, {}, &group_start::key);
        const bool isLed = behind != starts.begin() && key.starts_with(std::prev(behind)->key);
        leaders.push_back(isLed ? *std::prev(behind)->leader : name);
    }
    return leaders;
}

} // namespace vldv::formats
