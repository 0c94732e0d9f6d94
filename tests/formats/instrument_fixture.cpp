#include "instrument_fixture.h"

#include "formats/shared/finish_recording.h"
#include "recorded_values.h"

#include "base/text.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace instrument_fixture {

bool folder_source::read(std::uint64_t offset, std::span<std::byte> out)
{
    return formats::memory_source(std::as_bytes(std::span(files.at(fileName)))).read(offset, out);
}

std::unique_ptr<formats::source> folder_source::sibling(const std::string& other)
{
    if (!files.contains(other)) return nullptr;
    return std::make_unique<folder_source>(files, other);
}

std::vector<std::string> folder_source::siblings()
{
    std::vector<std::string> names;
    for (const auto& [name, bytes] : files) names.push_back(name);
    std::ranges::reverse(names); // no reader may rely on their order
    return names;
}

folder load_files(const std::string& path)
{
    folder files;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(path, error)) {
        std::ifstream in(entry.path(), std::ios::binary);
        files[entry.path().filename().string()] = std::string(std::istreambuf_iterator<char>(in), {});
    }
    return files;
}

base::read_result<formats::recording> read(reader read, const std::string& bytes, const std::string& name)
{
    // A block of its own, so that the sanitizer sees its end.
    const std::vector<char> copy(bytes.begin(), bytes.end());
    formats::memory_source file(std::as_bytes(std::span(copy)), name);
    return read(file);
}

base::read_result<formats::recording> read(reader read, const folder& files, const std::string& name)
{
    folder_source file(files, name);
    return read(file);
}

void expect_refused(reader read_, const std::vector<refused_file>& rows)
{
    for (const refused_file& row : rows) {
        const auto result = formats::finish_recording(read(read_, row.bytes));
        EXPECT_NE((result ? "it was read" : result.error().reason).find(row.reason), std::string::npos)
            << row.reason << " is not what was told: " << (result ? "it was read" : result.error().reason);
    }
}

SupportedFileTypes type_of(const std::string& bytes, const std::string& name)
{
    const auto head = std::as_bytes(std::span(bytes)).first(std::min(bytes.size(), formats::sniffBytes));
    const formats::format_row* row = formats::find_format(head, name);
    return row ? row->type : FILE_UNKNOWN;
}

bytes_builder& bytes_builder::text(std::string_view bytes)
{
    if (content.size() < position + bytes.size()) content.resize(position + bytes.size());
    std::copy(bytes.begin(), bytes.end(), content.begin() + static_cast<std::ptrdiff_t>(position));
    position += bytes.size();
    return *this;
}

bytes_builder& bytes_builder::seek(std::size_t offset)
{
    if (content.size() < offset) content.resize(offset);
    position = offset;
    return *this;
}

bytes_builder& bytes_builder::replace(std::string_view from, std::string_view to)
{
    const std::size_t at = content.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    if (at != std::string::npos) content.replace(at, from.size(), to);
    return *this;
}

bytes_builder seed(const std::string& path)
{
    std::ifstream in(VLDV_TEST_DATA "/" + path, std::ios::binary);
    bytes_builder file;
    file.content.assign(std::istreambuf_iterator<char>(in), {});
    EXPECT_FALSE(file.content.empty()) << path;
    return file;
}

const formats::recorded_image& image_at(const base::read_result<formats::recording>& result, std::size_t index)
{
    static const formats::recorded_image none;
    EXPECT_TRUE(result) << result.error().reason;
    if (!result) return none;
    EXPECT_LT(index, result->items.size());
    return index < result->items.size() ? std::get<formats::recorded_image>(result->items[index]) : none;
}

std::vector<int> raw_of(const formats::recorded_image& image)
{
    if (image.stream.array_type() != SPM_ARRAY_INT16) return {};
    const auto* raw = static_cast<const std::int16_t*>(image.stream.array_data());
    return {raw, raw + image.stream.array_length()};
}

std::vector<double> physical_of(const SPMDataStream& stream) { return formats::physical(stream); }

std::vector<double> physical_of(const formats::recorded_image& image) { return formats::physical(image.stream); }

std::vector<std::string> subimages_of(const formats::recorded_image& image)
{
    std::vector<std::string> names;
    for (const smart_string& name : image.stream.subimage_names()) names.emplace_back(name.text ? name.text : "");
    return names;
}

std::string axis_text(const formats::recorded_image& image, unsigned dimension)
{
    if (dimension >= image.stream.get_dimensions_number()) return "none";
    const VLAxis& axis = image.stream.get_dimension(dimension).get_axis(0);
    return base::general(axis.start) + " " + base::general(axis.scale) + " " + axis.get_units();
}

namespace {

/// The shortest decimal within `error` of a value.
std::string shortest_within(double value, double error)
{
    char text[32];
    double rounded = value;
    for (int digits = 1; digits <= 15; ++digits) {
        std::snprintf(text, sizeof text, "%.*g", digits, value);
        rounded = std::strtod(text, nullptr);
        if (std::fabs(rounded - value) <= error) break;
    }
    std::snprintf(text, sizeof text, "%.15g", rounded); // 10, not 1e+01
    return text;
}

std::string values_told(const formats::recorded_image& image)
{
    const std::vector<double> values = physical_of(image);
    if (values.empty()) return {};
    const auto [low, high] = std::ranges::minmax(values);
    const double step = std::fabs(image.stream.values.get_axis(0).scale);
    const bool isFitted = step < 1e-4 * (high - low);
    const double error = isFitted ? 0.5001 * step : 1e-9 * std::max(std::fabs(low), std::fabs(high));
    std::string text = ":";
    for (const double value : values) text += " " + (std::fabs(value) <= error ? "0" : shortest_within(value, error));
    return text;
}

} // namespace

std::string told(const formats::recorded_image& image)
{
    const SPMDataStream& stream = image.stream;
    const auto unit = [](const VLAxis& axis) { return std::string(axis.get_units()); };
    std::string text = stream.get_description();
    if (const std::string values = unit(stream.values.get_axis(0)); !values.empty()) text += " [" + values + "]";
    for (unsigned i = 0; i < stream.get_dimensions_number(); ++i) {
        const VLAxis& axis = stream.get_dimension(i).get_axis(0);
        text += (i == 0 ? " (" : "; ") + std::to_string(stream.get_dimension(i).length);
        if (axis == VLAxis()) continue;
        text += ": " + base::general(axis.start) + " + " + base::general(axis.scale);
        if (!unit(axis).empty()) text += " " + unit(axis);
    }
    text += ")";
    const std::vector<std::string> parts = subimages_of(image);
    for (std::size_t i = 0; i < parts.size(); ++i) text += (i == 0 ? " {" : ", ") + parts[i];
    if (!parts.empty()) text += "}";
    if (const char* over = stream.get_parameter_stream()) text += " over " + std::string(over);
    return text + values_told(image);
}

std::string told(const base::read_result<formats::recording>& result)
{
    if (!result) return result.error().reason;
    std::string text;
    for (std::size_t i = 0; i < result->items.size(); ++i) text += (i == 0 ? "" : "\n") + told(image_at(result, i));
    return text;
}

void expect_image(const formats::recorded_image& image, const expected_image& expected)
{
    const SPMDataStream& stream = image.stream;
    SCOPED_TRACE(stream.get_description());
    for (const auto& [key, text] : expected.strings) {
        const auto found = image.strings.find(key);
        EXPECT_EQ(found == image.strings.end() ? "" : found->second, text) << key;
    }
    if (expected.values.empty()) return;
    const std::vector<double> values = physical_of(image);
    ASSERT_EQ(values.size(), expected.values.size());
    const double error = expected.isFitted ? 0.5001 * std::fabs(stream.values.get_axis(0).scale) : 0.0;
    for (std::size_t i = 0; i < values.size(); ++i) EXPECT_NEAR(values[i], expected.values[i], error) << i;
}

void expect_cuts_refused(reader read, const std::string& bytes, std::size_t spare)
{
    for (std::size_t length = 0; length + spare < bytes.size(); ++length) {
        const auto result = instrument_fixture::read(read, bytes.substr(0, length));
        ASSERT_FALSE(result && result->warnings.empty()) << length << " of " << bytes.size() << " bytes were taken";
        ASSERT_FALSE(!result && result.error().reason.empty()) << length;
    }
}

} // namespace instrument_fixture
