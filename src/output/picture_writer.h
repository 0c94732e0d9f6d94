#pragma once
#include "base/streams/byte_reader.h"
#include "vldv_api.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace vldv::output {

/// Pixels that somebody else owns, the top row first. A stride below 0 shows a bottom-up bitmap the right way up.
struct pixel_view {
    const std::byte* bits = nullptr; ///< first pixel of the top row
    int width = 0, height = 0;
    std::ptrdiff_t stride = 0; ///< bytes from a row to the one below it
    int bytesPerPixel = 3;     ///< 3: blue, green, red; 4: the same and a byte that is ignored

    const std::byte* row(int y) const noexcept { return bits + y * stride; }
    const std::byte* pixel(int x, int y) const noexcept { return row(y) + std::ptrdiff_t{x} * bytesPerPixel; }
};

enum class picture_format { png, bmp, jpeg, tiff };

struct picture_settings {
    double xPixelsPerMetre = 0.0, yPixelsPerMetre = 0.0; ///< 0: unknown
    int jpegQuality = 92;                                ///< 1 to 100; colours are never subsampled
};

/// The file, or why there is none: no pixels, more than the format holds, no memory.
using picture_bytes = base::read_result<std::vector<std::byte>>;

/// The format that the extension of a file name asks for, in any case of letters.
VLDV_INTERNAL_API std::optional<picture_format> picture_format_of(std::string_view fileName) noexcept;

/// Every format but JPEG gives back exactly the pixels that went in.
VLDV_INTERNAL_API picture_bytes encode_picture(picture_format format, const pixel_view& pixels,
                                               const picture_settings& settings = {});

/// Puts a file in place whole or not at all. \throws CFileException, with an old file of that name as it was
VLDV_INTERNAL_API void save_file_atomically(const std::filesystem::path& path, std::span<const std::byte> bytes);

} // namespace vldv::output
