#include "formats/wip/wip.h"

#include "formats/shared/finish_recording.h"
#include "formats/wip/wip_samples.h"
#include "formats/wip/wip_strings.h"

namespace vldv::formats {

bool sniff_wip(std::span<const std::byte> head) { return is_wip_head(head); }

base::read_result<recording> read_wip(source& file)
{
    left_out missing;
    const auto tree = read_wip_tree(file, missing);
    if (!tree) return tree.error();
    const wip_project project(file, *tree);
    recording result;
    std::vector<std::string> ids;
    std::string skipped;
    for (std::size_t i = 0; i < project.objects().size(); ++i) {
        const wip_object& object = project.objects()[i];
        if (!file.progress(static_cast<double>(i) / static_cast<double>(project.objects().size())))
            return base::read_error{0, "reading was cancelled"};
        if (!is_wip_data(object)) continue;
        auto images = read_wip_object(file, project, object, ids);
        if (images)
            for (recorded_image& image : *images) {
                image.strings.merge(wip_object_strings(file, project, object));
                result.items.emplace_back(std::move(image));
            }
        else
            skipped += (skipped.empty() ? "" : "; ") + object.caption + ": " + images.error().reason;
    }
    if (result.items.empty())
        return !missing.empty()
                   ? missing.first()
                   : base::read_error{0, skipped.empty() ? "holds neither an image nor a spectrum" : skipped};
    result.strings = wip_project_strings(file, *tree);
    missing.tell(result);
    if (!skipped.empty()) leave_note(result, "Skipped objects", skipped);
    return result;
}

} // namespace vldv::formats
