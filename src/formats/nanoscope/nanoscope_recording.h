#pragma once
#include "base/streams/byte_reader.h"
#include "formats/nanoscope/nanoscope_image.h"
#include "formats/recording.h"
#include "formats/source.h"

#include <functional>
#include <string>
#include <vector>

namespace vldv::formats {

/// Images that share a stream: one, or the forward and the reverse direction.
using image_group = std::vector<nanoscope_image>;

/// Makes the image of a group, samples and all, under this id.
using group_loader = std::function<base::read_result<recorded_image>(const image_group&, const std::string& id)>;

/// Width, height and axes of a group.
image_frame frame_of(const image_group& group);

/// Groups the images, loads each group and adds the header's strings. `file` is told the progress.
base::read_result<recording> record_images(source& file, const nanoscope_header& header,
                                           std::vector<nanoscope_image> images, const group_loader& load);

/// "image 2 (Phase): ", for messages; `index` counts from 0.
std::string message_title(std::size_t index, const nanoscope_image& image);

/// Why a header without any image cannot be shown.
base::read_error no_image_error(const nanoscope_header& header);

} // namespace vldv::formats
