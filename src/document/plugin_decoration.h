#pragma once
#include <cstddef>
#include <cstdint>

// Records of drawings as they cross to modules. Plain C++, natural 64-bit layout.

/// A drawing in physical coordinates of an image. An array of these ends with a record of type 0.
struct VLPluginDecoration {
    std::uint32_t type;        ///< kind of drawing, see `decoration_type`; 0 ends the array
    std::uint32_t count;       ///< points or elements behind `data`
    std::uint32_t colorIndex;  ///< 0 red, 1 green, 2 blue, 3 white, 4 grey, 5 black, 6 `customColor`; others are black
    std::uint32_t customColor; ///< 0xBBGGRR
    const char* text;          ///< may be null
    const char* name;          ///< may be null
    void* data;                ///< points or elements; null: the record is passed over
};
static_assert(sizeof(VLPluginDecoration) == 40 && offsetof(VLPluginDecoration, text) == 16 &&
              offsetof(VLPluginDecoration, data) == 32);

namespace vldv {

enum decoration_type : std::uint32_t {
    DECORATION_END = 0,
    DECORATION_X = 1,           ///< one double a point
    DECORATION_POINTS = 2,      ///< two doubles a point: x, y
    DECORATION_POINTS_3D = 3,   ///< three doubles a point: x, y, z
    DECORATION_POLYLINE = 4,    ///< as points
    DECORATION_POLYLINE_3D = 5, ///< as points
    DECORATION_XY = 6,          ///< two doubles a point
    DECORATION_XYZ = 7,         ///< three doubles a point
    DECORATION_BLOCK = 10,      ///< `decoration_block`
    DECORATION_BITMAP = 11,     ///< `decoration_bitmap`
    DECORATION_VOLUME = 12,     ///< `decoration_volume`
};

/// Bytes at a point.
struct decoration_block {
    double x, y;
    std::uint32_t size; ///< bytes
    std::uint32_t mode;
    const void* bytes;
};
static_assert(sizeof(decoration_block) == 32 && offsetof(decoration_block, bytes) == 24);

/// A bitmap of width times height bytes between two corners.
struct decoration_bitmap {
    double x0, y0, x1, y1;
    std::uint32_t width, height;
    std::uint32_t mode;
    const void* bytes;
};
static_assert(sizeof(decoration_bitmap) == 56 && offsetof(decoration_bitmap, mode) == 40 &&
              offsetof(decoration_bitmap, bytes) == 48);

/// A block of width times height times depth bytes between two corners.
struct decoration_volume {
    double x0, y0, z0, x1, y1, z1;
    std::uint32_t width, height, depth;
    std::uint32_t mode;
    const void* bytes;
};
static_assert(sizeof(decoration_volume) == 72 && offsetof(decoration_volume, mode) == 60 &&
              offsetof(decoration_volume, bytes) == 64);

} // namespace vldv
