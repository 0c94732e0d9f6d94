#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/source.h"

#include <string>
#include <vector>

namespace vldv::formats {

/// Reads one file of a group by itself.
using channel_file_reader = base::read_result<recording> (*)(source& file);

/// What the name of a channel's file says: "x.z(hgt)_fwd.sur" is the image "hgt", "Height", "Forward".
struct channel_file_name {
    std::string id = "img0";
    std::string label = "SPM";
    std::string subimage; ///< "Forward", "Reverse" or empty
};
channel_file_name parse_channel_file_name(const std::string& fileName);

/// Instruments that write a file for each channel name them alike up to a tag such as "z(hgt)" or "phase". A file with
/// such a tag opens all that begin like it and have its extension, in the order of their names, each channel as an
/// image of its own; the common beginning becomes the title. Files that cannot be read are left out. Without a tag,
/// and when none could be read, the file is read alone.
base::read_result<recording> read_file_group(source& file, channel_file_reader read);

/// Which of `names`, sorted names of files of one folder, stands for the group that each of them opens in: the first of
/// those whose tag comes soonest. The name itself where it is in no group.
std::vector<std::string> group_leaders(const std::vector<std::string>& names);

} // namespace vldv::formats
