#include "formats/shared/sample_numbers.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstring>

namespace vldv::formats {

static_assert(std::endian::native == std::endian::little, "samples of little-endian files are read as they stand");

namespace {

template <class T>
void decode(const std::byte* bytes, bool swap, std::span<double> out) noexcept
{
    std::byte number[sizeof(T)];
    for (std::size_t i = 0; i < out.size(); ++i) {
        std::memcpy(number, bytes + i * sizeof(T), sizeof(T));
        if (swap) std::reverse(number, number + sizeof(T));
        T value;
        std::memcpy(&value, number, sizeof(T));
        out[i] = static_cast<double>(value);
    }
}

template <unsigned Bytes>
void reverse_each(std::span<std::byte> numbers) noexcept
{
    for (std::size_t i = 0; i + Bytes <= numbers.size(); i += Bytes)
        std::reverse(numbers.data() + i, numbers.data() + i + Bytes);
}

} // namespace

void to_native(std::span<std::byte> numbers, unsigned numberBytes, byte_order order) noexcept
{
    if (order == byte_order::little) return;
    if (numberBytes == 2) reverse_each<2>(numbers);
    if (numberBytes == 4) reverse_each<4>(numbers);
    if (numberBytes == 8) reverse_each<8>(numbers);
}

void decode_numbers(std::span<const std::byte> bytes, SPMVarArrayType type, byte_order order,
                    std::span<double> out) noexcept
{
    assert(bytes.size() >= out.size() * element_size(type) && "a number for each value");
    const bool swap = order == byte_order::big;
    switch (type) {
    case SPM_ARRAY_INT8:
        return decode<std::int8_t>(bytes.data(), swap, out);
    case SPM_ARRAY_UINT8:
        return decode<std::uint8_t>(bytes.data(), swap, out);
    case SPM_ARRAY_INT16:
        return decode<std::int16_t>(bytes.data(), swap, out);
    case SPM_ARRAY_UINT16:
        return decode<std::uint16_t>(bytes.data(), swap, out);
    case SPM_ARRAY_INT32:
        return decode<std::int32_t>(bytes.data(), swap, out);
    case SPM_ARRAY_UINT32:
        return decode<std::uint32_t>(bytes.data(), swap, out);
    case SPM_ARRAY_INT64:
        return decode<std::int64_t>(bytes.data(), swap, out);
    case SPM_ARRAY_UINT64:
        return decode<std::uint64_t>(bytes.data(), swap, out);
    case SPM_ARRAY_FLOAT32:
        return decode<float>(bytes.data(), swap, out);
    case SPM_ARRAY_FLOAT64:
        return decode<double>(bytes.data(), swap, out);
    default:
        std::fill(out.begin(), out.end(), 0.0);
    }
}

bool read_numbers(source& file, std::uint64_t offset, std::uint64_t count, SPMVarArrayType type, byte_order order,
                  std::vector<double>& out)
{
    constexpr std::uint64_t blockLength = 32768; // stays in cache between reading and converting
    const unsigned bytes = element_size(type);
    if (bytes == 0 || !holds_numbers(file.size(), offset, count, bytes)) return false;
    std::vector<std::byte> block(static_cast<std::size_t>(std::min(count, blockLength) * bytes));
    const std::size_t start = out.size();
    out.resize(start + static_cast<std::size_t>(count));
    for (std::uint64_t done = 0; done < count;) {
        const auto piece = static_cast<std::size_t>(std::min(count - done, blockLength));
        const auto part = std::span(block).first(piece * bytes);
        if (!file.read(offset + done * bytes, part)) return false;
        decode_numbers(part, type, order, std::span(out).subspan(start + static_cast<std::size_t>(done), piece));
        done += piece;
    }
    return true;
}

bool holds_numbers(std::uint64_t size, std::uint64_t offset, std::uint64_t count, std::uint64_t numberBytes) noexcept
{
    return offset <= size && numberBytes != 0 && count <= (size - offset) / numberBytes;
}

std::string told_surplus(const std::string& counts, std::uint64_t taken, std::uint64_t there)
{
    if (taken >= there) return {};
    return counts + " take " + std::to_string(taken) + " bytes of the " + std::to_string(there) + " that are there";
}

} // namespace vldv::formats
