#include "surface/figures/image_crop.h"

#include <cstring>

namespace vldv::surface {

namespace {

SPMDataStream::dimension cropped(const SPMDataStream::dimension& source, int first, int length)
{
    SPMDataStream::dimension part = source;
    part.length = static_cast<unsigned>(length);
    for (unsigned i = 0; i < part.get_axes_number(); ++i) {
        VLAxis axis = part.get_axis(i);
        // The part keeps its place: its first sample has the position that it had in the whole.
        axis.start = axis.at(first);
        part.set_axis(i, axis);
    }
    return part;
}

} // namespace

bool write_crop(SPMDataStream& target, const SPMDataStream& source, const CRect& bounds)
{
    if (source.get_dimensions_number() != 2 || !source.array_data() || !target.is_array()) return false;
    const CSize whole{static_cast<int>(source.get_dimension(0).length),
                      static_cast<int>(source.get_dimension(1).length)};
    CRect part;
    if (!part.IntersectRect(bounds, CRect({0, 0}, whole))) return false;
    const std::size_t sample = source.array_element_size(), row = static_cast<std::size_t>(whole.cx) * sample;
    const std::size_t frame = row * static_cast<std::size_t>(whole.cy);
    // Sub-images follow one another, and each is cropped alike.
    const std::size_t frames = source.data_size() / frame, partRow = static_cast<std::size_t>(part.Width()) * sample;
    if (target.array_element_size() != sample) return false;

    const bool isReshaped = target.get_dimensions_number() != 2 ||
                            target.get_dimension(0).length != static_cast<unsigned>(part.Width()) ||
                            target.get_dimension(1).length != static_cast<unsigned>(part.Height());
    target.set_array_len(static_cast<unsigned>(frames * static_cast<std::size_t>(part.Width()) *
                                               static_cast<std::size_t>(part.Height())));
    target.set_dimension(0, cropped(source.get_dimension(0), part.left, part.Width()));
    target.set_dimension(1, cropped(source.get_dimension(1), part.top, part.Height()));
    const auto* const from = static_cast<const char*>(source.array_data());
    auto* to = static_cast<char*>(target.array_data());
    for (std::size_t i = 0; i < frames; ++i)
        for (int y = part.top; y < part.bottom; ++y, to += partRow)
            std::memcpy(
                to, from + i * frame + static_cast<std::size_t>(y) * row + static_cast<std::size_t>(part.left) * sample,
                partRow);
    return isReshaped;
}

} // namespace vldv::surface
