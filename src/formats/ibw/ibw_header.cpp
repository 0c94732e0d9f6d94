#include "formats/ibw/ibw_header.h"

#include "base/text.h"
#include "formats/ibw/ibw_note.h"
#include "formats/shared/header_text.h"
#include "formats/shared/text_units.h"

#include <algorithm>
#include <cmath>

namespace vldv::formats {

namespace {

constexpr std::size_t waveHeaderBytes = 110, paddingBytes = 16, newBinaryBytes = 64, newWaveBytes = 320;

/// Bytes in front of the wave header; 0 for versions that are not known.
std::size_t binary_header_bytes(unsigned version) noexcept
{
    switch (version) {
    case 1:
        return 8;
    case 2:
        return 16;
    case 3:
        return 20;
    case 5:
        return newBinaryBytes;
    default:
        return 0;
    }
}

/// Bytes that the checksum covers; for old versions also the padding that is not part of the wave header.
std::size_t checked_bytes(unsigned version) noexcept
{
    return binary_header_bytes(version) + (version == 5 ? newWaveBytes : waveHeaderBytes + paddingBytes);
}

class ordered_reader {
public:
    ordered_reader(std::span<const std::byte> bytes, byte_order order_) : in(bytes), order(order_) {}
    template <class T>
    T number()
    {
        return order == byte_order::big ? in.big<T>() : in.little<T>();
    }
    std::int64_t i16() { return number<std::int16_t>(); }
    std::int64_t i32() { return number<std::int32_t>(); }
    std::string text(std::size_t count)
    {
        const auto bytes = in.take(count);
        return header_text({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    }
    base::byte_reader in;

private:
    byte_order order;
};

bool read_version(std::span<const std::byte> head, byte_order& order, unsigned& version)
{
    if (head.size() < 2) return false;
    order = head[0] == std::byte{0} ? byte_order::big : byte_order::little;
    version = ordered_reader(head, order).number<std::uint16_t>();
    return binary_header_bytes(version) != 0;
}

/// Sizes of the texts behind the data, in their order.
struct text_sizes {
    std::int64_t formula = 0, note = 0, dataUnits = 0;
    std::array<std::int64_t, 4> dimensionUnits{}, labels{};
};

/// The type number: 2 and 4 are real, 8, 16 and 32 whole, plus 1 for complex and 64 for unsigned.
bool set_type(std::int64_t type, ibw_wave& wave)
{
    wave.isText = type == 0;
    wave.isComplex = type & 1;
    const bool isUnsigned = type & 64;
    switch (type & ~std::int64_t{65}) {
    case 0:
        return wave.isText;
    case 2:
        wave.type = SPM_ARRAY_FLOAT32;
        return !isUnsigned;
    case 4:
        wave.type = SPM_ARRAY_FLOAT64;
        return !isUnsigned;
    case 8:
        wave.type = isUnsigned ? SPM_ARRAY_UINT8 : SPM_ARRAY_INT8;
        return true;
    case 16:
        wave.type = isUnsigned ? SPM_ARRAY_UINT16 : SPM_ARRAY_INT16;
        return true;
    case 32:
        wave.type = isUnsigned ? SPM_ARRAY_UINT32 : SPM_ARRAY_INT32;
        return true;
    default:
        return false;
    }
}

/// \return why the fields cannot be true, or empty. `size` receives the stated bytes of wave header and data.
std::string read_new_header(ordered_reader& in, ibw_wave& wave, text_sizes& texts, std::int64_t& size)
{
    in.in.seek(4);
    size = in.i32();
    texts.formula = in.i32();
    texts.note = in.i32();
    texts.dataUnits = in.i32();
    for (std::int64_t& each : texts.dimensionUnits) each = in.i32();
    for (std::int64_t& each : texts.labels) each = in.i32();
    in.in.seek(68);
    wave.created = in.number<std::uint32_t>();
    in.in.seek(76);
    const std::int64_t points = in.i32();
    const std::int64_t type = in.i16();
    in.in.seek(92);
    wave.name = in.text(32);
    in.in.seek(132);
    std::int64_t product = 1;
    for (int i = 0; i < 4; ++i) {
        const std::int64_t length = in.i32();
        if (length < 0) return "a dimension is negative";
        if (length == 0) break;
        if (product > 0xFFFFFFFFll / length) return "the product of the dimensions is too large";
        product *= length;
        wave.dimensions.push_back(static_cast<std::uint64_t>(length));
    }
    in.in.seek(148);
    for (double& each : wave.step) each = in.number<double>();
    for (double& each : wave.start) each = in.number<double>();
    wave.units = normal_unit(in.text(4));
    for (std::string& each : wave.dimensionUnits) each = normal_unit(in.text(4));
    if (points < 0) return "the number of points is negative";
    if (points != (wave.dimensions.empty() ? 0 : product))
        return "the number of points differs from the product of the dimensions";
    wave.points = static_cast<std::uint64_t>(points);
    wave.dataAt = newBinaryBytes + newWaveBytes;
    return set_type(type, wave) ? "" : "the type of the numbers is not known";
}

std::string read_old_header(ordered_reader& in, ibw_wave& wave, text_sizes& texts, std::int64_t& size)
{
    const std::size_t waveAt = binary_header_bytes(wave.version);
    in.in.seek(2);
    size = in.i32() - static_cast<std::int64_t>(paddingBytes);
    if (wave.version > 1) texts.note = in.i32();
    if (wave.version > 2) texts.formula = in.i32();
    in.in.seek(waveAt);
    const std::int64_t type = in.i16();
    in.in.seek(waveAt + 6);
    wave.name = in.text(20);
    in.in.seek(waveAt + 34);
    wave.units = normal_unit(in.text(4));
    wave.dimensionUnits[0] = normal_unit(in.text(4));
    const std::int64_t points = in.i32();
    in.in.seek(waveAt + 48);
    wave.step[0] = in.number<double>();
    wave.start[0] = in.number<double>();
    if (points < 0) return "the number of points is negative";
    wave.points = static_cast<std::uint64_t>(points);
    if (points != 0) wave.dimensions = {wave.points};
    wave.dataAt = waveAt + waveHeaderBytes;
    return set_type(type, wave) ? "" : "the type of the numbers is not known";
}

/// Fields of 32 bytes; the first names the dimension as a whole.
std::vector<std::string> parse_labels(const std::string& text)
{
    constexpr std::size_t fieldBytes = 32;
    std::vector<std::string> labels;
    for (std::size_t at = fieldBytes; at + fieldBytes <= text.size(); at += fieldBytes)
        labels.push_back(header_text(std::string_view(text).substr(at, fieldBytes)));
    return labels;
}

/// Takes the texts behind the data one after another; from one that does not lie in the file on all are lost.
class text_taker {
public:
    text_taker(source& file_, std::uint64_t at_) : file(file_), at(at_) {}

    std::string take(std::int64_t size)
    {
        constexpr std::int64_t maxTextBytes = 16 << 20;
        std::string text;
        if (size == 0) return text;
        isLost = isLost || size < 0 || size > maxTextBytes ||
                 !holds_numbers(file.size(), at, static_cast<std::uint64_t>(size), 1);
        if (isLost) return text;
        text.resize(static_cast<std::size_t>(size));
        isLost = !file.read(at, std::as_writable_bytes(std::span(text)));
        at += static_cast<std::uint64_t>(size);
        return isLost ? std::string() : text;
    }
    bool hasLost() const noexcept { return isLost; }

private:
    source& file;
    std::uint64_t at;
    bool isLost = false;
};

/// The unit in the header is one for all channels, and what says more stands behind the numbers: when that is lost, the
/// unit may be a wrong one.
void drop_units(ibw_wave& wave)
{
    if (!wave.units.empty())
        wave.notes.push_back("the file is cut short: the unit \"" + wave.units +
                             "\" is dropped, since the texts that say whether it holds are lost");
    wave.units.clear();
}

void read_texts(source& file, std::uint64_t at, const text_sizes& sizes, ibw_wave& wave)
{
    text_taker texts(file, at);
    if (wave.version == 5) texts.take(sizes.formula); // in front of the note here, behind it before
    wave.note = parse_ibw_note(texts.take(sizes.note));
    if (wave.version == 5) {
        if (const std::string units = header_text(texts.take(sizes.dataUnits)); !units.empty())
            wave.units = normal_unit(units);
        for (std::size_t i = 0; i < sizes.dimensionUnits.size(); ++i)
            if (const std::string units = header_text(texts.take(sizes.dimensionUnits[i])); !units.empty())
                wave.dimensionUnits[i] = normal_unit(units);
        for (std::size_t i = 0; i < sizes.labels.size(); ++i)
            wave.labels[i] = parse_labels(texts.take(sizes.labels[i]));
    }
    if (!texts.hasLost()) return;
    wave.notes.push_back("the file is cut short: the texts behind the numbers are lost");
    drop_units(wave);
}

/// Of layers that are not all in the file those that are stay. \return false when there are none
bool keep_whole_layers(std::uint64_t fileSize, std::uint64_t numberBytes, ibw_wave& wave)
{
    if (wave.dimensions.size() != 3 || wave.dataAt > fileSize) return false;
    const std::uint64_t stated = wave.dimensions[2], layer = wave.points / stated;
    const std::uint64_t whole = (fileSize - wave.dataAt) / (layer * numberBytes);
    if (whole == 0) return false;
    wave.dimensions[2] = whole;
    wave.points = layer * whole;
    wave.notes.push_back("the file is cut short: " + std::to_string(whole) + " of " + std::to_string(stated) +
                         " layers are there");
    drop_units(wave);
    return true;
}

} // namespace

bool is_ibw_header(std::span<const std::byte> head, byte_order& order, unsigned& version)
{
    if (!read_version(head, order, version) || head.size() < checked_bytes(version)) return false;
    ordered_reader in(head.first(checked_bytes(version)), order);
    std::uint16_t sum = 0;
    while (in.in.remaining() >= 2) sum = static_cast<std::uint16_t>(sum + in.number<std::uint16_t>());
    return sum == 0;
}

base::read_result<ibw_wave> read_ibw_wave(source& file)
{
    std::vector<std::byte> head(
        static_cast<std::size_t>(std::min<std::uint64_t>(file.size(), newBinaryBytes + newWaveBytes)));
    const auto refuse = [](const std::string& reason) { return base::read_error{0, reason}; };
    if (!file.read(0, head)) return refuse("header cannot be read");
    ibw_wave wave;
    if (!read_version(head, wave.order, wave.version)) return refuse("not the version number of an Igor binary wave");
    if (head.size() < checked_bytes(wave.version)) return refuse("header is cut short");
    if (!is_ibw_header(head, wave.order, wave.version)) return refuse("the checksum of the header does not match");
    ordered_reader in(head, wave.order);
    text_sizes texts;
    std::int64_t size = 0;
    const std::string problem =
        wave.version == 5 ? read_new_header(in, wave, texts, size) : read_old_header(in, wave, texts, size);
    if (!problem.empty()) return refuse(problem);
    if (wave.isText) return wave;
    const std::uint64_t numberBytes = element_size(wave.type) * (wave.isComplex ? 2u : 1u);
    const std::uint64_t dataBytes = wave.points * numberBytes;
    const std::uint64_t waveBytes = wave.version == 5 ? newWaveBytes : waveHeaderBytes;
    if (size >= 0 && static_cast<std::uint64_t>(size) == waveBytes && dataBytes != 0)
        return refuse("the wave holds no numbers of its own, it depends on a formula");
    if (size < 0 || static_cast<std::uint64_t>(size) != waveBytes + dataBytes)
        return refuse("the stated size differs from that of header and numbers");
    if (!holds_numbers(file.size(), wave.dataAt, wave.points, numberBytes) &&
        !keep_whole_layers(file.size(), numberBytes, wave))
        return base::read_error{wave.dataAt, "the numbers reach beyond the end of the file"};
    read_texts(file, wave.dataAt + dataBytes + (wave.version == 5 ? 0 : paddingBytes), texts, wave);
    constexpr std::uint64_t footerBytes = 400;
    wave.footer.resize(static_cast<std::size_t>(std::min(file.size() - wave.dataAt, footerBytes)));
    if (!file.read(file.size() - wave.footer.size(), std::as_writable_bytes(std::span(wave.footer))))
        wave.footer.clear();
    return wave;
}

} // namespace vldv::formats
