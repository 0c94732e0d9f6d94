#include "formats/nanoscope/nanoscope_recording.h"

#include "base/text.h"
#include "formats/nanoscope/nanoscope_scale.h"
#include "formats/nanoscope/nanoscope_strings.h"
#include "formats/shared/force/directions.h"
#include "formats/shared/stream_shape.h"

#include <algorithm>

namespace vldv::formats {

namespace {

/// Forward goes first; the group stands where its first image stood.
std::vector<image_group> group_directions(std::vector<nanoscope_image> images)
{
    std::vector<image_group> groups;
    for (nanoscope_image& image : images) {
        const auto partner = std::find_if(groups.begin(), groups.end(), [&](const image_group& group) {
            return group.size() == 1 && are_two_directions(group.front(), image);
        });
        if (partner == groups.end())
            groups.push_back({std::move(image)});
        else
            partner->insert(image.isTrace ? partner->begin() : partner->end(), std::move(image));
    }
    return groups;
}

void finish_image(const nanoscope_header& header, const image_group& group, recorded_image& image)
{
    for (const nanoscope_image& part : group) {
        add_section_strings(image.strings, *part.section);
        if (!part.doubt.empty()) image.notes.push_back(part.doubt);
    }
    if (std::string doubt = nanoscope_sensitivity_doubt(header, *group.front().section); !doubt.empty())
        image.notes.push_back(std::move(doubt));
    add_shared_strings(image.strings, header);
    name_axis_fields(image, {{"Scan Size or Slow Axis Size", "X Offset"}, {"Scan Size or Slow Axis Size", "Y Offset"}});
    if (group.front().volts) add_calibration(image, group.front().scale, *group.front().volts);
    const auto direction = group.front().isTrace     ? scan_direction::forward
                           : group.front().isRetrace ? scan_direction::reverse
                                                     : scan_direction::unknown;
    name_directions(image, plane_group(group.size()), direction);
}

} // namespace

image_frame frame_of(const image_group& group)
{
    const nanoscope_image& first = group.front();
    return {first.width, first.height, static_cast<unsigned>(group.size()), first.x, first.y};
}

base::read_result<recording> record_images(source& file, const nanoscope_header& header,
                                           std::vector<nanoscope_image> images, const group_loader& load)
{
    recording result;
    result.strings = document_strings(header);
    const std::vector<image_group> groups = group_directions(std::move(images));
    std::vector<std::string> ids;
    for (std::size_t i = 0; i < groups.size(); ++i) {
        if (!file.progress(static_cast<double>(i) / static_cast<double>(groups.size())))
            return base::read_error{0, "reading was cancelled"};
        auto image = load(groups[i], unique_id(groups[i].front().channel, ids));
        if (!image) return image.error();
        finish_image(header, groups[i], *image);
        result.items.emplace_back(std::move(*image));
    }
    return result;
}

std::string message_title(std::size_t index, const nanoscope_image& image)
{
    return "image " + std::to_string(index + 1) + " (" + image.channel + "): ";
}

base::read_error no_image_error(const nanoscope_header& header)
{
    const bool hasForce = header.count(nanoscope_list::force_image) != 0;
    return {0, hasForce ? "force curves as text are not supported"
                        : "no image list in the header, which is damaged or empty"};
}

} // namespace vldv::formats
