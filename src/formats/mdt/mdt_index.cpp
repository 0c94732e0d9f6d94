#include "formats/mdt/mdt_index.h"

#include "base/VLXMLParser.h"
#include "base/text.h"
#include "formats/shared/header_text.h"
#include "formats/shared/sample_numbers.h"
#include "formats/shared/stated_number.h"
#include "formats/shared/text_units.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <sstream>
#include <utility>

namespace vldv::formats {

namespace {

using attributes = VLXMLParser::attributes;

std::string text_of(const attributes& found, const char* key)
{
    const auto entry = found.find(key);
    return entry == found.end() ? std::string() : clean_text(entry->second);
}

double number_of(const attributes& found, const char* key)
{
    const std::string stated = text_of(found, key);
    return stated.empty() ? 0.0 : lone_number(stated).value_or(std::nan(""));
}

int index_of(const attributes& found, const char* key)
{
    const auto number = stated_count(text_of(found, key), 999'999);
    return number ? static_cast<int>(*number) : -1;
}

std::uint64_t count_of(const attributes& found, const char* key)
{
    return stated_count(text_of(found, key)).value_or(0);
}

class index_parser : public VLXMLParser {
public:
    index_parser(source& file_, double done_) : file(file_), done(done_) {}

    void init() override
    {
        add_start_handler("Name", &index_parser::onName);
        add_start_handler("Axis", &index_parser::onAxis);
        add_start_handler("Data", &index_parser::onData);
        add_start_handler("Meas", &index_parser::onMeas);
        add_start_handler("Point", &index_parser::onPoint);
    }

    mdt_index index;

private:
    void onName(const char*, const attributes& found)
    {
        index.quantities.push_back({text_of(found, "name"), normal_unit(text_of(found, "unit"))});
    }
    void onAxis(const char*, const attributes& found)
    {
        index.axes.push_back(
            {index_of(found, "name"), count_of(found, "count"), number_of(found, "start"), number_of(found, "stop")});
    }
    void onData(const char*, const attributes& found)
    {
        index.data.push_back(
            {text_of(found, "name"), text_of(found, "type"), count_of(found, "offset"), count_of(found, "count")});
        tellProgress();
    }
    void onMeas(const char*, const attributes& found)
    {
        index.measurements.push_back({index_of(found, "name"), index_of(found, "data"), index_of(found, "axis0"),
                                      index_of(found, "pass"), index_of(found, "inverse0") == 1});
        tellProgress();
    }
    void onPoint(const char*, const attributes& found)
    {
        const std::string place =
            text_of(found, "x") + " " + text_of(found, "y") + " " + normal_unit(text_of(found, "unit"));
        index.points.push_back({std::string(base::trimmed(place)), text_of(found, "name"), count_of(found, "offset")});
        tellProgress();
    }
    void tellProgress()
    {
        constexpr unsigned rowsBetween = 4096;
        if (++rows % rowsBetween == 0 && !file.progress(done)) fail("reading was cancelled");
    }

    source& file;
    double done;
    unsigned rows = 0;
};

} // namespace

base::read_result<mdt_blocks> read_mdt_blocks(source& file, const mdt_frame& frame)
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
    mdt_blocks result;
    std::uint64_t at = namesAt + allNames;
    const char* name = reinterpret_cast<const char*>(names.data());
    for (std::uint32_t i = 0; i < count; ++i) {
        if (dataBytes[i] > frame.size - at) return refuse("a block lies outside the frame");
        result.emplace(std::string(name, nameBytes[i]), mdt_block{frame.offset + at, dataBytes[i]});
        name += nameBytes[i];
        at += dataBytes[i];
    }
    return result;
}

std::string read_mdt_block_text(source& file, const mdt_blocks& blocks, const char* name)
{
    constexpr std::uint64_t maxTextBytes = 64u << 20;
    const auto found = blocks.find(name);
    if (found == blocks.end() || found->second.size > maxTextBytes) return {};
    std::string text(static_cast<std::size_t>(found->second.size), '\0');
    if (!file.read(found->second.offset, std::as_writable_bytes(std::span(text)))) text.clear();
    return text;
}

base::read_result<mdt_index> read_mdt_index(source& file, const mdt_frame& frame, const mdt_blocks& blocks)
{
    index_parser parser(file, frame.done);
    std::istringstream xml(read_mdt_block_text(file, blocks, "index.xml"));
    if (!parser.load_xml(xml)) return base::read_error{frame.offset, "index.xml cannot be read: " + parser.get_error()};
    return std::move(parser.index);
}

std::vector<std::size_t> points_of_measurements(source& file, const mdt_blocks& blocks, const mdt_index& index)
{
    std::map<std::pair<std::string, std::uint64_t>, std::size_t> lists; // by block and offset: the number of the point
    for (std::size_t i = 0; i < index.points.size(); ++i)
        lists.emplace(std::pair(index.points[i].block, index.points[i].offset), i + 1);
    std::vector<std::size_t> numbers(index.measurements.size());
    std::vector<std::byte> list;
    for (auto each = lists.begin(); each != lists.end(); ++each) {
        const auto& [name, from] = each->first;
        const auto block = blocks.find(name);
        if (block == blocks.end()) continue;
        std::uint64_t end = block->second.size;
        const auto next = std::next(each);
        if (next != lists.end() && next->first.first == name) end = std::min(end, next->first.second);
        if (from >= end) continue;
        const std::uint64_t count = std::min<std::uint64_t>((end - from) / sizeof(std::uint32_t), numbers.size());
        list.resize(static_cast<std::size_t>(count) * sizeof(std::uint32_t));
        if (!file.read(block->second.offset + from, list)) continue;
        base::byte_reader in(list);
        for (std::uint64_t i = 0; i < count; ++i)
            if (const std::uint32_t measurement = in.u32(); measurement < numbers.size())
                numbers[measurement] = each->second;
    }
    return numbers;
}

} // namespace vldv::formats
