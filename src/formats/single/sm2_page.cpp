#include "formats/single/sm2_page.h"

#include "base/text.h"
#include "formats/shared/fixed_text.h"
#include "formats/shared/stated_number.h"
#include "formats/shared/stream_shape.h"
#include "formats/shared/text_units.h"

#include <cmath>
#include <limits>
#include <vector>

namespace vldv::formats {

namespace {

constexpr std::string_view magic = "STiMage 3.1";
constexpr std::size_t fieldBytes = 32;

// Fields, each of 32 bytes but the comment.
constexpr std::size_t pageAt = 0x20, xAt = 0x40, yAt = 0x60, zAt = 0x80, skewAt = 0xA0, biasAt = 0xC0, scanAt = 0xE0,
                      idAt = 0x100, labelAt = 0x140, commentAt = 0x160;

std::string field_text(std::string_view header, std::size_t offset, std::size_t bytes = fieldBytes)
{
    return header_text(header.substr(offset, bytes));
}

/// Numbers of a field behind its name, and the text that follows them.
struct field_numbers {
    std::vector<double> numbers;
    std::string rest;

    bool isEmpty() const noexcept { return numbers.empty() && rest.empty(); }
    double number(std::size_t index) const { return index < numbers.size() ? numbers[index] : 0.0; }
    /// 0 for what is no count.
    std::uint64_t count(std::size_t index) const
    {
        const double value = number(index);
        return value >= 1.0 && value <= std::numeric_limits<std::uint32_t>::max() ? static_cast<std::uint64_t>(value)
                                                                                  : 0;
    }
};

field_numbers parse_field(std::string_view header, std::size_t offset, std::string_view name = {})
{
    const std::string text = field_text(header, offset);
    std::string_view left = text;
    if (left.starts_with(name)) left.remove_prefix(name.size());
    field_numbers field;
    for (double number = 0.0; take_number(left, number);) field.numbers.push_back(number);
    field.rest = base::trimmed(left);
    return field;
}

/// A radical sign of the old code page stands for a square root, "N/sec" for counts.
std::string page_units(const std::string& text)
{
    constexpr std::string_view perRoot = "/\u00FBHz";
    if (text == "N/sec") return "counts/s";
    if (text.ends_with(perRoot)) return text.substr(0, text.size() - perRoot.size()) + "/sqrt(Hz)";
    return normal_unit(text);
}

const char* kind_name(std::uint64_t kind) noexcept
{
    switch (kind) {
    case 1:
        return "Topography";
    case 2:
        return "Current";
    case 4:
        return "Force";
    case 5:
        return "Signal";
    case 10:
        return "I-V";
    case 18:
        return "I-z";
    default:
        return "Page";
    }
}

/// Images have magnitudes as scales, curves keep the sign: they may run backwards.
VLAxis page_axis(const field_numbers& field, bool isImage)
{
    if (field.isEmpty()) return {};
    const double step = isImage ? std::fabs(field.number(0)) : field.number(0);
    return VLAxis(field.number(1), step, page_units(field.rest).c_str());
}

value_scale page_scale(const field_numbers& field, bool isImage)
{
    if (field.isEmpty()) return {};
    const double step = isImage ? std::fabs(field.number(0)) : field.number(0);
    return {step, field.number(1), page_units(field.rest), "Z scale, offset and unit"};
}

/// \return a reason why the page cannot be shown, or an empty text
std::string read_shape(const field_numbers& field, sm2_page& page)
{
    constexpr SPMVarArrayType types[] = {SPM_ARRAY_FLOAT32, SPM_ARRAY_INT16, SPM_ARRAY_INT32, SPM_ARRAY_INT8};
    if (field.numbers.size() < 7) return "page field holds fewer than seven numbers";
    const double pageType = field.number(0), dataType = field.number(1);
    if (pageType != 0.0 && pageType != 1.0 && pageType != 3.0) return "page type is not known";
    if (!(dataType >= 0.0 && dataType <= 3.0)) return "data type is not known";
    page.isImage = pageType == 0.0;
    page.kind = field.count(6);
    page.type = types[static_cast<std::size_t>(dataType)];
    const std::uint64_t columns = field.count(3), rows = field.count(4);
    if (columns == 0 || rows == 0) return "columns or rows are not above 0";
    if (!is_image_side(rows) || (page.isImage && !is_image_side(columns))) return "columns or rows are above 65536";
    page.columns = static_cast<unsigned>(columns);
    page.rows = static_cast<unsigned>(rows);
    page.dataBytes = std::max(field.count(5), page.samples() * element_size(page.type));
    return {};
}

void add_string(sm2_page& page, const char* key, const std::string& value)
{
    if (!value.empty()) page.strings.emplace(key, value);
}

void read_scan(const field_numbers& scan, sm2_page& page)
{
    constexpr const char* names[] = {"right", "left", "up", "down"};
    if (scan.numbers.empty()) return;
    const double direction = scan.number(0);
    if (direction >= 0.0 && direction <= 3.0)
        add_string(page, "\\Scan direction", names[static_cast<std::size_t>(direction)]);
    if (direction == 0.0) page.direction = scan_direction::forward;
    if (direction == 1.0) page.direction = scan_direction::reverse;
    if (scan.numbers.size() > 1) add_string(page, "Scan period", base::general(scan.number(1), 10));
}

/// Some programs write their own XML over label and comment, or over the comment alone.
void read_texts(std::string_view header, sm2_page& page)
{
    const auto isOverwritten = [&](std::size_t offset) { return header.substr(offset).starts_with("\r\n<?"); };
    if (!isOverwritten(labelAt)) {
        page.label = field_text(header, labelAt);
        if (!isOverwritten(commentAt))
            add_string(page, "Comment", field_text(header, commentAt, header.size() - commentAt));
    }
    if (page.label.empty()) page.label = kind_name(page.kind);
    add_string(page, "\\Date", header_text(header.substr(magic.size(), fieldBytes - magic.size())));
    add_string(page, "Skew and angle", field_text(header, skewAt));
    add_string(page, "Current and bias", field_text(header, biasAt));
}

} // namespace

bool is_sm2_page(std::span<const std::byte> head) noexcept { return as_text(head).starts_with(magic); }

base::read_result<sm2_page> parse_sm2_page(std::span<const std::byte> bytes)
{
    if (!is_sm2_page(bytes) || bytes.size() < sm2HeaderBytes) return base::read_error{0, "not an RHK SPM32 page"};
    const std::string_view header = as_text(bytes).substr(0, sm2HeaderBytes);
    sm2_page page;
    const field_numbers shape = parse_field(header, pageAt);
    if (std::string reason = read_shape(shape, page); !reason.empty()) return base::read_error{pageAt, reason};
    page.x = page_axis(parse_field(header, xAt, "X"), page.isImage);
    page.y = page_axis(parse_field(header, yAt, "Y"), page.isImage);
    page.scale = page_scale(parse_field(header, zAt, "Z"), page.isImage);
    const field_numbers place = parse_field(header, idAt, "id"), scan = parse_field(header, scanAt, "scan");
    if (place.number(1) != 0.0) page.dataOffset = place.count(1);
    if (page.dataOffset < sm2HeaderBytes) return base::read_error{idAt, "data offset lies inside the header"};
    if (!place.numbers.empty()) add_string(page, "Id", base::general(place.number(0), 10));
    read_scan(scan, page);
    read_texts(header, page);
    return page;
}

} // namespace vldv::formats
