#include "surface/figures/measure/statistics_text.h"

#include "base/streams/axis_units.h"
#include "base/text.h"
#include "base/text/decimals.h"
#include "base/units.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>

namespace vldv::surface {

namespace {

constexpr int allDigits = 6;

std::string text_of(const statistics_row& row, const std::string& number)
{
    return row.name + ": " + number + (row.units.empty() ? "" : " " + row.units);
}

std::string plain_text(const statistics_row& row, int decimals)
{
    return text_of(row, base::with_decimals(row.value, decimals));
}

/// Rows whose numbers are written alike.
using row_group = std::vector<const statistics_row*>;

/// Trailing zeros that all numbers have say nothing.
int without_zeros(const row_group& rows, int decimals)
{
    const auto endsInZero = [&](const statistics_row* row) {
        return base::with_decimals(row->value, decimals).ends_with('0');
    };
    while (decimals > 0 && std::ranges::all_of(rows, endsInZero)) --decimals;
    return decimals;
}

constexpr int smallestPlace = -4; ///< of the first digit of a number that stands plainly

/// Decimals that show so many digits of a number.
int decimals_for(double value, int digits) { return std::max(digits - 1 - base::decimal_exponent(value), 0); }

/// With how many decimals the rows stand plainly.
/// \param scale  the number of which at most six digits are shown
/// \param least   decimals below which nothing is cut
/// \return nothing where plain numbers would be too long for anyone to read
std::optional<int> plain_decimals(const row_group& rows, double scale, int least, const text_fits& fits)
{
    constexpr int longest = 15; // digits before the point
    const auto isPlain = [](const statistics_row* row) {
        return std::isfinite(row->value) && base::decimal_exponent(row->value) < longest;
    };
    if (base::decimal_exponent(scale) < smallestPlace || !std::ranges::all_of(rows, isPlain)) return std::nullopt;
    int decimals = without_zeros(rows, decimals_for(scale, allDigits));
    // What has no room at all takes no digits from the others.
    const auto fitsWith = [&](int count) {
        return [&fits, count](const statistics_row* row) { return fits(plain_text(*row, count)); };
    };
    row_group fitting = rows;
    std::erase_if(fitting, std::not_fn(fitsWith(least)));
    if (fitting.empty()) return least;
    while (decimals > least && !std::ranges::all_of(fitting, fitsWith(decimals))) --decimals;
    return without_zeros(rows, decimals);
}

/// The number with an exponent where it is shorter so, in as many digits as have room.
/// \return the shortest where none fits
std::string exponent_text(const statistics_row& row, const text_fits& fits)
{
    std::string text;
    for (int digits = allDigits; digits > 0; --digits) {
        text = text_of(row, base::formatted("%.*G", digits, row.value));
        if (fits(text)) break;
    }
    return text;
}

/// A row by itself.
std::string single_text(const statistics_row& row, const text_fits& fits)
{
    const std::optional<int> decimals = plain_decimals({&row}, row.value, decimals_for(row.value, 1), fits);
    if (!decimals) return exponent_text(row, fits);
    const std::string plain = plain_text(row, *decimals), text = fits(plain) ? plain : exponent_text(row, fits);
    return fits(text) ? text : plain;
}

/// Range and roughness count from nothing, so that their own digits matter, not those of the heights.
bool is_span(const statistics_row& row) { return row.name.starts_with('R'); }

/// Decimals of a span that leave it three digits, fewer where the others are zeros.
int least_decimals(const statistics_row& row)
{
    constexpr int readDigits = 3;
    return std::min(decimals_for(row.value, readDigits), without_zeros({&row}, decimals_for(row.value, allDigits)));
}

/// A span has at least its own digits, as far as they have room.
std::string span_text(const statistics_row& row, int shared, const text_fits& fits)
{
    if (base::decimal_exponent(row.value) < smallestPlace) return exponent_text(row, fits);
    const int least = least_decimals(row), first = decimals_for(row.value, 1);
    const std::string text = plain_text(row, std::max(shared, least));
    return fits(text) ? text : plain_text(row, plain_decimals({&row}, row.value, first, fits).value_or(least));
}

/// The heights of the panel, all in one unit.
struct height_rows {
    std::vector<statistics_row> rows;
    double range = 0.0, largest = 0.0;

    [[nodiscard]] row_group group() const
    {
        row_group all;
        for (const statistics_row& row : rows) all.push_back(&row);
        return all;
    }
    [[nodiscard]] double scale() const { return range != 0.0 ? range : largest; }
};

height_rows heights_of(std::span<const statistics_row> rows)
{
    height_rows heights;
    for (const statistics_row& row : rows) {
        if (!row.isHeight) continue;
        heights.rows.push_back(row);
        heights.largest = std::max(heights.largest, std::fabs(row.value));
        if (row.name == "Rmax") heights.range = row.value;
    }
    return heights;
}

/// Heights in the unit in which the largest of them reads well.
height_rows in_largest_unit(height_rows heights)
{
    for (statistics_row& row : heights.rows) {
        const std::string units = readable_units(row.units.c_str(), heights.largest);
        row.value = convert_size(row.units.c_str(), units.c_str(), row.value);
        row.units = units;
    }
    return heights_of(heights.rows);
}

std::vector<std::string> plain_texts(const height_rows& heights, int decimals, const text_fits& fits)
{
    std::vector<std::string> texts;
    for (const statistics_row& row : heights.rows)
        texts.push_back(is_span(row) ? span_text(row, decimals, fits) : plain_text(row, decimals));
    return texts;
}

/// With exponents, all in as many digits as have room.
std::vector<std::string> exponent_texts(const height_rows& heights, const text_fits& fits)
{
    std::vector<std::string> texts;
    for (int digits = allDigits; digits > 0; --digits) {
        texts.clear();
        for (const statistics_row& row : heights.rows)
            texts.push_back(text_of(row, base::formatted("%.*G", digits, row.value)));
        if (std::ranges::all_of(texts, fits)) break;
    }
    return texts;
}

/// In the unit in which the range reads well, or where the heights are too long there, in that of the largest: then
/// digits of the range go from the heights themselves, and stay in range and roughness.
std::vector<std::string> height_texts(const height_rows& heights, const text_fits& fits)
{
    if (heights.rows.empty()) return {};
    const double scale = heights.scale();
    const auto decimals = plain_decimals(heights.group(), scale, decimals_for(scale, 1), fits);
    if (decimals) {
        std::vector<std::string> texts = plain_texts(heights, *decimals, fits);
        if (std::ranges::all_of(texts, fits)) return texts;
    }
    const height_rows larger = in_largest_unit(heights);
    const double place = std::max(larger.scale(), std::pow(10.0, smallestPlace));
    const auto fewer = plain_decimals(larger.group(), place, 0, fits);
    return fewer ? plain_texts(larger, *fewer, fits) : exponent_texts(heights, fits);
}

} // namespace

std::vector<std::string> row_texts(std::span<const statistics_row> rows, const text_fits& fits)
{
    const std::vector<std::string> heights = height_texts(heights_of(rows), fits);
    std::size_t height = 0;
    std::vector<std::string> texts;
    for (const statistics_row& row : rows)
        if (row.name.empty())
            texts.push_back(row.units + ":");
        else
            texts.push_back(row.isHeight ? heights[height++] : single_text(row, fits));
    return texts;
}

} // namespace vldv::surface
