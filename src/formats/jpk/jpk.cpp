#include "formats/jpk/jpk.h"

#include "formats/jpk/jpk_archive.h"
#include "formats/jpk/jpk_image.h"
#include "formats/shared/finish_recording.h"
#include "formats/shared/left_out.h"
#include "formats/shared/tiff_directory.h"

#include <algorithm>
#include <string_view>

namespace vldv::formats {

namespace {

std::string_view text_of(std::span<const std::byte> head)
{
    return {reinterpret_cast<const char*>(head.data()), head.size()};
}

/// An archive with a member, without any, or in the form for several disks.
bool is_zip(std::span<const std::byte> head)
{
    const std::string_view text = text_of(head);
    return text.starts_with("PK\3\4") || text.starts_with("PK\5\6") || text.starts_with("PK\7\x8");
}

/// The image of the whole map that newer archives hold beside the curves; one that cannot be read is left out.
void add_map_image(const jpk_archive& archive, std::vector<std::string>& ids, recording& out)
{
    for (const char* name : {"data-image.jpk-qi-image", "data-image.force"}) {
        const zip_reader::entry* entry = archive.zip.find(name);
        if (!entry) continue;
        std::vector<std::byte> bytes(static_cast<std::size_t>(entry->bytes));
        std::string problem = archive.zip.unpack(*entry, bytes);
        if (problem.empty()) {
            memory_source image(bytes, name);
            auto read = read_jpk_image(image, ids);
            if (read) {
                std::ranges::move(read->items, std::back_inserter(out.items));
                for (const std::string& each : read->warnings) add_warning(out, each);
                continue;
            }
            problem = read.error().reason;
        }
        leave_note(out, "Images left out", std::string(name) + ": " + problem);
    }
}

} // namespace

bool sniff_jpk(std::span<const std::byte> head)
{
    if (head_has_tiff_tag(head, jpkGridTag)) return true;
    if (!is_zip(head)) return false;
    constexpr std::string_view members[] = {"header.properties", "segment-header.properties", "data-image.jpk-qi-image",
                                            "data-image.force"};
    return std::any_of(std::begin(members), std::end(members),
                       [&](std::string_view member) { return text_of(head).find(member) != std::string_view::npos; });
}

bool possible_jpk(std::span<const std::byte> head) { return is_zip(head); }

base::read_result<recording> read_jpk(source& file)
{
    std::byte head[4]{};
    if (file.size() < sizeof head || !file.read(0, head)) return base::read_error{0, "the file is cut short"};
    std::vector<std::string> ids;
    if (!is_zip(head)) return read_jpk_image(file, ids);
    constexpr double headerShare = 0.2;
    const auto archive = open_jpk_archive(file, headerShare);
    if (!archive) return archive.error();
    auto result = read_jpk_curves(file, *archive, ids);
    if (result) add_map_image(*archive, ids, *result);
    return result;
}

} // namespace vldv::formats
