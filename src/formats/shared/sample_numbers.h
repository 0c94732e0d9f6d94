#pragma once
#include "base/SPMVar.h"
#include "formats/source.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace vldv::formats {

enum class byte_order { little, big };

/// Turns numbers of this order into the machine's own, in place; the block holds whole ones.
void to_native(std::span<std::byte> numbers, unsigned numberBytes, byte_order order) noexcept;

/// Converts numbers as they stand in a file; `bytes` holds `out.size()` of them.
void decode_numbers(std::span<const std::byte> bytes, SPMVarArrayType type, byte_order order,
                    std::span<double> out) noexcept;

/// Appends `count` numbers that stand from `offset` on. \return false when they are not all there
bool read_numbers(source& file, std::uint64_t offset, std::uint64_t count, SPMVarArrayType type, byte_order order,
                  std::vector<double>& out);

/// True when `count` numbers of `numberBytes` stand from `offset` on in `size` bytes. No sum or product wraps round.
bool holds_numbers(std::uint64_t size, std::uint64_t offset, std::uint64_t count, std::uint64_t numberBytes) noexcept;

/// "columns times rows take 8 bytes of the 10 that are there", since one of the counts may be damaged; empty when the
/// samples take all. \param counts  the header's fields that the samples follow from
std::string told_surplus(const std::string& counts, std::uint64_t taken, std::uint64_t there);

} // namespace vldv::formats
