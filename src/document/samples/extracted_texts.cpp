#include "document/samples/extracted_texts.h"

#include "document/StorageDoc.h"
#include "formats/shared/force/curve_lengths.h"

#include <algorithm>
#include <string>

namespace vldv::document {

namespace {

// The volume has the sides (columns, rows, points) where the image has (points, columns, rows), and as many sub-images.
bool is_volume_of(const SPMDataStream& image, const SPMDataStream& volume) noexcept
{
    if (&image == &volume || image.get_dimensions_number() != 3 || volume.get_dimensions_number() != 3) return false;
    const auto length = [](const SPMDataStream& stream, unsigned side) { return stream.get_dimension(side).length; };
    return length(image, 0) == length(volume, 2) && length(image, 1) == length(volume, 0) &&
           length(image, 2) == length(volume, 1) && image.array_length() == volume.array_length();
}

/// How a text of void samples begins.
std::string head_of(std::size_t samples) { return "of " + std::to_string(samples) + ":"; }

} // namespace

extracted_texts::extracted_texts(const CStorageDoc& source, unsigned image, const SPMDataStream& volume)
{
    const SPMDataStream& stream = source.getImage(image);
    if (!is_volume_of(stream, volume)) return;
    points = stream.get_dimension(0).length;
    columns = stream.get_dimension(1).length;
    cells = columns * stream.get_dimension(2).length;
    if (points == 0 || cells == 0) return;
    subimages = stream.array_length() / (points * cells);
    lengths = formats::curve_lengths(stream, source.getString(formats::curveLengthsKey, image));
    if (std::ranges::all_of(lengths, [this](std::size_t each) { return each == points; })) lengths.clear();
    voids = formats::void_ranges(stream, source.getString(formats::voidRangesKey, image));
}

void extracted_texts::addTo(CStorageDoc& target, unsigned image, unsigned x, unsigned y) const
{
    const std::size_t cell = y * columns + x;
    if (!lengths.empty()) addLengths(target, image, cell);
    if (!voids.empty()) addVoids(target, image, cell);
}

void extracted_texts::addLengths(CStorageDoc& target, unsigned image, std::size_t cell) const
{
    std::string text = target.getString(formats::curveLengthsKey, image);
    for (std::size_t sub = 0; sub < subimages; ++sub)
        text += (text.empty() ? "" : " ") + std::to_string(lengths[sub * cells + cell]);
    target.setString(formats::curveLengthsKey, text.c_str(), image);
}

void extracted_texts::addVoids(CStorageDoc& target, unsigned image, std::size_t cell) const
{
    // The curve has been appended already: the text told of `before` samples and tells of all of them now.
    const std::size_t samples = target.getImage(image).array_length(), before = samples - subimages * points;
    const std::string old = target.getString(formats::voidRangesKey, image), oldHead = head_of(before);
    std::string ranges = old.starts_with(oldHead) ? old.substr(oldHead.size()) : std::string();
    for (std::size_t sub = 0; sub < subimages; ++sub) {
        const std::size_t first = (sub * cells + cell) * points, end = first + points, to = before + sub * points;
        // The ranges ascend, so that the first one that reaches into this curve is found by bisection.
        auto each =
            std::ranges::partition_point(voids, [&](const auto& one) { return one.first + one.count <= first; });
        for (; each != voids.end() && each->first < end; ++each) {
            const std::size_t from = std::max<std::size_t>(each->first, first) - first;
            const std::size_t last = std::min<std::size_t>(each->first + each->count, end) - first - 1;
            ranges += " " + std::to_string(to + from) + "-" + std::to_string(to + last);
        }
    }
    // Also without a new range: the text holds for one count of samples only.
    if (!ranges.empty()) target.setString(formats::voidRangesKey, (head_of(samples) + ranges).c_str(), image);
}

} // namespace vldv::document
