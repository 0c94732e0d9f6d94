#include "surface/figures/resampling.h"

#include "base/text.h"
#include "document/StorageDoc.h"
#include "document/samples/point_counts.h"
#include "document/samples/unmeasured_samples.h"
#include "document/update_hints.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

namespace vldv::surface {

namespace {

/// A sample of the new image covers `ratio` of the old ones and lies in their middle.
void rescale(SPMDataStream::dimension& side, int length)
{
    const double ratio = static_cast<double>(side.length) / length;
    for (unsigned i = 0; i < side.get_axes_number(); ++i) {
        VLAxis axis = side.get_axis(i);
        axis.start += 0.5 * (ratio - 1.0) * axis.scale;
        axis.scale *= ratio;
        side.set_axis(i, axis);
    }
    side.length = static_cast<unsigned>(length);
}

std::string refusal(const SPMDataStream& source, const resample_choice& choice)
{
    if (source.array_type() != SPM_ARRAY_INT16 || source.get_dimensions_number() != 2 || source.array_length() == 0)
        return "Only images of 16-bit samples in two dimensions can be resampled";
    for (const auto& [name, length] : {std::pair{"Columns", choice.width}, {"Rows", choice.height}})
        if (length < 1 || length > mostSideSamples)
            return base::formatted("%s: %d is not between 1 and %d", name, length, mostSideSamples);
    return {};
}

/// New samples to which one that was not measured adds anything.
std::vector<primitives::sample_run> resampled_voids(const CStorageDoc& document, unsigned image,
                                                    const resample_choice& choice)
{
    std::vector<primitives::sample_run> out;
    const document::unmeasured_samples voids(document, image);
    const SPMDataStream& stream = document.getImage(image);
    const auto width = static_cast<int>(stream.get_dimension(0).length);
    const auto height = static_cast<int>(stream.get_dimension(1).length);
    const std::size_t size = static_cast<std::size_t>(choice.width) * static_cast<std::size_t>(choice.height);
    std::vector<std::int16_t> mask, made(size);
    for (unsigned sub = 0; sub < document.getSubImagesNumber(image) && !voids.isEmpty(); ++sub) {
        // The samples that were not measured, as an image of 0 and the largest height, go through the same resampling:
        // where anything but 0 comes out, one of them had a weight, a negative one of the cubic kernel included.
        mask.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 0);
        for (const primitives::sample_run& each : voids.of(sub))
            std::fill_n(mask.begin() + static_cast<std::ptrdiff_t>(each.first), each.count, std::int16_t{32767});
        primitives::resample_smooth({mask.data(), width, height, 2 * width},
                                    {made.data(), choice.width, choice.height, 2 * choice.width}, choice.method);
        for (std::size_t i = 0; i < size; ++i)
            if (made[i] != 0) out.push_back({sub * size + i, 1});
    }
    return primitives::joined_runs(std::move(out));
}

} // namespace

std::string resample_stream(const SPMDataStream& source, const resample_choice& choice, SPMDataStream& target)
{
    if (std::string reason = refusal(source, choice); !reason.empty()) return reason;
    const auto width = static_cast<int>(source.get_dimension(0).length);
    const auto height = static_cast<int>(source.get_dimension(1).length);
    const std::uint64_t from = std::uint64_t(width) * std::uint64_t(height);
    const std::uint64_t to = std::uint64_t(choice.width) * std::uint64_t(choice.height);
    const std::uint64_t frames = source.array_length() / from;
    if (frames * to > UINT32_MAX)
        return "Columns, Rows: " + std::to_string(frames * to) + " samples are more than an image can hold";
    SPMDataStream made = source;
    made.set_array_len(0);
    made.set_array_len(static_cast<unsigned>(frames * to));
    const auto* in = static_cast<const std::int16_t*>(source.array_data());
    auto* out = static_cast<std::int16_t*>(made.array_data());
    for (std::uint64_t frame = 0; frame < frames; ++frame, in += from, out += to)
        primitives::resample_smooth({in, width, height, 2 * width},
                                    {out, choice.width, choice.height, 2 * choice.width}, choice.method);
    rescale(made.get_dimension(0), choice.width);
    rescale(made.get_dimension(1), choice.height);
    target = std::move(made);
    return {};
}

std::string resample_image(CStorageDoc& document, unsigned image, const resample_choice& choice)
{
    SPMDataStream made;
    if (std::string reason = resample_stream(document.getImage(image), choice, made); !reason.empty()) return reason;
    const std::vector<primitives::sample_run> voids = resampled_voids(document, image, choice);
    document.pushUndo(image, true);
    if (voids.empty())
        document::state_counted_points(document, image);
    else
        document::replace_points(document, image, made.array_length(), voids);
    document.getImage(image) = std::move(made);
    document.revalidateImage(image);
    document.SetModifiedFlag(true);
    document.UpdateAllViews(nullptr, document::shape_hint(image));
    document.UpdateAllViews(nullptr, document::data_hint(image));
    return {};
}

} // namespace vldv::surface
