#pragma once
#include "formats/pictures/tiff_file.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace vldv::formats {

constexpr const char* readingCancelled = "reading was cancelled";

enum class sample_kind { natural, integer, real };

/// What the tags of a page say about its pixels, checked as far as allocations go.
struct tiff_page {
    std::uint32_t width = 0, height = 0;
    unsigned bits = 1;    ///< of a sample
    unsigned samples = 1; ///< of a pixel, alpha included
    unsigned alphaAt = 0; ///< the sample that is alpha; 0 when there is none
    sample_kind kind = sample_kind::natural;
    bool isKnownKind = true;
    unsigned photometric = 0;
    bool isSeparate = false; ///< every sample has a plane of its own
    bool isTiled = false;
    bool isBottomUp = false;                     ///< the first row is the bottom row
    double xResolution = 0.0, yResolution = 0.0; ///< pixels a metre, 0 when unknown
    std::uint64_t rowBytes = 0;                  ///< of a decoded row, of one plane when they are separate
    double progressStart = 0.0, progressShare = 1.0;

    bool isGrey() const noexcept;
    bool isPalette() const noexcept;
    bool isRgb() const noexcept;
    std::uint32_t fromTop(std::uint32_t row) const noexcept { return isBottomUp ? height - 1 - row : row; }
};

/// Decoded bytes that the pages of a file may still have: hostile pages share their pixels or claim what is not there.
struct tiff_budget {
    explicit tiff_budget(std::uint64_t fileBytes) noexcept;
    std::uint64_t plain, coded;
};

/// Reads the tags of the current page. \return an error text, or empty
std::string read_tiff_page(tiff_file& file, tiff_budget& budget, tiff_page& page);

/// Rows of a page (or of one of its planes) in the order of the file; strips and tiles are decoded once when rows are
/// asked for in order.
class tiff_rows {
public:
    tiff_rows(tiff_file& file_, const tiff_page& page_, unsigned plane_);
    /// The bytes of row `y`, or nothing when decoding failed or the user cancelled: `reason` tells.
    std::span<const std::byte> row(std::uint32_t y);
    std::string reason() const;

private:
    bool load(std::uint32_t y);
    bool loadStrip();
    bool loadTiles();

    tiff_file& file;
    const tiff_page& page;
    std::uint16_t plane;
    std::uint32_t bandRows, bandStart = 0, bandEnd = 0;
    std::vector<std::byte> band, tile;
    bool isCancelled = false;
};

} // namespace vldv::formats
