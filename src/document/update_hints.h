#pragma once
#include <cstdint>

/// What `UpdateAllViews` carries.
namespace vldv::document {

/// What happened; families of views have codes of their own above these.
enum hint_code : std::uint32_t {
    hintNewData = 0,
    hintNewSize = 1,
    hintDataChanged = 2,
    hintAxesChanged = 3,
    hintScaleChanged = 4,
    hintBringToFront = 5,
    hintRedraw = 6,
    hintChangeSubimage = 8,
    hintSectionChanged = 9, ///< the object is the section's view
    hintClearMarks = 10,
    hintAddMark = 11,     ///< the object is its point, samples
    hintShowText = 12,    ///< the object is a measurement
    hintShowPoint = 13,   ///< what a view shows of the image moves to where this point is in sight, samples
    hintDrawingPart = 14, ///< what is drawn over this rectangle of the image changed, samples
};
/// What surfaces and tables tell the view that enumerates features. The object is a point of the image, but for
/// `hintChooseMetric`, whose metric stands in place of the image.
enum feature_hint : std::uint32_t {
    hintChooseMetric = 0x1D,
    hintMarkRemoved = 0x1E,
    hintIncludePress = 0x1F,
    hintIncludeDrag = 0x20,
    hintIncludeRelease = 0x21,
    hintExcludePress = 0x22,
    hintExcludeDrag = 0x23,
    hintExcludeRelease = 0x24,
    hintMarkSet = 0x25,
};
/// A hint in its parts: the code is the low byte of the number that travels, the next one is not 0 where views
/// reload, and the image stands in the upper half.
struct hint {
    std::uint32_t code = hintNewData;
    unsigned image = 0; ///< below 65536
    bool reloads = false;

    constexpr std::uint32_t packed() const noexcept { return image << 16 | (reloads ? 0x100u : 0u) | code; }
    static constexpr hint unpacked(std::uint32_t bits) noexcept
    {
        return {bits & 0xffu, bits >> 16, (bits >> 8 & 0xffu) != 0};
    }
};

/// The parts of `hintAxesChanged`, each of 8 bits above the code.
struct axis_change {
    unsigned dimension = 0; ///< `unsigned(-1)` for a value axis
    unsigned image = 0, axis = 0;

    constexpr std::uint32_t packed() const noexcept
    {
        return dimension << 24 | (image & 0xffu) << 16 | (axis & 0xffu) << 8 | hintAxesChanged;
    }
    /// Whether such a hint is of an image, as far as its 8 bits tell.
    static constexpr bool isOf(std::uint32_t bits, unsigned image_) noexcept
    {
        return (bits >> 16 & 0xffu) == (image_ & 0xffu);
    }
};

/// The shape of the image changed: views rebuild their geometry.
constexpr std::uint32_t shape_hint(unsigned image) noexcept { return hint{hintNewSize, image}.packed(); }
/// The data of the image changed: views reload and redraw.
constexpr std::uint32_t data_hint(unsigned image) noexcept { return hint{hintDataChanged, image, true}.packed(); }
/// What is drawn over the image changed: views redraw.
constexpr std::uint32_t drawing_hint(unsigned image) noexcept { return hint{hintDataChanged, image}.packed(); }
/// An axis changed, see `axis_change`.
constexpr std::uint32_t axis_hint(unsigned dimension, unsigned image, unsigned axis) noexcept
{
    return axis_change{dimension, image, axis}.packed();
}

} // namespace vldv::document
