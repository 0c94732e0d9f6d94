#include "formats/single/opd.h"

#include "base/text.h"
#include "formats/shared/header_text.h"
#include "formats/shared/left_out.h"
#include "formats/shared/sample_numbers.h"
#include "formats/shared/stream_shape.h"
#include "formats/shared/wyko_names.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <optional>

namespace vldv::formats {

namespace {

constexpr std::string_view magic("\1\0Directory", 11);
constexpr std::uint64_t directoryAt = 2, entryBytes = 24;

enum block_type : unsigned {
    arrayBlock = 3,
    textBlock = 5,
    shortBlock = 6,
    floatBlock = 7,
    doubleBlock = 8,
    longBlock = 12
};

/// A named piece of the file.
struct opd_block {
    std::string name;
    unsigned type = 0;
    std::uint64_t offset = 0, length = 0;
};

/// The blocks that lie wholly in the file.
base::read_result<std::vector<opd_block>> read_directory(source& file, left_out& missing)
{
    std::byte first[entryBytes];
    if (!file.read(directoryAt, first)) return base::read_error{0, "the directory is cut short"};
    base::byte_reader start(first);
    start.skip(18);
    const std::uint64_t length = start.u32();
    if (length % entryBytes != 0 || length < entryBytes || length > file.size() - directoryAt)
        return base::read_error{directoryAt, "the length of the directory is no multiple of 24 or beyond the file"};
    std::vector<std::byte> bytes(static_cast<std::size_t>(length));
    if (!file.read(directoryAt, bytes)) return base::read_error{directoryAt, "the directory cannot be read"};
    base::byte_reader in(bytes);
    std::vector<opd_block> blocks;
    std::uint64_t at = directoryAt;
    for (std::uint64_t i = 0; i < length / entryBytes; ++i) {
        const auto name = in.take(16);
        opd_block block{header_text({reinterpret_cast<const char*>(name.data()), name.size()}), in.u16(), at, in.u32()};
        in.skip(2);
        if (block.length > file.size() - at) {
            missing.add(
                {at, "the block \"" + block.name + "\" reaches beyond the end of the file, with all behind it"});
            break;
        }
        at += block.length;
        if (i != 0 && block.length != 0) blocks.push_back(std::move(block));
    }
    return blocks;
}

std::optional<double> read_number(source& file, const opd_block& block)
{
    std::byte bytes[8]{};
    const auto take = [&](std::size_t count) {
        return block.length >= count && file.read(block.offset, std::span(bytes).first(count));
    };
    base::byte_reader in(bytes);
    switch (block.type) {
    case shortBlock:
        if (block.length == 4 && take(4)) return in.i32();
        return take(2) ? std::optional<double>(in.i16()) : std::nullopt;
    case floatBlock:
        if (block.length == 2 && take(2)) return in.i16(); // written so by some versions
        return take(4) ? std::optional<double>(in.f32()) : std::nullopt;
    case doubleBlock:
        return take(8) ? std::optional<double>(in.f64()) : std::nullopt;
    case longBlock:
        return take(4) ? std::optional<double>(in.i32()) : std::nullopt;
    default:
        return std::nullopt;
    }
}

std::string read_text(source& file, const opd_block& block)
{
    constexpr std::uint64_t maxTextBytes = 1u << 16;
    std::string text(static_cast<std::size_t>(std::min(block.length, maxTextBytes)), '\0');
    if (!file.read(block.offset, std::as_writable_bytes(std::span(text)))) return {};
    return clean_text(base::cp1252_to_utf8(text.substr(0, text.find('\0'))));
}

/// Numbers and texts by name; the first of equal names counts.
struct opd_values {
    std::map<std::string, double> numbers;
    std::map<std::string, std::string> texts;

    std::optional<double> number(const std::string& key) const
    {
        const auto found = numbers.find(key);
        return found == numbers.end() ? std::nullopt : std::optional(found->second);
    }
};

opd_values read_values(source& file, const std::vector<opd_block>& blocks)
{
    opd_values values;
    for (const opd_block& block : blocks) {
        if (const auto number = read_number(file, block)) {
            values.numbers.emplace(block.name, *number);
            values.texts.emplace(block.name, base::shortest(*number));
        } else if (block.type == textBlock) {
            if (std::string text = read_text(file, block); !text.empty())
                values.texts.emplace(block.name, std::move(text));
        }
    }
    return values;
}

bool holds_intensity(const std::string& name) { return name == "Image" || name == "Intensity" || name == "SecArr_0"; }

value_scale scale_of(const opd_values& values, bool isHeight, bool isFloat)
{
    if (!isHeight) return {1.0, 0.0, "", "intensity"};
    const auto wavelength = values.number("Wavelength");
    const double divisor = isFloat ? 1.0 : values.number("Mult").value_or(1.0);
    value_scale scale{wavelength.value_or(1.0) / divisor, 0.0, "", "no Wavelength in the file"};
    if (wavelength) {
        scale.units = "nm";
        scale.origin = "Wavelength = " + base::shortest(*wavelength) + " nm";
    }
    if (divisor != 1.0) scale.origin += ", Mult = " + base::shortest(divisor);
    return scale;
}

/// Says what the scale of heights lacks, and which number no scale can be made of.
void note_scale(recorded_image& image, const opd_values& values, bool isFloat)
{
    if (!values.number("Wavelength"))
        image.notes.emplace_back("no Wavelength in the file: heights are counted in wavelengths, without a unit");
    if (!isFloat && !values.number("Mult"))
        image.notes.emplace_back("no Mult in the file: whole numbers count as wavelengths");
    for (const char* field : {"Wavelength", "Mult"})
        if (const auto number = values.number(field); number && (*number == 0.0 || !std::isfinite(*number)))
            image.notes.push_back(std::string(field) + " is " + base::general(*number));
}

/// From columns that run upwards to rows, the bottom row first.
template <class T>
void fill_rows(recorded_image& image, const std::vector<std::byte>& stored, unsigned columns, unsigned rows)
{
    constexpr unsigned tile = 32; // both sides stay in cache
    const auto out = elements_of<T>(image);
    for (unsigned column0 = 0; column0 < columns; column0 += tile)
        for (unsigned row0 = 0; row0 < rows; row0 += tile)
            for (unsigned column = column0; column < std::min(column0 + tile, columns); ++column)
                for (unsigned row = row0; row < std::min(row0 + tile, rows); ++row)
                    std::memcpy(&out[std::size_t{row} * columns + column],
                                stored.data() + (std::size_t{column} * rows + row) * sizeof(T), sizeof(T));
}

base::read_result<recorded_image> read_array(source& file, const opd_block& block, const opd_values& values,
                                             std::vector<std::string>& ids)
{
    const auto refuse = [&](const std::string& reason) {
        return base::read_error{block.offset, block.name + ": " + reason};
    };
    std::byte head[6];
    if (block.length < sizeof head || !file.read(block.offset, head)) return refuse("the array is cut short");
    base::byte_reader in(head);
    const unsigned columns = in.u16(), rows = in.u16(), bytes = in.u16();
    if (columns == 0 || rows == 0) return refuse("number of columns or rows is 0");
    if (bytes != 1 && bytes != 2 && bytes != 4) return refuse("bytes per value are not 1, 2 or 4");
    const std::uint64_t samples = std::uint64_t{columns} * rows;
    if (!holds_numbers(block.length, sizeof head, samples, bytes))
        return refuse("columns times rows ask for more samples than the block holds");
    std::vector<std::byte> stored(static_cast<std::size_t>(samples * bytes));
    if (!file.read(block.offset + sizeof head, stored)) return refuse("samples cannot be read");

    const bool isHeight = holds_wyko_heights(block.name);
    const auto title = values.texts.find("Title");
    const std::string label = isHeight && title != values.texts.end() ? title->second : block.name;
    const auto pixel = values.number("Pixel_size");
    const double aspect = values.number("Aspect").value_or(1.0);
    const VLAxis x = pixel ? stated_side(0.0, *pixel, 1, "mm") : VLAxis(),
                 y = pixel ? stated_side(0.0, *pixel * aspect, 1, "mm") : VLAxis();
    const extent sides[] = {{columns, x}, {rows, y}};
    const SPMVarArrayType type = bytes == 4 ? SPM_ARRAY_FLOAT32 : bytes == 2 ? SPM_ARRAY_INT16 : SPM_ARRAY_UINT8;
    recorded_image image =
        make_samples(unique_id(label, ids), label, sides, 1, scale_of(values, isHeight, bytes == 4), type);
    if (pixel) note_length(image, "Pixel_size", *pixel);
    note_length(image, "Aspect", aspect);
    if (pixel && !values.number("Aspect")) image.notes.emplace_back("no Aspect in the file: points count as square");
    if (std::string surplus = told_surplus("columns times rows", stored.size(), block.length - sizeof head);
        !surplus.empty())
        image.notes.push_back(std::move(surplus));
    if (isHeight) note_scale(image, values, bytes == 4);
    if (bytes == 4) {
        fill_rows<float>(image, stored, columns, rows);
        for (float& value : elements_of<float>(image))
            if (value >= 1e38f) value = std::numeric_limits<float>::quiet_NaN();
        settle_samples(image);
    } else if (bytes == 2) {
        fill_rows<std::int16_t>(image, stored, columns, rows);
        const std::int16_t markers[] = {32767, 32766};
        settle_markers(image, markers);
    } else {
        fill_rows<std::uint8_t>(image, stored, columns, rows);
        settle_samples(image);
    }
    return image;
}

} // namespace

bool sniff_opd(std::span<const std::byte> head) { return base::byte_reader(head).tag(magic); }

bool possible_opd(std::span<const std::byte> head) { return base::byte_reader(head).tag("VCA DATA"); }

base::read_result<recording> read_opd(source& file)
{
    std::byte head[11]{};
    if (file.size() < sizeof head || !file.read(0, head) || !sniff_opd(head))
        return base::read_error{0, "not a directory of WYKO blocks; the later .opdx files cannot be opened"};
    left_out missing;
    const auto blocks = read_directory(file, missing);
    if (!blocks) return blocks.error();
    const opd_values values = read_values(file, *blocks);
    std::vector<std::string> ids;
    recording result;
    for (const auto isWanted : {holds_wyko_heights, holds_intensity})
        for (const opd_block& block : *blocks) {
            if (block.type != arrayBlock || !isWanted(block.name)) continue;
            auto image = read_array(file, block, values, ids);
            if (image)
                result.items.emplace_back(std::move(*image));
            else
                missing.add(image.error());
        }
    if (result.items.empty())
        return missing.empty() ? base::read_error{directoryAt, "no block holds heights or intensities"}
                               : missing.first();
    result.strings = values.texts;
    missing.tell(result);
    if (!values.number("Pixel_size")) add_warning(result, noWykoPixelSize);
    const auto date = values.texts.find("Date"), time = values.texts.find("Time");
    if (date != values.texts.end())
        result.strings.emplace("\\Date", date->second + (time == values.texts.end() ? "" : " " + time->second));
    return result;
}

} // namespace vldv::formats
