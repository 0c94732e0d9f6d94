#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/source.h"

#include <cstdint>
#include <ostream>
#include <span>
#include <string>
#include <vector>

namespace test_support {

struct colour {
    int red = 0, green = 0, blue = 0;
    bool operator==(const colour&) const = default;
};
std::ostream& operator<<(std::ostream& out, const colour& value);

using reader = base::read_result<formats::recording> (*)(formats::source&);

/// Reads bytes in memory.
base::read_result<formats::recording> read_bytes(reader read, std::span<const std::byte> bytes);
/// The colour of a pixel as shown, counted from the top left. Fails the test for a picture that cannot be valid.
colour pixel_of(const formats::picture& picture, int x, int fromTop);
/// All pixels from the top left, row by row.
std::vector<colour> pixels_of(const formats::picture& picture);
/// The file's only item; an empty one with a failed test when there is another number or kind.
formats::picture only_picture(const base::read_result<formats::recording>& result);

/// Expects that no beginning of the file shorter than `whole` bytes is read, and that each refusal has a reason.
void expect_cuts_refused(reader read, std::span<const std::byte> bytes, std::size_t whole);

/// Bytes from numbers, least significant first.
class byte_writer {
public:
    byte_writer& u8(unsigned value);
    byte_writer& u16(unsigned value);
    byte_writer& u32(std::uint32_t value);
    byte_writer& add(std::initializer_list<unsigned> values);
    byte_writer& add(const std::vector<std::byte>& values);
    std::vector<std::byte> bytes;
};

} // namespace test_support
