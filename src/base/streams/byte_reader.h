#pragma once
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace vldv::base {

/// Where and why bytes were refused. `reason` names the field; the caller adds the file.
struct read_error {
    std::uint64_t offset = 0;
    std::string reason;
};

/// A whole value or the reason why there is none.
template <class T>
class read_result {
public:
    read_result(T value) : content(std::move(value)) {}
    read_result(read_error error_) : content(std::move(error_)) {}
    explicit operator bool() const noexcept { return content.index() == 0; }
    T& operator*() noexcept { return std::get<0>(content); }
    const T& operator*() const noexcept { return std::get<0>(content); }
    T* operator->() noexcept { return &std::get<0>(content); }
    const T* operator->() const noexcept { return &std::get<0>(content); }
    const read_error& error() const noexcept { return std::get<1>(content); }

private:
    std::variant<T, read_error> content;
};

/// Walks bytes that nobody vouches for. A read past the end gives zeros and sets `failed()` for good.
class byte_reader {
public:
    explicit byte_reader(std::span<const std::byte> bytes_) noexcept : bytes(bytes_) {}

    std::size_t offset() const noexcept { return position; }
    std::size_t remaining() const noexcept { return bytes.size() - position; }
    bool failed() const noexcept { return hasFailed; }

    void seek(std::size_t target) noexcept
    {
        if (target > bytes.size())
            hasFailed = true;
        else
            position = target;
    }
    void skip(std::size_t count) noexcept { (void)take(count); }
    /// The next `count` bytes, or an empty span and failure.
    std::span<const std::byte> take(std::size_t count) noexcept
    {
        if (count > remaining()) {
            hasFailed = true;
            position = bytes.size();
            return {};
        }
        const auto piece = bytes.subspan(position, count);
        position += count;
        return piece;
    }
    /// True when exactly this text comes next; it is skipped then and otherwise left.
    bool tag(std::string_view text) noexcept
    {
        if (text.size() > remaining() || std::memcmp(bytes.data() + position, text.data(), text.size()) != 0)
            return false;
        position += text.size();
        return true;
    }
    template <class T>
    T little() noexcept
    {
        return read<T, std::endian::little>();
    }
    template <class T>
    T big() noexcept
    {
        return read<T, std::endian::big>();
    }
    std::uint8_t u8() noexcept { return little<std::uint8_t>(); }
    std::uint16_t u16() noexcept { return little<std::uint16_t>(); }
    std::int16_t i16() noexcept { return little<std::int16_t>(); }
    std::uint32_t u32() noexcept { return little<std::uint32_t>(); }
    std::int32_t i32() noexcept { return little<std::int32_t>(); }
    std::uint64_t u64() noexcept { return little<std::uint64_t>(); }
    float f32() noexcept { return little<float>(); }
    double f64() noexcept { return little<double>(); }

private:
    template <class T, std::endian Order>
    T read() noexcept
    {
        T value{};
        const auto piece = take(sizeof(T));
        if (piece.empty()) return value;
        auto* out = reinterpret_cast<std::byte*>(&value);
        for (std::size_t i = 0; i < sizeof(T); ++i)
            out[Order == std::endian::native ? i : sizeof(T) - 1 - i] = piece[i];
        return value;
    }

    std::span<const std::byte> bytes;
    std::size_t position = 0;
    bool hasFailed = false;
};

} // namespace vldv::base
