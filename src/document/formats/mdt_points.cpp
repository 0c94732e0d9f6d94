#include "base/VLXMLParser.h"
#include "base/text.h"
#include "document/formats/curve_group.h"
#include "document/formats/header_text.h"
#include "document/formats/mdt_frame.h"
#include "document/formats/sample_numbers.h"

#include <algorithm>
#include <cmath>
#include <sstream>

// Frames of spectra at points in the new manner: named blocks, one of which, index.xml, tells what the others hold.

namespace formats {

namespace {

struct block {
    std::uint64_t offset = 0, size = 0;
};

using attributes = VLXMLParser::attributes;

std::string text_of(const attributes& found, const char* key)
{
    const auto entry = found.find(key);
    return entry == found.end() ? std::string() : clean_text(entry->second);
}

double number_of(const attributes& found, const char* key)
{
    return base::whole_number(text_of(found, key)).value_or(0);
}

int index_of(const attributes& found, const char* key)
{
    const auto number = base::whole_integer(text_of(found, key));
    return number && *number >= 0 && *number < 1000000 ? static_cast<int>(*number) : -1;
}

struct quantity_row { // <Name>: a measured or varied quantity
    std::string name, units;
};
struct axis_row { // <Axis>: equally spaced values of a quantity
    int name = -1;
    std::uint64_t count = 0;
    double start = 0.0, stop = 0.0;
};
struct data_row { // <Data>: where numbers lie
    std::string blockName, type;
    std::uint64_t offset = 0, count = 0;
};
struct measurement_row { // <Meas>: one curve
    int name = -1, data = -1, axis = -1, pass = -1;
    bool isInverse = false;
};
struct point_row { // <Point>: where on the sample
    std::string place;
    int firstMeasurement = -1;
};

std::uint64_t count_of(const attributes& found, const char* key)
{
    const auto number = base::whole_integer(text_of(found, key));
    return number && *number >= 0 ? static_cast<std::uint64_t>(*number) : 0;
}

/// The tables of index.xml, in their order.
class index_parser : public VLXMLParser {
public:
    void init() override
    {
        add_start_handler("Name", &index_parser::onName);
        add_start_handler("Axis", &index_parser::onAxis);
        add_start_handler("Data", &index_parser::onData);
        add_start_handler("Meas", &index_parser::onMeas);
        add_start_handler("Point", &index_parser::onPoint);
    }

    std::vector<quantity_row> names;
    std::vector<axis_row> axes;
    std::vector<data_row> data;
    std::vector<measurement_row> measurements;
    std::vector<point_row> points;

private:
    void onName(const char*, const attributes& found)
    {
        std::string units = text_of(found, "unit");
        if (units.size() > 1 && units.front() == 'u') units = "\u00B5" + units.substr(1);
        names.push_back({text_of(found, "name"), units});
    }
    void onAxis(const char*, const attributes& found)
    {
        axes.push_back(
            {index_of(found, "name"), count_of(found, "count"), number_of(found, "start"), number_of(found, "stop")});
    }
    void onData(const char*, const attributes& found)
    {
        data.push_back(
            {text_of(found, "name"), text_of(found, "type"), count_of(found, "offset"), count_of(found, "count")});
    }
    void onMeas(const char*, const attributes& found)
    {
        measurements.push_back({index_of(found, "name"), index_of(found, "data"), index_of(found, "axis0"),
                                index_of(found, "pass"), index_of(found, "inverse0") == 1});
    }
    void onPoint(const char*, const attributes& found)
    {
        points.push_back(
            {text_of(found, "x") + " " + text_of(found, "y") + " " + text_of(found, "unit"), index_of(found, "meas")});
    }
};

struct block_table {
    std::map<std::string, block> blocks; ///< the first of a name
};

base::read_result<block_table> read_blocks(source& file, const mdt_frame& frame)
{
    const auto refuse = [&](const char* reason) { return base::read_error{frame.offset, reason}; };
    const auto countBytes = read_frame_bytes(file, frame, frame.headerBytes, 4);
    const std::uint32_t count = base::byte_reader(countBytes).u32();
    const std::uint64_t tableAt = frame.headerBytes + 4u, tableBytes = std::uint64_t{count} * 8;
    if (!holds_numbers(frame.size, tableAt, count, 8)) return refuse("more blocks than the frame has room for");
    const auto table = read_frame_bytes(file, frame, tableAt, tableBytes);
    base::byte_reader in(table);
    std::vector<std::uint32_t> nameBytes(count), dataBytes(count);
    std::uint64_t allNames = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        nameBytes[i] = in.u32();
        dataBytes[i] = in.u32();
        allNames += nameBytes[i];
    }
    const std::uint64_t namesAt = tableAt + tableBytes;
    if (allNames > frame.size - namesAt) return refuse("the names of the blocks lie outside the frame");
    const auto names = read_frame_bytes(file, frame, namesAt, allNames);
    block_table result;
    std::uint64_t at = namesAt + allNames;
    const char* name = reinterpret_cast<const char*>(names.data());
    for (std::uint32_t i = 0; i < count; ++i) {
        if (dataBytes[i] > frame.size - at) return refuse("a block lies outside the frame");
        result.blocks.emplace(std::string(name, nameBytes[i]), block{frame.offset + at, dataBytes[i]});
        name += nameBytes[i];
        at += dataBytes[i];
    }
    return result;
}

std::string read_text(source& file, const block_table& table, const char* name)
{
    constexpr std::uint64_t maxTextBytes = 64u << 20;
    const auto found = table.blocks.find(name);
    if (found == table.blocks.end() || found->second.size > maxTextBytes) return {};
    std::string text(static_cast<std::size_t>(found->second.size), '\0');
    if (!file.read(found->second.offset, std::as_writable_bytes(std::span(text)))) text.clear();
    return text;
}

/// UTF-16 with its mark, or UTF-8.
std::string to_utf8(const std::string& text)
{
    return text.starts_with("\xFF\xFE") ? base::utf16_to_utf8(std::string_view(text).substr(2), false) : text;
}

bool read_data(source& file, const block_table& table, const data_row& row, std::vector<double>& out)
{
    SPMVarArrayType type = SPM_ARRAY_VOID;
    const auto found = table.blocks.find(row.blockName);
    if (found == table.blocks.end() || !array_type_from_keyword(row.type.c_str(), type) || type == SPM_ARRAY_VOID)
        return false;
    return holds_numbers(found->second.size, row.offset, row.count, element_size(type)) &&
           read_numbers(file, found->second.offset + row.offset, row.count, type, byte_order::little, out);
}

/// Number of the point that a measurement belongs to, from 1; 0 before the first.
std::size_t point_of(const index_parser& index, std::size_t measurement)
{
    std::size_t number = 0;
    for (std::size_t i = 0; i < index.points.size(); ++i)
        if (index.points[i].firstMeasurement >= 0 &&
            static_cast<std::size_t>(index.points[i].firstMeasurement) <= measurement &&
            (number == 0 || index.points[i].firstMeasurement >= index.points[number - 1].firstMeasurement))
            number = i + 1;
    return number;
}

/// Curves of one quantity over one axis.
struct spectrum_group {
    int name = -1, axis = -1;
    std::vector<named_curve> curves;
};

std::string curve_name(const index_parser& index, std::size_t number)
{
    const measurement_row& row = index.measurements[number];
    std::string name;
    if (const std::size_t point = point_of(index, number)) name = "Point " + std::to_string(point) + ", ";
    if (row.pass >= 0) name += "pass " + std::to_string(row.pass + 1) + ", ";
    return name + (row.isInverse ? "Reverse" : "Forward");
}

std::vector<spectrum_group> read_groups(source& file, const block_table& table, const index_parser& index)
{
    std::vector<spectrum_group> groups;
    std::uint64_t room = file.size(); // several measurements may claim the same numbers
    for (std::size_t i = 0; i < index.measurements.size(); ++i) {
        const measurement_row& row = index.measurements[i];
        if (row.data < 0 || static_cast<std::size_t>(row.data) >= index.data.size()) continue;
        const data_row& data = index.data[static_cast<std::size_t>(row.data)];
        named_curve curve{curve_name(index, i), {}};
        if (data.count > room || !read_data(file, table, data, curve.values) || curve.values.empty()) continue;
        room -= data.count;
        // Samples lie along growing x, whichever way they were recorded.
        const bool hasAxis = row.axis >= 0 && static_cast<std::size_t>(row.axis) < index.axes.size();
        const axis_row axis = hasAxis ? index.axes[static_cast<std::size_t>(row.axis)] : axis_row{};
        if ((axis.start > axis.stop) != row.isInverse) std::reverse(curve.values.begin(), curve.values.end());
        auto group = std::find_if(groups.begin(), groups.end(), [&](const spectrum_group& each) {
            return each.name == row.name && each.axis == row.axis;
        });
        if (group == groups.end()) group = groups.insert(groups.end(), spectrum_group{row.name, row.axis, {}});
        group->curves.push_back(std::move(curve));
    }
    return groups;
}

quantity_row quantity(const index_parser& index, int name)
{
    const bool isKnown = name >= 0 && static_cast<std::size_t>(name) < index.names.size();
    return isKnown ? index.names[static_cast<std::size_t>(name)] : quantity_row{};
}

VLAxis axis_of(const index_parser& index, int number)
{
    if (number < 0 || static_cast<std::size_t>(number) >= index.axes.size()) return {};
    const axis_row& row = index.axes[static_cast<std::size_t>(number)];
    if (row.count < 2) return {};
    const double step = std::fabs(row.stop - row.start) / static_cast<double>(row.count - 1);
    return {std::min(row.start, row.stop), step, quantity(index, row.name).units.c_str()};
}

} // namespace

base::read_result<mdt_content> read_mdt_points(source& file, const mdt_frame& frame)
{
    const auto table = read_blocks(file, frame);
    if (!table) return table.error();
    index_parser index;
    std::istringstream xml(read_text(file, *table, "index.xml"));
    if (!index.load_xml(xml)) return base::read_error{frame.offset, "index.xml cannot be read: " + index.get_error()};
    std::map<std::string, std::string> strings;
    add_xml_strings(to_utf8(read_text(file, *table, "__xmlparams.xml")), strings);
    strings["\\Date"] = frame.date;
    std::string places;
    for (const point_row& point : index.points) places += (places.empty() ? "" : "; ") + point.place;
    mdt_content content;
    for (const spectrum_group& group : read_groups(file, *table, index)) {
        if (!is_modest_padding(group.curves)) return base::read_error{frame.offset, "curves of too different lengths"};
        const quantity_row measured = quantity(index, group.name);
        const std::string label = measured.name.empty() ? "Curve" : measured.name;
        recorded_image image = make_curve_group(
            label, label, axis_of(index, group.axis),
            {1.0, 0.0, measured.units, "index.xml, frame " + std::to_string(frame.number)}, group.curves);
        image.strings.insert(strings.begin(), strings.end());
        if (!places.empty()) image.strings["Points"] = places;
        content.emplace_back(std::move(image));
    }
    if (content.empty()) return base::read_error{frame.offset, "index.xml names no curve that is there"};
    return content;
}

} // namespace formats
