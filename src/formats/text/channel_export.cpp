#include "formats/text/channel_export.h"

#include "base/text.h"
#include "formats/text/header_keys.h"
#include "formats/text/text_numbers.h"

#include <algorithm>
#include <cmath>

namespace vldv::formats {

namespace {

constexpr std::string_view mark = "# ";

bool is_size(std::string_view text)
{
    const auto size = parse_quantity(text);
    return size && !size->units.empty();
}

/// "1x.00 um", "abc um", "um": a unit last.
bool ends_with_unit(std::string_view text) { return is_known_unit(text.substr(text.rfind(' ') + 1)); }

/// A size of which a number or a unit is left.
bool is_left(std::string_view text) { return ends_with_unit(text) || (!text.empty() && is_digit(text.front())); }

bool is_field(std::string_view line) { return line.find(": ") != std::string_view::npos || line.ends_with(':'); }

std::string quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

/// The fields of a header, in the places where they belong.
struct export_fields {
    std::optional<key_value> channel, width, height, units;
    std::size_t lines = 0; ///< of the header that they take
    std::vector<std::string> notes;
    bool isOne = false; ///< enough of them is left to know the writer

    explicit export_fields(const header_lines& header);

private:
    void readLines(const header_lines& header);
    void joinTwins();
    void place();
    void placeThree();
    void noteNoUnit(const header_lines& header);

    std::vector<key_value> fields;
    std::size_t unmarked = 0;                     ///< of them
    std::optional<std::string_view> contradicted; ///< key of a size that is stated in two ways
};

export_fields::export_fields(const header_lines& header)
{
    readLines(header);
    joinTwins();
    place();
    if (isOne) noteNoUnit(header);
}

/// The leading fields; some of them may have lost their mark.
void export_fields::readLines(const header_lines& header)
{
    constexpr std::size_t mostFields = 5; // one of them stated twice
    for (const std::string& line : header) {
        if (fields.size() == mostFields || !is_field(line)) break;
        if (!line.starts_with(mark) && unmarked++ == 0)
            notes.push_back("the header line " + quoted(line) + " lacks its comment mark");
        fields.push_back(split_key(line));
        ++lines;
    }
}

/// Of a size that is stated twice neither counts, unless they agree.
void export_fields::joinTwins()
{
    for (std::size_t i = 2; i < std::min<std::size_t>(fields.size(), 4); ++i) {
        const key_value &first = fields[i - 1], &second = fields[i];
        if (!base::equal_ignoring_case(first.key, second.key)) continue;
        if (first.value != second.value) {
            contradicted = first.key;
            notes.push_back("the header states " + quoted(first.key) + " twice, " + quoted(first.value) + " and " +
                            quoted(second.value) + ": neither is taken, and points are counted");
        }
        fields.erase(fields.begin() + static_cast<std::ptrdiff_t>(i));
        return;
    }
}

void export_fields::place()
{
    if (fields.size() < 3) return;
    const std::string_view second = fields[1].value, third = fields[2].value;
    const bool hasFourth = fields.size() > 3;
    const bool areSizes = is_size(second) && is_size(third), isAnySize = is_size(second) || is_size(third);
    if (!areSizes && isAnySize && !hasFourth && unmarked < 2 && is_known_unit(third) &&
        !base::equal_ignoring_case(fields[2].key, "Height"))
        return placeThree();
    const bool hasUnits = hasFourth && is_known_unit(fields[3].value);
    if (unmarked > 1 && !(areSizes && hasUnits)) return; // of any writer
    isOne = areSizes || (hasUnits && (isAnySize || (is_left(second) && is_left(third)))) ||
            (isAnySize && ends_with_unit(is_size(second) ? third : second));
    channel = fields[0];
    if (fields[1].key != contradicted) width = fields[1];
    if (fields[2].key != contradicted) height = fields[2];
    if (hasFourth) units = fields[3];
}

/// Three fields, the last one the unit of the values: the name or a size is missing.
void export_fields::placeThree()
{
    isOne = true;
    units = fields[2];
    if (is_size(fields[0].value)) {
        width = fields[0];
        height = fields[1];
        notes.emplace_back("the header lacks the line of the channel's name");
        return;
    }
    channel = fields[0];
    const bool isWidth = base::equal_ignoring_case(fields[1].key, "Width");
    const bool isHeight = base::equal_ignoring_case(fields[1].key, "Height");
    if (isWidth) width = fields[1];
    if (isHeight) height = fields[1];
    notes.push_back("the header states one size of two, " + quoted(fields[1].key) + ": points are counted along " +
                    (isWidth    ? "y"
                     : isHeight ? "x"
                                : "both sides"));
}

void export_fields::noteNoUnit(const header_lines& header)
{
    if (!units && has_line(header, lines, mark)) {
        notes.push_back("the header line " + quoted(header[lines]) + " is damaged: the values have no unit");
        ++lines;
    } else if (!units) {
        notes.emplace_back("the header states no unit of the values");
    } else if (!is_known_unit(units->value)) {
        notes.push_back("the unit of the values, " + quoted(units->value) + ", is not known");
    }
}

/// A size that is no number stays one that is damaged.
std::optional<quantity> size_of(const std::optional<key_value>& field)
{
    if (!field) return std::nullopt;
    return stated_quantity(field->value).value_or(quantity{std::nan(""), {}, std::string()});
}

} // namespace

bool fits_channel_export(const header_lines& lines) { return export_fields(lines).isOne; }

void apply_channel_export(const header_lines& lines, table_header& header)
{
    const export_fields fields(lines);
    header.form = table_header::shape::matrix;
    if (fields.channel) header.channel = fields.channel->value;
    header.width = size_of(fields.width);
    header.height = size_of(fields.height);
    if (fields.units) {
        header.units = normal_unit(fields.units->value);
        header.origin = fields.units->key;
    }
    header.notes = fields.notes;
    for (std::size_t i = fields.lines; i < lines.size(); ++i)
        if (without_comment_mark(lines[i]) == base::trimmed(lines[i]))
            header.notes.push_back("the line " + quoted(std::string_view(lines[i]).substr(0, 40)) +
                                   " before the rows was passed over");
}

} // namespace vldv::formats
