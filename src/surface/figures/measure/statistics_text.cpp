#include "surface/figures/measure/statistics_text.h"

#include "base/text.h"
#include "base/text/decimals.h"

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
/// \param scale  the number of which at most six digits are shown, and at least the first
/// \return nothing where plain numbers would be too long for anyone to read
std::optional<int> plain_decimals(const row_group& rows, double scale, const text_fits& fits)
{
    constexpr int longest = 15; // digits before the point
    const auto isPlain = [](const statistics_row* row) {
        return std::isfinite(row->value) && base::decimal_exponent(row->value) < longest;
    };
    if (base::decimal_exponent(scale) < smallestPlace || !std::ranges::all_of(rows, isPlain)) return std::nullopt;
    const int least = decimals_for(scale, 1);
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

/// A row by itself.
std::string single_text(const statistics_row& row, const text_fits& fits)
{
    const std::optional<int> decimals = plain_decimals({&row}, row.value, fits);
    const std::string plain = decimals ? plain_text(row, *decimals) : "";
    if (decimals && fits(plain)) return plain;
    std::string text;
    for (int digits = allDigits; digits > 0; --digits) {
        text = text_of(row, base::formatted("%.*G", digits, row.value));
        if (fits(text)) return text;
    }
    return decimals ? plain : text;
}

/// Decimals of the heights, by their range, or where there is none by the largest of them.
std::optional<int> height_decimals(std::span<const statistics_row> rows, const text_fits& fits)
{
    row_group heights;
    double range = 0.0, largest = 0.0;
    for (const statistics_row& row : rows) {
        if (!row.isHeight) continue;
        heights.push_back(&row);
        largest = std::max(largest, std::fabs(row.value));
        if (row.name == "Rmax") range = row.value;
    }
    if (heights.empty()) return std::nullopt;
    return plain_decimals(heights, range != 0.0 ? range : largest, fits);
}

/// Range and roughness count from nothing, so that their own digits matter, not those of the heights.
bool is_span(const statistics_row& row) { return row.name.starts_with('R'); }

/// Decimals of a span that leave it three digits, fewer where the others are zeros.
int least_decimals(const statistics_row& row)
{
    constexpr int readDigits = 3;
    return std::min(decimals_for(row.value, readDigits), without_zeros({&row}, decimals_for(row.value, allDigits)));
}

/// A span has at least its own digits.
std::string shared_text(const statistics_row& row, int shared, const text_fits& fits)
{
    if (!is_span(row)) return plain_text(row, shared);
    if (base::decimal_exponent(row.value) < smallestPlace) return single_text(reading_well(row), fits);
    const int least = least_decimals(row);
    const std::string text = plain_text(row, std::max(shared, least));
    return fits(text) ? text : plain_text(row, least);
}

/// \param shared  decimals of all heights
std::string height_text(const statistics_row& row, std::optional<int> shared, const text_fits& fits)
{
    const std::string text = shared ? shared_text(row, *shared, fits) : "";
    return shared && fits(text) ? text : single_text(reading_well(row), fits);
}

} // namespace

std::vector<std::string> row_texts(std::span<const statistics_row> rows, const text_fits& fits)
{
    const std::optional<int> decimals = height_decimals(rows, fits);
    std::vector<std::string> texts;
    for (const statistics_row& row : rows)
        if (row.name.empty())
            texts.push_back(row.units + ":");
        else
            texts.push_back(row.isHeight ? height_text(row, decimals, fits) : single_text(row, fits));
    return texts;
}

} // namespace vldv::surface
