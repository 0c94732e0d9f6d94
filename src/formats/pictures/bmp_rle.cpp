#include "formats/pictures/bmp_rle.h"

#include "base/streams/byte_reader.h"
#include "base/text.h"
#include "formats/pictures/dib.h"

#include <cassert>

namespace vldv::formats {

namespace {

/// The place where the next pixel goes, counted from the bottom left.
class pen {
public:
    explicit pen(picture& out_)
        : out(out_),
          width(static_cast<std::uint64_t>(out_.header.biWidth)),
          height(static_cast<std::uint64_t>(out_.header.biHeight)),
          isNibbles(out_.header.biBitCount == 4)
    {
    }
    bool hasRoom(std::uint64_t count) const noexcept { return y < height && count <= width - x; }
    bool isDone() const noexcept { return y >= height; }
    std::uint64_t row() const noexcept { return y; }
    void put(unsigned index) noexcept
    {
        const auto row = row_from_top(out, height - 1 - y);
        if (isNibbles)
            row[x / 2] |= static_cast<std::byte>(x % 2 == 0 ? index << 4 : index);
        else
            row[x] = static_cast<std::byte>(index);
        ++x;
    }
    void nextRow() noexcept { x = 0, ++y; }
    /// \return false when this leaves the picture
    bool move(std::uint64_t right, std::uint64_t up) noexcept
    {
        if (right > width - x || up > height - y) return false;
        x += right, y += up;
        return true;
    }

private:
    picture& out;
    std::uint64_t width, height, x = 0, y = 0;
    bool isNibbles;
};

/// Pixel `i` of a pair of nibbles that repeats, or of a byte that does.
unsigned index_of(unsigned byte, unsigned i, bool isNibbles) noexcept
{
    if (!isNibbles) return byte;
    return i % 2 == 0 ? byte >> 4 : byte & 15;
}

} // namespace

std::string decode_bmp_rle(std::span<const std::byte> code, picture& out)
{
    enum : unsigned { endOfRow = 0, endOfPicture = 1, skip = 2 };
    const bool isNibbles = out.header.biBitCount == 4;
    assert(isNibbles || out.header.biBitCount == 8);
    base::byte_reader in(code);
    pen pen(out);
    const auto beyond = [&] {
        return base::formatted("run-length code: row %llu from the bottom is left",
                               static_cast<unsigned long long>(pen.row()));
    };
    while (!pen.isDone()) {
        const unsigned count = in.u8(), value = in.u8();
        if (in.failed()) return "run-length code: cut short";
        if (count != 0) {
            if (!pen.hasRoom(count)) return beyond();
            for (unsigned i = 0; i < count; ++i) pen.put(index_of(value, i, isNibbles));
        } else if (value == endOfRow) {
            pen.nextRow();
        } else if (value == endOfPicture) {
            break;
        } else if (value == skip) {
            const unsigned right = in.u8(), up = in.u8();
            if (!pen.move(right, up)) return beyond();
        } else { // `value` pixels as they are, on a 16-bit boundary
            const auto bytes = in.take(isNibbles ? (value + 1) / 2 : value);
            in.skip(bytes.size() % 2);
            if (bytes.empty() || in.failed()) return "run-length code: cut short";
            if (!pen.hasRoom(value)) return beyond();
            for (unsigned i = 0; i < value; ++i)
                pen.put(index_of(std::to_integer<unsigned>(bytes[isNibbles ? i / 2 : i]), i, isNibbles));
        }
    }
    return {};
}

} // namespace vldv::formats
