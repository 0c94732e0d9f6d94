#pragma once
#include "base/VLAxis.h"
#include "platform/draw/geometry.h"
#include "primitives/map/color_map.h"
#include "primitives/map/range.h"
#include "view/scale/ColorTable.h"
#include "view/scale/scale_state.h"

#include <cstdint>

/// From 16-bit samples to pixels through a scale. The result is defined by `render_reference`, step by step over whole
/// arrays; `render_image` gives the same bits with one pass over the samples.
namespace vldv::view {

/// One drawing. Rows of the picture are in the order of the source.
struct render_request {
    void* bits = nullptr; ///< blue, green, red per pixel; see `rgb32`
    const std::int16_t* source = nullptr;
    int sourceStep = 0; ///< bytes from row to row
    IppiSize size;      ///< samples, neither may be 0
    const VLAxis* zAxis = nullptr;
    bool absolute = false; ///< fixed mode: the window starts at fixedStart, else at relativeMeanOffset above the lowest
    bool highlight = false; ///< draws the difference to the next sample of the row, in mode 1
    RECT* roi = nullptr;    ///< samples that give the global range; put in order and within the image
    bool rgb32 = true;      ///< 4 bytes a pixel, the fourth left as it is; else 3 and rows padded to 4 bytes
    int* lowOut = nullptr;  ///< the raw limits that were used
    int* highOut = nullptr;
    /// The global range where it is not that of the source, which may be a reduced picture of more samples; null: it
    /// is. Slopes are always those of the source.
    const primitives::height_range* range = nullptr;
};

/// Draws; a fixed window that does not suit the data is replaced in `state`. \throws std::runtime_error when a
/// temporary cannot be had, before it touches the state or a pixel
void render_image(scale_state& state, const color_table& table, const render_request& request);
/// What `render_image` draws, by the definition and slowly; it may have replaced the window when its last temporary
/// fails.
void render_reference(scale_state& state, const color_table& table, const render_request& request);

// What both are made of.

/// Colours of the 256 bytes. Byte 255 is the mean of the two last planes, halves up.
primitives::color_lookup make_lookup(const color_table& table, bool inverse);
/// Puts a rectangle's sides within the image and in order.
void normalize_roi(RECT& roi, IppiSize size) noexcept;
/// Raw limits to draw with.
struct raw_window {
    int low, high;
};
/// The fixed window in raw numbers; repaired in `state` when it does not suit data between `range`'s limits.
raw_window fixed_window(scale_state& state, const VLAxis& zAxis, primitives::height_range range, bool absolute);
/// Bytes of a row of the picture.
std::size_t picture_stride(int width, bool rgb32) noexcept;

/// The temporaries of a drawing; their numbers stand in the message of a failed allocation. `render_image` needs less
/// than the definition and keeps the number of what a temporary stands for.
enum temporary_position : int {
    planesPosition = 753,     ///< colours of the bytes
    floatsPosition = 767,     ///< samples as floats; `render_image`: a row, for flattened rows only
    bytesPosition = 769,      ///< bytes of the samples; `render_image`: a row
    borderedPosition = 796,   ///< samples with their borders repeated; the definition only
    derivativePosition = 803, ///< differences between neighbours; `render_image`: a row
    channelsPosition = 956,   ///< three channels before they become four; the definition only
};
/// Memory for a temporary, aligned to 64 bytes. \throws std::runtime_error naming the position
void* allocate_temporary(std::size_t bytes, temporary_position position);
void free_temporary(void* block) noexcept;
/// Where the memory comes from; tests replace it. Null gives the usual one back.
void set_temporary_allocator(void* (*allocate)(std::size_t bytes)) noexcept;

/// A temporary array of plain numbers, not initialised.
template <class T>
class temporary_array {
public:
    temporary_array(std::size_t count, temporary_position position)
        : block(static_cast<T*>(allocate_temporary(count * sizeof(T), position)))
    {
    }
    temporary_array(const temporary_array&) = delete;
    temporary_array& operator=(const temporary_array&) = delete;
    ~temporary_array() { free_temporary(block); }
    T* data() const noexcept { return block; }

private:
    T* block;
};

} // namespace vldv::view
