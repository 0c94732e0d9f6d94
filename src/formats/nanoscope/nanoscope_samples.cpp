#include "formats/nanoscope/nanoscope_samples.h"

#include <algorithm>
#include <bit>

namespace vldv::formats {

static_assert(std::endian::native == std::endian::little, "samples are read as they stand in the file");

std::span<std::int16_t> samples_of(SPMDataStream& stream) noexcept
{
    return {static_cast<std::int16_t*>(stream.array_data()), stream.array_length()};
}

bool read_samples(source& file, std::uint64_t offset, std::span<std::int16_t> out)
{
    return file.read(offset, std::as_writable_bytes(out));
}

bool read_wide_samples(source& file, std::uint64_t offset, std::uint64_t count, std::vector<double>& out)
{
    constexpr std::uint64_t blockLength = 65536; // stays in cache between reading and converting
    std::vector<std::int32_t> block(static_cast<std::size_t>(std::min(count, blockLength)));
    out.reserve(out.size() + count);
    for (std::uint64_t done = 0; done < count;) {
        const auto part = std::span(block).first(static_cast<std::size_t>(std::min(count - done, blockLength)));
        if (!file.read(offset + done * sizeof(std::int32_t), std::as_writable_bytes(part))) return false;
        out.insert(out.end(), part.begin(), part.end());
        done += part.size();
    }
    return true;
}

recorded_image make_image_from_raw(const std::string& id, const std::string& label, const image_frame& frame,
                                   const value_scale& scale, std::span<const double> raw)
{
    const auto fits = [](double value) { return value >= -32768.0 && value <= 32767.0; };
    if (!std::all_of(raw.begin(), raw.end(), fits)) return make_image_from_values(id, label, frame, scale, raw);
    recorded_image image = make_image(id, label, frame, scale);
    std::transform(raw.begin(), raw.end(), samples_of(image.stream).begin(),
                   [](double value) { return static_cast<std::int16_t>(value); });
    return image;
}

} // namespace vldv::formats
