#pragma once
#include <cstddef>
#include <cstdint>
#include <span>

/// What the bytes of an operation alone cost on this machine: loops that move them and do nothing else.
namespace vldv::bench {

/// Reads every sample with the widest loads there are. \return something that depends on all of them
std::int64_t read_all(std::span<const std::int16_t> samples);
/// Smallest and largest by the widest vectors there are, without a care for lengths: a multiple of 128 samples.
std::int64_t plain_range(std::span<const std::int16_t> samples);
/// Reads 2 bytes and streams 4 for each sample, past the caches where the machine can; `out` aligned to 64 bytes, the
/// number of samples a multiple of 32.
void stream_pixels(std::span<const std::int16_t> samples, std::uint8_t* out);

} // namespace vldv::bench
