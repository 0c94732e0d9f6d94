#pragma once
#include <cstddef>
#include <functional>
#include <tiffio.h>
#include <vector>

namespace test_support {

/// One page, and how the library's writer shall store it.
struct tiff_options {
    const char* name;
    unsigned bits = 8, samples = 1, photometric = PHOTOMETRIC_MINISBLACK;
    unsigned format = SAMPLEFORMAT_UINT, compression = COMPRESSION_NONE;
    const char* mode = "wl"; ///< "wb" big-endian, "w8l" BigTIFF
    bool isSeparate = false, isTiled = false;
    unsigned orientation = ORIENTATION_TOPLEFT;
    bool hasAlpha = false;
    unsigned width = 37, height = 19;
};

/// Bits of the sample at column x of stored row y, channel s; 0 to the highest natural number of `bits`.
using sample_source = std::function<double(unsigned x, unsigned y, unsigned s)>;

/// A file of these pages, all with the same samples. `finish` may add tags to a page before it is written.
std::vector<std::byte> tiff_file_of(const std::vector<tiff_options>& pages, const sample_source& sample,
                                    const std::function<void(TIFF*)>& finish = {});

} // namespace test_support
