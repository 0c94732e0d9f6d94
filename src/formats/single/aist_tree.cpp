#include "formats/single/aist_tree.h"

#include "base/text.h"
#include "formats/shared/fixed_text.h"
#include "formats/shared/force/directions.h"
#include "formats/shared/stream_shape.h"
#include "formats/shared/text_units.h"

#include <algorithm>

namespace vldv::formats {

namespace {

constexpr unsigned deepest = 64;
constexpr std::size_t leastNodeBytes = 9; // flag, empty name, number of children

/// Reads the primitive types of the stream, big-endian. A length that cannot be fails like a read past the end.
class stream_reader {
public:
    explicit stream_reader(std::span<const std::byte> bytes) : in(bytes) {}

    bool failed() const noexcept { return isBad || in.failed(); }
    std::size_t offset() const noexcept { return in.offset(); }
    std::size_t remaining() const noexcept { return in.remaining(); }
    bool flag() { return in.u8() != 0; }
    std::int32_t i32() { return in.big<std::int32_t>(); }
    double f64() { return in.big<double>(); }

    std::string string()
    {
        const auto length = in.big<std::uint32_t>();
        if (length == 0xFFFFFFFF) return {};
        if (length % 2 != 0) isBad = true;
        return clean_text(base::utf16_to_utf8(as_text(in.take(isBad ? 0 : length)), true));
    }

    /// A block behind its length; -1 stands for an empty one.
    std::span<const std::byte> block()
    {
        const std::int32_t length = i32();
        if (length < -1) isBad = true;
        return length <= 0 || isBad ? std::span<const std::byte>() : in.take(static_cast<std::size_t>(length));
    }

private:
    base::byte_reader in;
    bool isBad = false;
};

/// "X [um]" has the unit in brackets, "V" is one.
std::string unit_of(const std::string& text)
{
    const std::size_t open = text.find('['), close = text.find(']', open);
    if (open == std::string::npos || close == std::string::npos) return normal_unit(text);
    return normal_unit(std::string_view(text).substr(open + 1, close - open - 1));
}

/// "_Height[12]" is "Height"; "Height[Forward]" stays, since it tells the direction.
std::string plain_name(const std::string& text)
{
    std::string_view name = text;
    while (name.starts_with('_')) name.remove_prefix(1);
    if (split_direction(std::string(name)).direction != scan_direction::unknown)
        return std::string(base::trimmed(name));
    if (const std::size_t open = name.rfind('['); open != std::string_view::npos && name.ends_with(']'))
        name = name.substr(0, open);
    return std::string(base::trimmed(name));
}

class tree_parser {
public:
    explicit tree_parser(std::span<const std::byte> bytes) : in(bytes) {}

    base::read_result<aist_tree> parse()
    {
        parseNode(0);
        if (reason.empty() && in.failed()) fail("a length in the tree cannot be, or the file is cut short");
        if (reason.empty()) return std::move(tree);
        if (tree.rasters.empty() && tree.curves.empty()) return base::read_error{failedAt, reason};
        tree.missing.add({failedAt, reason + ", and what follows it"});
        return std::move(tree);
    }

private:
    void fail(const std::string& why)
    {
        if (!reason.empty()) return;
        reason = why;
        failedAt = in.offset();
    }
    bool goingOn() const noexcept { return reason.empty() && !in.failed(); }

    void parseNode(unsigned depth)
    {
        if (depth > deepest) return fail("the tree is deeper than 64 levels");
        if (in.flag()) {
            const std::string type = in.string();
            const auto payload = in.block();
            if (goingOn() && type == "raster") parseRaster(payload);
            if (goingOn() && type == "curve") parseCurve(payload);
        }
        in.string(); // name
        const std::int32_t children = in.i32();
        if (in.failed()) return;
        if (children < 0 || static_cast<std::size_t>(children) > in.remaining() / leastNodeBytes)
            return fail("a node has more children than the file has room for");
        for (std::int32_t i = 0; i < children && goingOn(); ++i) parseNode(depth + 1);
    }

    void parseRaster(std::span<const std::byte> payload)
    {
        stream_reader raster(payload);
        aist_raster found;
        raster.i32(); // id
        found.name = plain_name(raster.string());
        found.description = raster.string();
        raster.i32(); // index
        const std::int32_t columns = raster.i32(), rows = raster.i32();
        for (double* side : {&found.left, &found.right, &found.top, &found.bottom}) *side = raster.f64();
        for (std::string* units : {&found.xUnits, &found.yUnits, &found.zUnits}) *units = unit_of(raster.string());
        found.data = raster.block();
        found.mask = raster.block();
        const std::string title = "raster " + found.name + ": ";
        if (raster.failed()) return fail(title + "is cut short");
        if (columns < 1 || rows < 1 || !is_image_side(static_cast<std::uint64_t>(columns)) ||
            !is_image_side(static_cast<std::uint64_t>(rows)))
            return fail(title + "columns or rows are not above 0 or above 65536");
        found.columns = static_cast<unsigned>(columns);
        found.rows = static_cast<unsigned>(rows);
        const std::uint64_t points = std::uint64_t{found.columns} * found.rows;
        if (found.data.size() != points * 8) return fail(title + "the length of the data is not columns x rows");
        if (!found.mask.empty() && found.mask.size() != points)
            return fail(title + "the length of the mask is not columns x rows");
        if (std::ranges::all_of(found.mask, [](std::byte each) { return each == std::byte{0}; })) found.mask = {};
        tree.rasters.push_back(std::move(found));
    }

    void parseCurve(std::span<const std::byte> payload)
    {
        stream_reader curve(payload);
        aist_curve found;
        curve.i32(); // id
        found.name = plain_name(curve.string());
        found.description = curve.string();
        curve.i32(); // index
        const std::int32_t points = curve.i32();
        found.data = curve.block();
        curve.block(); // as it was shown
        found.xUnits = unit_of(curve.string());
        found.yUnits = unit_of(curve.string());
        const std::string title = "curve " + found.name + ": ";
        if (curve.failed()) return fail(title + "is cut short");
        if (points < 1 || found.data.size() != static_cast<std::uint64_t>(points) * 16)
            return fail(title + "the length of the data is not that of its points");
        found.points = static_cast<unsigned>(points);
        tree.curves.push_back(std::move(found));
    }

    stream_reader in;
    aist_tree tree;
    std::string reason;
    std::size_t failedAt = 0;
};

} // namespace

bool may_be_aist_tree(std::span<const std::byte> head) noexcept
{
    base::byte_reader in(head);
    const std::uint8_t hasData = in.u8();
    const auto length = in.big<std::uint32_t>();
    if (in.failed() || hasData > 1 || (length != 0xFFFFFFFF && (length % 2 != 0 || length > 1024))) return false;
    if (hasData == 0) return true;
    using namespace std::literals;
    const std::string_view type = as_text(in.take(length));
    return type == "\0r\0a\0s\0t\0e\0r"sv || type == "\0c\0u\0r\0v\0e"sv || type == "\0s\0e\0t\0t\0i\0n\0g\0s"sv;
}

base::read_result<aist_tree> parse_aist_tree(std::span<const std::byte> bytes)
{
    if (!may_be_aist_tree(bytes)) return base::read_error{0, "not an AIST-NT file"};
    return tree_parser(bytes).parse();
}

} // namespace vldv::formats
