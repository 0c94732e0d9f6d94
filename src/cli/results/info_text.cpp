#include "cli/results/info_text.h"

#include "base/streams/axis_units.h"
#include "base/text.h"
#include "base/text/decimals.h"
#include "base/units.h"
#include "cli/output/aligned.h"
#include "cli/output/reader_notes.h"
#include "cli/output/terminal.h"
#include "document/document_table.h"
#include "document/samples/measured_samples.h"
#include "document/samples/point_counts.h"
#include "formats/shared/format_notes.h"

#include <algorithm>
#include <cmath>
#include <iostream>

namespace vldv::cli {

namespace {

void print_head(const CStorageDoc& document, const std::wstring& path)
{
    std::cout << visible_text(base::narrow(path)) << "\n  " << formats::note_of(document.fileType).title << ", "
              << document.getFileSize() << " bytes, " << document.getImagesNumber() << " image"
              << (document.getImagesNumber() == 1 ? "" : "s") << '\n';
    for (const std::string& note : notes_of(document)) std::cout << "  note: " << note << '\n';
}

void print_strings(const CStorageDoc::string_table& strings, const char* indent)
{
    constexpr std::size_t shown = 100;
    for (const auto& [key, text] : strings) {
        std::string line = text.substr(0, text.find_first_of("\r\n"));
        if (line.size() > shown) line = base::valid_utf8(line.substr(0, shown));
        std::cout << indent << visible_text(key) << ": " << visible_text(line)
                  << (line.size() < text.size() ? " …" : "") << '\n';
    }
}

std::string axis_text(const VLAxis& axis)
{
    return "start " + base::general(axis.start) + ", step " + base::general(axis.scale) + " " +
           visible_text(axis.get_units());
}

void print_axes(const char* what, const VLAxesContainer& axes)
{
    for (unsigned i = 0; i < axes.get_axes_number(); ++i)
        std::cout << "    " << what << ": " << axis_text(axes.get_axis(i)) << '\n';
}

/// Both ends with as many digits as tell them apart.
std::string range_text(double low, double high, int fewest = 6)
{
    const int digits = base::telling_digits(std::max(std::fabs(low), std::fabs(high)), high - low, fewest);
    return base::general(low, digits) + " to " + base::general(high, digits);
}

void print_ranges(const CStorageDoc& document, unsigned image)
{
    const SPMDataStream& stream = document.getImage(image);
    const auto& names = stream.subimage_names();
    const VLAxis& values = document.getAxis(image, 0, unsigned(-1));
    document::measured_samples held(document, image);
    for (unsigned sub = 0; sub < document.getSubImagesNumber(image); ++sub) {
        const bool isInt16 = stream.array_type() == SPM_ARRAY_INT16;
        const std::optional<CMinMaxInfo> range = isInt16 ? held.rangeOf(sub) : std::nullopt;
        std::cout << "    sub-image " << sub;
        if (sub < names.size()) std::cout << " \"" << visible_text(names[sub].c_str()) << '"';
        if (range)
            std::cout << ": " << range_text(values.at(range->minimum), values.at(range->maximum)) << " "
                      << visible_text(values.get_units()) << " (raw " << range->minimum << " to " << range->maximum
                      << ")";
        else if (isInt16)
            std::cout << ": not measured";
        std::cout << '\n';
    }
}

void print_image(const CStorageDoc& document, unsigned image, bool withStrings)
{
    const SPMDataStream& stream = document.getImage(image);
    std::cout << "  image " << image << ": " << visible_text(stream.get_name()) << " \""
              << visible_text(stream.get_description()) << "\", ";
    for (unsigned i = 0; i < stream.get_dimensions_number(); ++i)
        std::cout << (i ? " x " : "") << stream.get_dimension(i).length;
    std::cout << " " << array_type_keyword(stream.array_type()) << '\n';
    for (unsigned i = 0; i < stream.get_dimensions_number(); ++i)
        print_axes(base::formatted("axis %u", i).c_str(), stream.get_dimension(i));
    print_axes("values", stream.values);
    if (const char* parameter = stream.get_parameter_stream())
        std::cout << "    measured against: " << visible_text(parameter) << '\n';
    for (const smart_string& name : stream.dependent_vars())
        std::cout << "    depends: " << visible_text(name.c_str()) << '\n';
    print_ranges(document, image);
    if (const std::size_t voids = document::unmeasured_points(document, image))
        std::cout << "    not measured: " << voids << " of " << stream.array_length() << " samples\n";
    if (withStrings) print_strings(document.strings(image), "    | ");
}

constexpr int tableDigits = 4;

std::string joined(const std::vector<std::string>& parts, const char* separator)
{
    std::string text;
    for (const std::string& part : parts) text += (text.empty() ? "" : separator) + part;
    return text;
}

std::string with_units(const std::string& number, const std::string& units)
{
    return units.empty() ? number : number + " " + units;
}

/// "512 x 512", with the type where it is not the usual one.
std::string samples_text(const SPMDataStream& stream)
{
    std::vector<std::string> lengths;
    for (unsigned i = 0; i < stream.get_dimensions_number(); ++i)
        lengths.push_back(std::to_string(stream.get_dimension(i).length));
    const std::string text = joined(lengths, " x ");
    return stream.array_type() == SPM_ARRAY_INT16 ? text : text + " " + array_type_keyword(stream.array_type());
}

/// "2 x 1.5 µm", "2 (no unit) x 1.5 µm", each in the unit that reads best; empty where the samples are only counted.
std::string extent_text(const SPMDataStream& stream)
{
    struct side {
        std::string number, units;
    };
    std::vector<side> sides;
    bool isCounted = true;
    for (unsigned i = 0; i < stream.get_dimensions_number(); ++i) {
        const VLAxis axis = stream.get_dimension(i).get_axes_number() ? stream.get_dimension(i).get_axis(0) : VLAxis();
        isCounted = isCounted && axis.scale == 1.0 && !*axis.get_units();
        const readable_number size =
            read_well(axis.get_units(), std::fabs(axis.scale) * stream.get_dimension(i).length, tableDigits);
        sides.push_back({base::general(size.value, tableDigits), size.units});
    }
    if (isCounted) return {};
    const bool shareUnits = std::ranges::all_of(sides, [&](const side& each) { return each.units == sides[0].units; });
    std::vector<std::string> texts;
    for (const side& each : sides)
        texts.push_back(shareUnits ? each.number
                                   : with_units(each.number, each.units.empty() ? "(no unit)" : each.units));
    return with_units(joined(texts, " x "), shareUnits ? sides[0].units : "");
}

/// "-1.5 to 2 nm" over all sub-images, and how many were not measured; empty when the samples are no heights.
std::string values_text(const CStorageDoc& document, unsigned image)
{
    const unsigned subs = document.getSubImagesNumber(image);
    if (document.getImage(image).array_type() != SPM_ARRAY_INT16 || subs == 0) return {};
    CMinMaxInfo range;
    bool any = false;
    document::measured_samples held(document, image);
    for (unsigned sub = 0; sub < subs; ++sub) {
        const std::optional<CMinMaxInfo> part = held.rangeOf(sub);
        if (!part) continue;
        range.minimum = any ? std::min(range.minimum, part->minimum) : part->minimum;
        range.maximum = any ? std::max(range.maximum, part->maximum) : part->maximum;
        any = true;
    }
    if (!any) return {};
    const VLAxis& axis = document.getAxis(image, 0, unsigned(-1));
    const auto [low, high] = std::minmax({axis.at(range.minimum), axis.at(range.maximum)});
    const double larger = std::max(std::fabs(low), std::fabs(high));
    const std::string units = readable_units(axis.get_units(), larger, tableDigits);
    const auto shown = [&](double value) { return convert_size(axis.get_units(), units.c_str(), value); };
    const std::size_t voids = document::unmeasured_points(document, image);
    if (voids != 0 && voids >= document.getImage(image).array_length()) return "none measured";
    return with_units(range_text(shown(low), shown(high), tableDigits), units) +
           (voids ? ", " + std::to_string(voids) + " not measured" : "");
}

/// Names of the sub-images, or how many there are; what a curve is drawn over; other meanings of the values.
std::string remarks(const CStorageDoc& document, unsigned image)
{
    constexpr std::size_t mostNames = 4;
    const SPMDataStream& stream = document.getImage(image);
    std::vector<std::string> parts, names, others;
    const unsigned subs = document.getSubImagesNumber(image);
    for (const smart_string& name : stream.subimage_names())
        if (names.size() < subs) names.emplace_back(name.c_str());
    if (!names.empty() && names.size() <= mostNames)
        parts.push_back(joined(names, ", "));
    else if (subs > 1)
        parts.push_back(std::to_string(subs) + " sub-images");
    if (const char* parameter = stream.get_parameter_stream(); parameter && *parameter)
        parts.push_back("over " + std::string(parameter));
    for (unsigned i = 1; i < stream.values.get_axes_number(); ++i) {
        const std::string units = stream.values.get_axis(i).get_units();
        if (std::ranges::find(others, units) == others.end()) others.push_back(units);
    }
    if (!others.empty()) parts.push_back("also in " + joined(others, ", "));
    return joined(parts, "; ");
}

} // namespace

void print_info_details(const CStorageDoc& document, const std::wstring& path, bool withStrings)
{
    print_head(document, path);
    if (withStrings) print_strings(document.strings(document::documentTable), "  | ");
    for (unsigned i = 0; i < document.getImagesNumber(); ++i) print_image(document, i, withStrings);
}

void print_info_table(const CStorageDoc& document, const std::wstring& path)
{
    print_head(document, path);
    std::vector<std::vector<std::string>> rows = {{"#", "image", "samples", "extent", "values", "parts"}};
    for (unsigned i = 0; i < document.getImagesNumber(); ++i) {
        const SPMDataStream& stream = document.getImage(i);
        rows.push_back({std::to_string(i), stream.get_description(), samples_text(stream), extent_text(stream),
                        values_text(document, i), remarks(document, i)});
    }
    if (rows.size() > 1) std::cout << aligned(rows, "  ");
}

} // namespace vldv::cli
