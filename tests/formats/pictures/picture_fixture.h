#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"

#include <functional>
#include <ostream>
#include <vector>

namespace test_support {

struct colour {
    int red = 0, green = 0, blue = 0;
    bool operator==(const colour&) const = default;
};
std::ostream& operator<<(std::ostream& out, const colour& value);

/// The colour of a pixel as shown, counted from the top left. Fails the test for a picture that cannot be valid.
colour pixel_of(const formats::picture& picture, int x, int fromTop);
/// All pixels from the top left, row by row.
std::vector<colour> pixels_of(const formats::picture& picture);
/// Expects a picture of this size and, within a tolerance, of these colours, counted from the top left.
void expect_pixels(const formats::picture& picture, int width, int height,
                   const std::function<colour(int x, int fromTop)>& expected, int tolerance = 0);
/// The file's only item; an empty one with a failed test when there is another number or kind.
formats::picture only_picture(const base::read_result<formats::recording>& result);

} // namespace test_support
