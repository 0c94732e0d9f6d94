#pragma once
#include "platform/draw/color.h"
#include <cstdint>
#include <string>
#include <vector>

namespace vldv {

// The tools that a drawing surface works with, as plain values. Numbers are those that stored options and tables use.

/// Style bits of a pen: a line style, an end, a join and a type.
enum pen_style : std::uint32_t {
    PS_SOLID = 0,
    PS_DASH = 1,
    PS_DOT = 2,
    PS_DASHDOT = 3,
    PS_DASHDOTDOT = 4,
    PS_NULL = 5, ///< draws nothing
    PS_USERSTYLE = 7,
    PS_STYLE_MASK = 0xf,

    PS_ENDCAP_ROUND = 0,
    PS_ENDCAP_SQUARE = 0x100,
    PS_ENDCAP_FLAT = 0x200,
    PS_ENDCAP_MASK = 0xf00,

    PS_JOIN_ROUND = 0,
    PS_JOIN_BEVEL = 0x1000,
    PS_JOIN_MITER = 0x2000,
    PS_JOIN_MASK = 0xf000,

    PS_COSMETIC = 0,
    PS_GEOMETRIC = 0x10000,
};

} // namespace vldv

using enum vldv::pen_style;

/// A cosmetic pen is as wide as it says in device pixels whatever the mapping, and its patterned lines are one pixel
/// wide; a geometric pen has width and pattern in logical units, with ends and joins. Gaps of the fixed patterns show
/// the background colour in opaque mode, the gaps of a user pattern never do.
struct CPen {
    std::uint32_t style = PS_SOLID;
    int width = 1; ///< 0 counts as 1 device pixel
    colorEntry color = 0;
    std::vector<std::uint32_t> pattern; ///< of PS_USERSTYLE: lengths on, off, on …; from the start of each line
    bool operator==(const CPen&) const = default;

    bool isNull() const noexcept { return (style & PS_STYLE_MASK) == PS_NULL; }
    bool isGeometric() const noexcept { return (style & PS_GEOMETRIC) != 0; }
    static CPen null() { return {.style = PS_NULL, .pattern = {}}; }
    static CPen solid(int width, colorEntry color) { return {PS_SOLID, width, color, {}}; }
    static CPen dotted(colorEntry color) { return {PS_DOT, 1, color, {}}; }
};

namespace vldv {

enum hatch_style : int {
    HS_HORIZONTAL = 0,
    HS_VERTICAL = 1,
    HS_FDIAGONAL = 2, ///< falling from left to right
    HS_BDIAGONAL = 3, ///< rising from left to right
    HS_CROSS = 4,
    HS_DIAGCROSS = 5,
};

} // namespace vldv

using enum vldv::hatch_style;

/// Lines of a hatch are one pixel wide and eight apart; what lies between shows the background in opaque mode.
struct CBrush {
    enum class fill { none, solid, hatch };
    fill kind = fill::solid;
    colorEntry color = 0xFFFFFF;
    vldv::hatch_style hatch = HS_HORIZONTAL;
    bool operator==(const CBrush&) const = default;

    static CBrush null() { return {fill::none, 0, HS_HORIZONTAL}; }
    static CBrush solid(colorEntry color) { return {fill::solid, color, HS_HORIZONTAL}; }
    static CBrush hatched(vldv::hatch_style style, colorEntry color) { return {fill::hatch, color, style}; }
};

struct CFont {
    /// Logical units. Negative: height of the characters; positive: of the line; 0: the host's usual height.
    int height = 0;
    int weight = 400; ///< 1 to 1000: 400 plain, 700 bold
    bool italic = false;
    bool fixedPitch = false;
    std::string face; ///< UTF-8; empty: the host's sans serif
    bool operator==(const CFont&) const = default;
};

/// Lines of text: tops and bottoms of the line, where the baseline runs.
struct TEXTMETRIC {
    int tmHeight = 0;          ///< ascent + descent
    int tmAscent = 0;          ///< above the baseline
    int tmDescent = 0;         ///< below it
    int tmAveCharWidth = 0;    ///< a tab is eight of them
    int tmExternalLeading = 0; ///< between two lines
};

namespace vldv {

/// Which point of a text stands at the given position: one horizontal and one vertical flag.
enum text_align : std::uint32_t {
    TA_LEFT = 0,
    TA_RIGHT = 2,
    TA_CENTER = 6,
    TA_TOP = 0,
    TA_BOTTOM = 8,
    TA_BASELINE = 24,
};

/// Flags of `DrawText`.
enum draw_text_format : std::uint32_t {
    DT_LEFT = 0,
    DT_TOP = 0,
    DT_CENTER = 1,
    DT_RIGHT = 2,
    DT_VCENTER = 4, ///< of one line
    DT_BOTTOM = 8,  ///< of one line
    DT_WORDBREAK = 0x10,
    DT_SINGLELINE = 0x20,
    DT_EXPANDTABS = 0x40, ///< stops at each eight average characters
    DT_NOCLIP = 0x100,
    DT_CALCRECT = 0x400, ///< measures only: the rectangle gets the text's size
    DT_NOPREFIX = 0x800, ///< "&" is a character like others; texts are always taken so
};

enum background_mode : int { TRANSPARENT = 1, OPAQUE = 2 };

/// How pens and brushes (P) meet what is there (D).
enum raster_op2 : int {
    R2_BLACK = 1,
    R2_NOTMERGEPEN = 2, ///< not (D or P)
    R2_MASKNOTPEN = 3,  ///< D and not P
    R2_NOTCOPYPEN = 4,  ///< not P
    R2_MASKPENNOT = 5,  ///< P and not D
    R2_NOT = 6,         ///< not D
    R2_XORPEN = 7,
    R2_NOTMASKPEN = 8, ///< not (D and P)
    R2_MASKPEN = 9,
    R2_NOTXORPEN = 10,
    R2_NOP = 11,
    R2_MERGENOTPEN = 12, ///< D or not P
    R2_COPYPEN = 13,
    R2_MERGEPENNOT = 14, ///< P or not D
    R2_MERGEPEN = 15,
    R2_WHITE = 16,
};

/// How the pixels of a blit (S) meet what is there (D) and the brush (P).
enum raster_op3 : std::uint32_t {
    BLACKNESS = 0x00000042,
    NOTSRCCOPY = 0x00330008,
    SRCERASE = 0x00440328, ///< S and not D
    DSTINVERT = 0x00550009,
    PATINVERT = 0x005A0049,
    SRCINVERT = 0x00660046,
    SRCAND = 0x008800C6,
    SRCCOPY = 0x00CC0020,
    SRCPAINT = 0x00EE0086,
    PATCOPY = 0x00F00021,
    WHITENESS = 0x00FF0062,
};

/// Which pixels a stretched blit takes.
enum stretch_mode : int {
    COLORONCOLOR = 3, ///< the nearest: data keeps its values
    HALFTONE = 4,     ///< the mean of those that a pixel covers, or a blend between neighbours
};

/// How logical units become device pixels.
enum mapping_mode : int {
    MM_TEXT = 1,        ///< one to one
    MM_ISOTROPIC = 7,   ///< window onto viewport, equal scales: the viewport shrinks on one side
    MM_ANISOTROPIC = 8, ///< window onto viewport
};

} // namespace vldv

using enum vldv::mapping_mode;
using enum vldv::stretch_mode;
using enum vldv::raster_op3;
using enum vldv::raster_op2;
using enum vldv::background_mode;
using enum vldv::draw_text_format;
using enum vldv::text_align;
