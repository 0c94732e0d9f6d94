#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/shared/heights.h"
#include "formats/source.h"

#include <cstdint>
#include <map>
#include <string>

namespace vldv::formats {

/// What the header of an .img file tells; the samples are 16-bit.
struct img_layout {
    std::string kind;  ///< "Burleigh 2.1"
    std::string label; ///< of the image
    unsigned width = 0, height = 0;
    std::uint64_t offset = 0;   ///< of the samples
    bool isTopFirst = false;    ///< the first row is the upper edge
    bool isMirrored = false;    ///< rows run from right to left
    bool hasLineShifts = false; ///< behind the samples a word a row: its low 4 bits count how often it was halved
    VLAxis x, y;
    value_scale scale;
    std::map<std::string, std::string> strings;
};

/// Each says what it reads, or why the file is none of its kind. `head` holds the first bytes of the file.
base::read_result<img_layout> read_burleigh(source& file, std::span<const std::byte> head);
base::read_result<img_layout> read_dme(source& file, std::span<const std::byte> head);
base::read_result<img_layout> read_sicm(source& file, std::span<const std::byte> head);
base::read_result<img_layout> read_ecs(source& file, std::span<const std::byte> head);

/// Whether the beginning of a file is one of the two kinds without a word or a number of their own at the start.
bool looks_like_sicm(std::span<const std::byte> head);
bool looks_like_ecs(std::span<const std::byte> head);

/// Six-byte floating-point numbers: an exponent biased by 129, 39 bits of mantissa, a sign.
double read_real48(base::byte_reader& in) noexcept;
/// A text behind its length in one byte; `room` bytes follow that byte.
std::string read_pascal_text(base::byte_reader& in, std::size_t room);

} // namespace vldv::formats
