#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/source.h"

#include <cstddef>
#include <span>

namespace vldv::formats {

/// RHK SPM32 files: pages of images and curves. Behind the first page, one that cannot be read ends the file; the
/// string "Unread pages" says why. Files of the name that are another program's have no layout that is public.
base::read_result<recording> read_sm2(source& file);

bool sniff_sm2(std::span<const std::byte> head);
/// Any file: the reader tells what cannot be opened.
bool possible_sm2(std::span<const std::byte> head);

} // namespace vldv::formats
