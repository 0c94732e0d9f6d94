#include "base/text.h"
#include "base/units.h"
#include "formats/mdt/mdt_array.h"
#include "formats/shared/sample_numbers.h"
#include "formats/shared/stream_shape.h"

#include <algorithm>
#include <array>

// Arrays of three dimensions: a spectrum at each point of a plane.

namespace vldv::formats {

namespace {

constexpr std::size_t blockBytes = 1u << 20; // in cache between reading and sorting

bool is_plane_name(const mdt_quantity& dimension)
{
    const std::string name = base::lower_ascii(dimension.name);
    return name == "x" || name == "y";
}

bool is_length(const mdt_quantity& dimension) { return units_convertable(dimension.units.c_str(), "m") > 0; }

/// The dimension that `isOfPlane` holds false for, when it is the only one.
template <class Test>
std::optional<std::size_t> odd_one(const std::vector<mdt_quantity>& dimensions, Test isOfPlane)
{
    std::optional<std::size_t> odd;
    for (std::size_t i = 0; i < dimensions.size(); ++i) {
        if (isOfPlane(dimensions[i])) continue;
        if (odd) return std::nullopt;
        odd = i;
    }
    return odd;
}

/// Which dimension runs along a spectrum: names tell, then units (wavelengths are lengths, too), else the fastest.
std::size_t spectral_dimension(const std::vector<mdt_quantity>& dimensions)
{
    const auto byName = odd_one(dimensions, is_plane_name);
    return byName ? *byName : odd_one(dimensions, is_length).value_or(0);
}

/// Where the cells of the file belong when the spectrum runs fastest.
struct cell_order {
    std::array<std::uint64_t, 3> counts{}, steps{}; ///< of the file's dimensions; samples between neighbours

    cell_order(const std::vector<mdt_quantity>& dimensions, const std::array<std::size_t, 3>& order)
    {
        std::uint64_t step = 1;
        for (const std::size_t each : order) {
            counts[each] = dimensions[each].count;
            steps[each] = step;
            step *= counts[each];
        }
    }
    std::uint64_t placeOf(std::uint64_t cell) const noexcept
    {
        return cell % counts[0] * steps[0] + cell / counts[0] % counts[1] * steps[1] +
               cell / counts[0] / counts[1] * steps[2];
    }
};

/// Takes the values of a block of cells apart, each to the place that it has in its volume.
void sort_cells(std::span<const std::byte> cells, std::size_t cellBytes, std::uint64_t first, const cell_order& order,
                std::vector<recorded_image>& volumes)
{
    std::size_t from = 0; // of the value in its cell
    for (recorded_image& volume : volumes) {
        const std::size_t bytes = element_size(volume.stream.array_type());
        auto* const out = static_cast<std::byte*>(volume.stream.array_data());
        for (std::size_t i = 0; i < cells.size() / cellBytes; ++i)
            std::copy_n(cells.data() + i * cellBytes + from, bytes, out + order.placeOf(first + i) * bytes);
        from += bytes;
    }
}

std::vector<recorded_image> make_volumes(const mdt_described_array& array, const std::array<std::size_t, 3>& order)
{
    std::vector<extent> extents;
    for (const std::size_t each : order)
        extents.push_back({static_cast<unsigned>(array.dimensions[each].count), array.dimensions[each].axis()});
    std::vector<recorded_image> volumes;
    for (const mdt_quantity& value : array.measured) {
        std::string label = array.label("Spectra");
        if (array.measured.size() > 1) label += " " + value.name;
        volumes.push_back(make_samples(label, label, extents, 1, value.meaning(), value.element()));
        volumes.back().strings.insert(array.strings.begin(), array.strings.end());
    }
    return volumes;
}

} // namespace

base::read_result<mdt_content> read_mdt_cube(source& file, const mdt_described_array& array)
{
    const std::size_t spectral = spectral_dimension(array.dimensions);
    const std::array<std::size_t, 3> order{spectral, spectral == 0 ? 1u : 0u, spectral == 2 ? 1u : 2u};
    std::vector<recorded_image> volumes = make_volumes(array, order);
    const cell_order places(array.dimensions, order);
    const std::uint64_t cells = volumes.front().stream.array_length();
    const auto cellBytes = static_cast<std::size_t>(array.cellBytes());
    const std::uint64_t atOnce = std::max<std::size_t>(1, blockBytes / cellBytes);
    std::vector<std::byte> block(static_cast<std::size_t>(std::min(cells, atOnce)) * cellBytes);
    for (std::uint64_t done = 0; done < cells; done += atOnce) {
        if (!file.progress(array.done)) return base::read_error{array.offset, "reading was cancelled"};
        const auto part = std::span(block).first(static_cast<std::size_t>(std::min(cells - done, atOnce)) * cellBytes);
        if (!file.read(array.offset + done * cellBytes, part))
            return base::read_error{array.offset, "samples cannot be read"};
        sort_cells(part, cellBytes, done, places, volumes);
    }
    mdt_content content;
    for (recorded_image& volume : volumes) {
        settle_samples(volume);
        content.emplace_back(std::move(volume));
    }
    return content;
}

} // namespace vldv::formats
