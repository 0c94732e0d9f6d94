#include "base/SPMDataStream.h"

#include "base/streams/stream_fitting.h"
#include "base/text.h"
#include "base/text/six_digits.h"
#include "base/variables/declaration.h"

#include <algorithm>
#include <cassert>
#include <cmath>

using namespace vldv;

namespace {

unsigned copy_names(const std::vector<smart_string>& names, smart_string* out, unsigned max)
{
    const unsigned count = static_cast<unsigned>(names.size());
    if (!out) return count;
    const unsigned copied = std::min(count, max);
    std::copy_n(names.begin(), copied, out);
    return copied;
}

std::string axis_words(const char* kind, const VLAxis& axis)
{
    return std::string(kind) + " " + base::shortest(axis.start) + " " + base::shortest(axis.scale) + " " +
           base::encode_word(axis.get_units()) + " ";
}

VLAxis take_axis(std::string_view& words)
{
    const auto start = base::whole_number(base::take_word(words));
    const auto scale = base::whole_number(base::take_word(words));
    const std::string units = base::take_word(words);
    return {start.value_or(0.0), scale.value_or(1.0), units.c_str()};
}

unsigned take_count(std::string_view& words)
{
    const auto count = base::whole_integer(base::take_word(words));
    return count && *count >= 0 && *count <= 0xffffffffLL ? static_cast<unsigned>(*count) : 0;
}

} // namespace

void SPMDataStream::Init(const char* text)
{
    const base::declaration source = base::parse_declaration(text ? text : "");
    declare(source);
    // Each kind of word takes the words that belong to it. An "axis" belongs to the last "dimension" before it. A word
    // of no known kind is passed over.
    for (std::string_view words = source.shape; !words.empty();) {
        const std::string kind = base::take_word(words);
        if (kind == "value")
            values.set_axis(values.get_axes_number(), take_axis(words));
        else if (kind == "dimension")
            dimensions.emplace_back().length = take_count(words);
        else if (kind == "axis" && !dimensions.empty())
            dimensions.back().set_axis(dimensions.back().get_axes_number(), take_axis(words));
        else if (kind == "subimage")
            subimageNames.emplace_back(base::take_word(words));
        else if (kind == "depends")
            dependentNames.emplace_back(base::take_word(words));
        else if (kind == "parameter")
            set_parameter_stream(base::take_word(words).c_str());
        else if (kind == "offset")
            offset = take_count(words);
    }
}

void SPMDataStream::Destroy() noexcept
{
    SPMVar::Destroy();
    values = {};
    dimensions.clear();
    subimageNames.clear();
    dependentNames.clear();
    parameterStream = {};
    offset = 0;
}

std::string SPMDataStream::shape_words() const
{
    std::string words;
    for (unsigned i = 0; i < values.get_axes_number(); ++i) words += axis_words("value", values.get_axis(i));
    for (const dimension& each : dimensions) {
        words += "dimension " + std::to_string(each.length) + " ";
        for (unsigned i = 0; i < each.get_axes_number(); ++i) words += axis_words("axis", each.get_axis(i));
    }
    for (const smart_string& each : subimageNames) words += "subimage " + base::encode_word(each.c_str()) + " ";
    for (const smart_string& each : dependentNames) words += "depends " + base::encode_word(each.c_str()) + " ";
    if (get_parameter_stream()) words += "parameter " + base::encode_word(get_parameter_stream()) + " ";
    if (offset != 0) words += "offset " + std::to_string(offset) + " ";
    if (!words.empty()) words.pop_back();
    return words;
}

void SPMDataStream::set_dimension(unsigned index, const dimension& source)
{
    assert(index <= dimensions.size() && "dimensions are added one at a time");
    if (index == dimensions.size())
        dimensions.push_back(source);
    else if (index < dimensions.size())
        dimensions[index] = source;
}

unsigned SPMDataStream::get_subimage_names(smart_string* out, unsigned max) const
{
    return copy_names(subimageNames, out, max);
}

void SPMDataStream::set_subimage_names(const smart_string* names, unsigned count)
{
    subimageNames = std::vector<smart_string>(names, names + count);
}

void SPMDataStream::set_subimage_names(const char** names, unsigned count)
{
    subimageNames = std::vector<smart_string>(names, names + count);
}

unsigned SPMDataStream::get_dependent_vars(smart_string* out, unsigned max) const
{
    return copy_names(dependentNames, out, max);
}

void SPMDataStream::set_dependent_vars(const smart_string* names, unsigned count)
{
    dependentNames = std::vector<smart_string>(names, names + count);
}

void SPMDataStream::set_dependent_vars(const char** names, unsigned count)
{
    dependentNames = std::vector<smart_string>(names, names + count);
}

void SPMDataStream::set_parameter_stream(const char* streamName)
{
    parameterStream = streamName && *streamName ? smart_string(streamName) : smart_string();
}

void SPMDataStream::convert_stream(SPMVarArrayType target)
{
    if (target == array_type() || element_size(target) == 0 || element_size(array_type()) != array_element_size())
        return;
    base::fit_stream(*this, target, base::find_element_range(*this));
}

bool base::fits_as_it_stands(const element_range& range, SPMVarArrayType target) noexcept
{
    double lowest = 0.0, highest = 0.0;
    return integer_limits(target, lowest, highest) && range.allWhole &&
           (!range.anyFinite || (range.lowest >= lowest && range.highest <= highest));
}

void base::fit_stream(SPMDataStream& stream, SPMVarArrayType target, const element_range& range)
{
    double lowest = 0.0, highest = 0.0;
    if (!integer_limits(target, lowest, highest) || fits_as_it_stands(range, target))
        return rewrite_elements(stream, target, nullptr);

    VLAxesContainer& values = stream.values;
    const VLAxis old = values.get_axes_number() ? values.get_axis(0) : VLAxis();
    const double first = old.at(range.lowest), second = old.at(range.highest);
    if (old.scale == 0.0 || !std::isfinite(first) || !std::isfinite(second)) {
        // No physical meaning to keep: the numbers alone are mapped.
        stream.convert_array(target, nullptr, nullptr);
        return;
    }
    const raw_axis axis = six_digit_axis(std::min(first, second), std::max(first, second), lowest, highest);
    // A physical value is start + raw * scale; both axes say the same one. The new axis has six digits, as files write
    // them, and the samples are rounded to exactly that axis.
    // raw = (start + v * scale - newStart) / newScale
    const element_map map{0.0, (old.start - axis.start) / axis.scale, old.scale / axis.scale};
    rewrite_elements(stream, target, &map);
    // Further axes read the same raw numbers. The old number in terms of the new one is (newStart - start) / scale +
    // raw * newScale / scale; put into theirs, its first part moves their start and its factor their scale.
    for (unsigned i = 1; i < values.get_axes_number(); ++i) {
        VLAxis other = values.get_axis(i);
        other.start += other.scale * ((axis.start - old.start) / old.scale);
        other.scale *= axis.scale / old.scale;
        values.set_axis(i, other);
    }
    VLAxis renewed = old;
    renewed.start = axis.start;
    renewed.scale = axis.scale;
    values.set_axis(0, renewed);
}
