#pragma once
#include "base/VLAxis.h"
#include "base/streams/byte_reader.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace vldv::formats {

constexpr std::size_t surHeaderBytes = 512;
constexpr std::uint64_t surKindAt = 18; ///< an object of a kind without a known layout is refused there
constexpr std::string_view surMagic = "DIGITAL SURF", surPackedMagic = "DSCOMPRESSED";

/// Kinds of studiable objects.
enum class sur_kind : std::int16_t {
    profile = 1,
    surface = 2,
    binary_image = 3,
    profile_series = 4,
    surface_series = 5,
    disc = 6,
    multilayer_profile = 7,
    multilayer_surface = 8,
    second_disc = 9,
    intensity_image = 10,
    intensity_surface = 11,
    rgb_image = 12,
    rgb_surface = 13,
    rgb_intensity_surface = 16,
    contour = 17,
    rgb_image_series = 18,
    spectrum = 20,
    spectral_map = 21,
};

/// Header of one object. Texts are UTF-8, units in their usual spelling; an axis steps from the object's own offset.
struct sur_object {
    bool isPacked = false;
    unsigned objects = 1; ///< in the whole file, as the first header says
    sur_kind kind = sur_kind::surface;
    std::string name, user, xName, yName, zName, spectralName;
    int acquisition = 0;
    bool hasVoids = false;
    unsigned sampleBits = 0;    ///< 16 or 32
    unsigned pointValues = 1;   ///< values at each point, above 1 for a spectral map
    std::int64_t voidValue = 0; ///< stands where nothing was measured
    unsigned width = 0, height = 0;
    VLAxis x, y, spectral;
    double zStep = 1.0, zOffset = 0.0;
    std::string zUnits;
    std::array<int, 6> time{}; ///< second, minute, hour, day, month, year
    double seconds = 0.0;      ///< that the measurement took
    std::size_t commentBytes = 0, privateBytes = 0;

    std::uint64_t values() const noexcept { return std::uint64_t{width} * height * pointValues; }
    bool isCurve() const noexcept;
    bool isMap() const noexcept { return kind == sur_kind::spectral_map || pointValues > 1; }
};

/// True when the bytes begin with one of the two magics.
bool is_sur_header(std::span<const std::byte> bytes) noexcept;

/// Reads and checks the header of an object from its 512 bytes.
base::read_result<sur_object> parse_sur_object(std::span<const std::byte> header);

} // namespace vldv::formats
