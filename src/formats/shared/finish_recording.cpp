#include "formats/shared/finish_recording.h"

#include "base/streams/element_access.h"
#include "formats/shared/left_out.h"
#include "formats/shared/stream_shape.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace vldv::formats {

namespace {

std::string quoted(const recorded_image& image)
{
    const char *label = image.stream.get_description(), *id = image.stream.get_name();
    return "\"" + std::string(label && *label ? label : id ? id : "") + "\"";
}

/// Why an axis cannot place anything, or empty.
std::string axis_problem(const VLAxis& axis, const std::string& name)
{
    const auto wrong = [&](const char* what, const char* how) { return what + (" of " + name + how); };
    for (const auto& [number, what] : {std::pair{axis.scale, "the scale"}, std::pair{axis.start, "the start"}}) {
        if (std::isnan(number)) return wrong(what, " is no number");
        if (std::isinf(number)) return wrong(what, " is infinite");
        if (std::fabs(number) >= absurdMagnitude) return wrong(what, " is 1e30 or more");
    }
    if (axis.scale == sideBelowZero) return wrong("the scale", " is below 0");
    return axis.scale == 0.0 ? wrong("the scale", " is 0") : std::string();
}

std::string axes_problem(const VLAxesContainer& axes, const std::string& name)
{
    std::string problem;
    for (unsigned i = 0; i < axes.get_axes_number() && problem.empty(); ++i)
        problem = axis_problem(axes.get_axis(i), name);
    return problem;
}

/// What the header tells the scale of the values by, as the reader noted it; empty when it did not.
std::string told_by(const recorded_image& image)
{
    constexpr std::string_view mark = " from ";
    const auto text = image.strings.find("\\Z scale");
    const std::size_t at = text == image.strings.end() ? std::string::npos : text->second.find(mark);
    const std::string origin = at == std::string::npos ? std::string() : text->second.substr(at + mark.size());
    return origin.empty() || origin == unknownOrigin ? std::string() : ": it is told by " + origin;
}

/// Why an image cannot be used, or empty.
std::string image_problem(const recorded_image& image)
{
    const SPMDataStream& stream = image.stream;
    std::string problem = axes_problem(stream.values, "the values");
    if (!problem.empty()) problem += told_by(image);
    for (unsigned i = 0; i < stream.get_dimensions_number() && problem.empty(); ++i) {
        const SPMDataStream::dimension& side = stream.get_dimension(i);
        const std::string name = "axis " + std::to_string(i + 1);
        problem = side.length == 0 ? "the length of " + name + " is 0" : axes_problem(side, name);
    }
    return problem;
}

/// Takes out what has no place in space or no values. \return the first reason, or empty
std::string leave_out_unusable(recording& read)
{
    std::string first;
    std::erase_if(read.items, [&](const auto& item) {
        const auto* image = std::get_if<recorded_image>(&item);
        std::string problem = image ? image_problem(*image) : std::string();
        if (problem.empty()) return false;
        for (const std::string& note : image->notes) problem += (&note == &image->notes.front() ? ": " : "; ") + note;
        if (first.empty()) first = quoted(*image) + ": " + problem;
        add_warning(read, quoted(*image) + " is left out: " + problem);
        return true;
    });
    return first;
}

/// Streams whose parameter stream was left out run over their point numbers.
void drop_lost_parameters(recording& read)
{
    const auto isThere = [&](const char* id) {
        return std::ranges::any_of(read.items, [&](const auto& item) {
            const auto* image = std::get_if<recorded_image>(&item);
            return image && std::string_view(image->stream.get_name()) == id;
        });
    };
    for (auto& item : read.items) {
        auto* image = std::get_if<recorded_image>(&item);
        const char* parameter = image ? image->stream.get_parameter_stream() : nullptr;
        if (parameter && !isThere(parameter)) image->stream.set_parameter_stream(nullptr);
    }
}

void collect_notes(recording& read)
{
    for (auto& item : read.items) {
        auto* image = std::get_if<recorded_image>(&item);
        if (!image) continue;
        for (const std::string& note : image->notes) add_warning(read, quoted(*image) + ": " + note);
        image->notes.clear();
    }
}

/// Raw numbers that a and its mirror image add up to: -1 for signed numbers, so that the lowest one has a partner.
template <class T>
constexpr T mirrorSum = std::is_floating_point_v<T> ? T{0}
                        : std::is_signed_v<T>       ? static_cast<T>(-1)
                                                    : std::numeric_limits<T>::max();

template <class T>
void mirror(SPMDataStream& stream)
{
    auto* const samples = static_cast<T*>(stream.array_data());
    for (unsigned i = 0; i < stream.array_length(); ++i) samples[i] = static_cast<T>(mirrorSum<T> - samples[i]);
    for (unsigned i = 0; i < stream.values.get_axes_number(); ++i) {
        VLAxis axis = stream.values.get_axis(i);
        axis.start += static_cast<double>(mirrorSum<T>) * axis.scale;
        axis.scale = -axis.scale;
        stream.values.set_axis(i, axis);
    }
}

} // namespace

void make_step_positive(SPMDataStream& stream)
{
    if (stream.values.get_axes_number() == 0 || !(stream.values.get_axis(0).scale < 0.0)) return;
    if (element_size(stream.array_type()) != stream.array_element_size()) return;
    base::with_element_type(stream.array_type(),
                            [&](auto* element) { mirror<std::remove_pointer_t<decltype(element)>>(stream); });
}

void leave_note(recording& out, const std::string& key, const std::string& text)
{
    out.strings[key] = text;
    add_warning(out, key + ": " + text);
}

base::read_result<recording> finish_recording(base::read_result<recording> read)
{
    if (!read) return read;
    const std::string problem = leave_out_unusable(*read);
    if (read->items.empty() && !problem.empty()) return base::read_error{0, problem};
    drop_lost_parameters(*read);
    for (auto& item : read->items)
        if (auto* image = std::get_if<recorded_image>(&item)) make_step_positive(image->stream);
    collect_notes(*read);
    return read;
}

} // namespace vldv::formats
