#include "formats/img/img_kinds.h"

#include "base/text.h"
#include "formats/shared/header_text.h"
#include "formats/shared/stated_number.h"
#include "formats/shared/stream_shape.h"

#include <algorithm>
#include <cmath>

namespace vldv::formats {

namespace {

constexpr std::uint64_t oldHeaderBytes = 830; // shared by two kinds that descend from the same program
constexpr int sicmVersion = 50;
constexpr std::size_t sicmSizeAt = 56;
constexpr std::string_view ecsMark("\xA0\0\0", 3), ecsSizeMark = "Scan Size: ";
constexpr std::size_t ecsSizeAt = 0x2EC;

base::read_error none(const std::string& reason) { return {0, reason}; }

std::uint64_t image_bytes(unsigned width, unsigned height) { return 2ull * width * height; }

void add_text(img_layout& layout, const char* key, const std::string& text)
{
    if (const std::string_view trimmed = base::trimmed(text); !trimmed.empty()) layout.strings[key] = trimmed;
}

/// A text behind its length in one byte, both in a field of `room` bytes.
struct text_field {
    std::size_t at, room;
};
constexpr text_field sicmDate{156, 79}, sicmTime{235, 79}, sicmComment{331, 81}, sicmTitle{412, 81}, sicmMode{666, 41};

std::string read_field(base::byte_reader& in, const text_field& field)
{
    in.seek(field.at);
    return read_pascal_text(in, field.room - 1);
}

/// True when the text fits its field and has no control characters.
bool is_text(std::span<const std::byte> head, const text_field& field)
{
    if (head.size() < field.at + field.room) return false;
    const auto length = std::to_integer<std::size_t>(head[field.at]);
    return length < field.room &&
           std::ranges::all_of(
               head.subspan(field.at + 1, length),
               [](std::byte each) { return each >= std::byte{0x20} && each != std::byte{0x7F}; });
}

} // namespace

double read_real48(base::byte_reader& in) noexcept
{
    const unsigned exponent = in.u8();
    std::uint64_t mantissa = in.u32();
    const unsigned last = in.u8();
    if (exponent == 0 || in.failed()) return 0.0;
    mantissa |= std::uint64_t{last & 0x7Fu} << 32;
    const double value =
        std::ldexp(1.0 + std::ldexp(static_cast<double>(mantissa), -39), static_cast<int>(exponent) - 129);
    return last & 0x80u ? -value : value;
}

std::string read_pascal_text(base::byte_reader& in, std::size_t room)
{
    const std::size_t length = std::min<std::size_t>(in.u8(), room);
    const auto bytes = in.take(room);
    if (bytes.empty()) return {};
    return header_text({reinterpret_cast<const char*>(bytes.data()), length});
}

base::read_result<img_layout> read_burleigh(source& file, std::span<const std::byte> head)
{
    constexpr std::uint64_t headerBytes = 8, footerBytes = 40;
    base::byte_reader in(head);
    const float version = in.f32();
    img_layout layout;
    layout.width = in.u16();
    layout.height = in.u16();
    if (in.failed() || !(std::fabs(version - 2.1f) < 0.05f) || layout.width == 0 || layout.height == 0)
        return none("no version 2.1");
    const std::uint64_t samples = image_bytes(layout.width, layout.height);
    if (file.size() != headerBytes + samples + footerBytes)
        return none("its size is not that of header, samples and footer");
    std::byte footer[footerBytes];
    if (!file.read(headerBytes + samples, footer)) return none("the footer cannot be read");
    base::byte_reader end(footer);
    end.skip(12);
    const double xRange = end.u32(), yRange = end.u32(), zRange = end.u32();
    const unsigned speed = end.u16(), zoom = end.u16(), type = end.u16();
    const unsigned gain = end.u16();
    const double bias = end.f32(), current = end.f32();
    constexpr double factors[] = {1, 1, 2, 10, 50, 250};
    const double factor = zoom < std::size(factors) ? factors[zoom] : 1.0;
    constexpr double nanometre = 0.1; // of an Angstrom
    layout.kind = "Burleigh 2.1";
    layout.label = type == 0 ? "Current" : "Topography";
    layout.offset = headerBytes;
    layout.isTopFirst = true;
    layout.x = stated_side(0, xRange / factor * nanometre, layout.width, "nm");
    layout.y = stated_side(0, yRange / factor * nanometre, layout.height, "nm");
    layout.scale = {zRange / 4095.0, 0.0, "pA", "z range = " + base::shortest(zRange) + ", raw span = 4095"};
    if (type != 0) {
        layout.scale.step *= nanometre;
        layout.scale.units = "nm";
    }
    layout.strings["\\Speed"] = std::to_string(speed);
    layout.strings["Zoom level"] = std::to_string(zoom);
    layout.strings["Z gain"] = std::to_string(gain);
    if (std::isfinite(bias)) layout.strings["Bias"] = base::shortest(bias);
    if (std::isfinite(current)) layout.strings["Tunnelling current"] = base::shortest(current);
    return layout;
}

base::read_result<img_layout> read_dme(source& file, std::span<const std::byte> head)
{
    constexpr std::uint64_t leastHeader = 4048;
    base::byte_reader in(head);
    if (!in.tag("RSCOPE")) return none("no RSCOPE");
    in.skip(4);
    const std::uint64_t headerBytes = in.u16(), dataBytes = in.u32();
    img_layout layout;
    const auto time = in.take(17);
    if (!time.empty())
        add_text(layout, "\\Date", header_text({reinterpret_cast<const char*>(time.data()), time.size()}));
    add_text(layout, "Comment", read_pascal_text(in, 148));
    in.skip(1 + 123);
    const std::uint32_t columns = in.u32(), rows = in.u32();
    const double xSize = read_real48(in), ySize = read_real48(in), xOffset = read_real48(in), yOffset = read_real48(in);
    add_text(layout, "Title", read_pascal_text(in, 19));
    const double pause = read_real48(in);
    const double speed = read_real48(in), current = read_real48(in), bias = read_real48(in);
    const double loopGain = read_real48(in);
    in.skip(2 + 1 + 291);
    const double xCalibration = read_real48(in), yCalibration = read_real48(in), zCalibration = read_real48(in);
    if (in.failed() || headerBytes < leastHeader) return none("the header is shorter than 4048 bytes");
    if (columns == 0 || rows == 0 || columns > 65536 || rows > 65536)
        return none("the number of columns or rows is 0 or above 65536");
    if (dataBytes != 2 * (std::uint64_t{columns} + 1) * rows)
        return none("the stated data size is not that of samples and line words");
    if (file.size() != headerBytes + dataBytes) return none("its size is not that of header and data");
    // The factor closes the described header.
    constexpr std::size_t realBytes = 6;
    base::byte_reader last(head);
    last.seek(leastHeader - realBytes);
    const double factor = read_real48(last);
    constexpr double nanometre = 0.1; // of an Angstrom
    layout.kind = "DME Rasterscope";
    layout.label = "Topography";
    layout.width = columns;
    layout.height = rows;
    layout.offset = headerBytes;
    layout.isTopFirst = layout.isMirrored = layout.hasLineShifts = true;
    const double x = xCalibration * nanometre, y = yCalibration * nanometre;
    layout.x = stated_side(xOffset * x, xSize * x, columns, "nm");
    layout.y = stated_side(yOffset * y, ySize * y, rows, "nm");
    layout.scale = {factor * zCalibration * nanometre, 0.0, "nm",
                    "height scale factor = " + base::shortest(factor) +
                        ", z calibration = " + base::shortest(zCalibration)};
    layout.strings["\\Speed"] = base::shortest(speed);
    layout.strings["Current"] = base::shortest(current);
    layout.strings["Bias"] = base::shortest(bias);
    layout.strings["Pause"] = base::shortest(pause);
    layout.strings["Loop gain"] = base::shortest(loopGain);
    return layout;
}

base::read_result<img_layout> read_sicm(source& file, std::span<const std::byte> head)
{
    base::byte_reader in(head);
    const int version = in.i16(), columns = in.i16(), rows = in.i16();
    if (in.failed() || version != sicmVersion || columns <= 0 || rows <= 0) return none("no version 50");
    img_layout layout;
    layout.width = static_cast<unsigned>(columns);
    layout.height = static_cast<unsigned>(rows);
    if (file.size() != oldHeaderBytes + image_bytes(layout.width, layout.height))
        return none("its size is not 830 bytes and the samples");
    const double hva = read_real48(in), dac = read_real48(in), adc = read_real48(in);
    const double gain = read_real48(in), xCalibration = read_real48(in), yCalibration = read_real48(in),
                 zCalibration = read_real48(in), secondGain = read_real48(in);
    in.seek(sicmSizeAt);
    const double size = read_real48(in);
    layout.strings["Gain"] = base::shortest(gain);
    layout.strings["Second gain"] = base::shortest(secondGain);
    layout.strings["X calibration"] = base::shortest(xCalibration);
    layout.strings["Y calibration"] = base::shortest(yCalibration);
    add_text(layout, "\\Date", read_field(in, sicmDate) + " " + read_field(in, sicmTime));
    add_text(layout, "Comment", read_field(in, sicmComment));
    add_text(layout, "Title", read_field(in, sicmTitle));
    const std::string mode = read_field(in, sicmMode);
    add_text(layout, "Mode", mode);
    layout.kind = "IonScope";
    layout.offset = oldHeaderBytes;
    layout.x = stated_side(0, size * 1e-2, layout.width, "\u00B5m"); // from 1e-8 m
    layout.y = stated_side(0, size * 1e-2, layout.height, "\u00B5m");
    if (mode.starts_with('C')) {
        layout.label = "Current";
        layout.scale = {1.0, 0.0, "", "no scale of currents is known"};
    } else if (mode.starts_with('A')) {
        layout.label = "ADC";
        layout.scale = {adc / 32767.0, 0.0, "V", "ADC full scale = " + base::shortest(adc)};
    } else {
        layout.label = "Topography";
        layout.scale = {zCalibration * hva * dac / 32767.0, 0.0, "\u00B5m",
                        "z calibration, full scales of HVA and DAC = " + base::shortest(zCalibration) + ", " +
                            base::shortest(hva) + ", " + base::shortest(dac)};
    }
    return layout;
}

base::read_result<img_layout> read_ecs(source& file, std::span<const std::byte> head)
{
    constexpr std::size_t sizeRoom = 0x33D - ecsSizeAt;
    base::byte_reader in(head);
    img_layout layout;
    const bool hasMark = in.tag(ecsMark);
    in.seek(2);
    layout.width = in.u16();
    layout.height = in.u16();
    in.seek(ecsSizeAt);
    const std::string size = read_pascal_text(in, sizeRoom);
    if (in.failed() || !hasMark || !size.starts_with(ecsSizeMark) || layout.width == 0 || layout.height == 0)
        return none("no text \"Scan Size: \"");
    if (file.size() != oldHeaderBytes + image_bytes(layout.width, layout.height))
        return none("its size is not 830 bytes and the samples");
    std::string_view rest = std::string_view(size).substr(ecsSizeMark.size());
    const auto length = stated_number(rest, &rest), span = stated_number(rest, &rest);
    rest = base::trimmed(rest);
    if (!length || !span || !(*length > 0) || !std::isfinite(*span)) return none("no numbers behind \"Scan Size: \"");
    // The unit is one character: 0x8F is an Angstrom in code pages of that time.
    const auto bytes = head.subspan(ecsSizeAt + 1, std::to_integer<std::size_t>(head[ecsSizeAt]));
    const bool isAngstrom = std::find(bytes.begin(), bytes.end(), std::byte{0x8F}) != bytes.end();
    const double nanometre = isAngstrom ? 0.1 : 1.0;
    add_text(layout, "\\Date", read_field(in, {0x9C, 0x4F}) + " " + read_field(in, {0xEB, 0x4F}));
    add_text(layout, "Comment", read_field(in, {0x19C, 0x51}));
    add_text(layout, "Parameters", read_field(in, {0x2C3, 0x29}));
    layout.label = read_field(in, {0x29A, 0x29});
    if (layout.label.empty()) layout.label = "Topography";
    layout.kind = "ECS";
    layout.offset = oldHeaderBytes;
    layout.x = stated_side(0, *length * nanometre, layout.width, "nm");
    layout.y = stated_side(0, *length * nanometre, layout.height, "nm");
    layout.scale = {*span * nanometre / 65536.0, 0.0, "nm", "height span of Scan Size, raw span = 65536"};
    return layout;
}

bool looks_like_sicm(std::span<const std::byte> head)
{
    base::byte_reader in(head);
    const int version = in.i16(), columns = in.i16(), rows = in.i16();
    if (in.failed() || version != sicmVersion || columns <= 0 || rows <= 0) return false;
    // A number alone is weak: the texts have to be some, the date written, the size above 0.
    for (const text_field& field : {sicmDate, sicmTime, sicmComment, sicmTitle, sicmMode})
        if (!is_text(head, field)) return false;
    in.seek(sicmSizeAt);
    return head[sicmDate.at] != std::byte{0} && read_real48(in) > 0;
}

bool looks_like_ecs(std::span<const std::byte> head)
{
    base::byte_reader in(head);
    const bool hasMark = in.tag(ecsMark);
    in.seek(ecsSizeAt + 1);
    return hasMark && in.tag(ecsSizeMark);
}

} // namespace vldv::formats
