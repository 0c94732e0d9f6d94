#include "document/samples/point_counts.h"

#include "base/text.h"
#include "document/StorageDoc.h"
#include "document/document_table.h"
#include "document/samples/unmeasured_samples.h"
#include "formats/shared/left_out.h"
#include "formats/shared/void_ranges.h"

#include <cmath>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vldv::document {

namespace {

constexpr const char* keys[] = {"\\Void points", "\\Absurd points"};
constexpr std::string_view totalMark = " of ";

} // namespace

std::size_t unmeasured_points(const CStorageDoc& document, unsigned image)
{
    // The text is "COUNT" or "COUNT of SAMPLES". With another number of samples it tells of the image in another shape,
    // and counts for nothing.
    const std::string_view text = document.getString(keys[0], image);
    const std::size_t mark = text.find(totalMark), samples = document.getImage(image).array_length();
    const auto count = base::leading_number(text);
    if (!count || !(*count > 0 && *count < 1e18)) return 0;
    const bool isOfOtherSize =
        mark != std::string_view::npos && text.substr(mark + totalMark.size()) != std::to_string(samples);
    return isOfOtherSize ? 0 : static_cast<std::size_t>(*count);
}

namespace {

void drop_texts(CStorageDoc& document, unsigned table, std::initializer_list<const char*> dropped)
{
    auto kept = document.strings(table);
    const std::size_t before = kept.size();
    for (const char* const key : dropped) kept.erase(key);
    if (kept.size() == before) return;
    document.clearStrings(table);
    for (const auto& [key, text] : kept) document.setString(key.c_str(), text.c_str(), table);
}

void drop_point_counts(CStorageDoc& document, unsigned image)
{
    drop_texts(document, image, {keys[0], keys[1], formats::voidRangesKey});
}

/// The first sample of the part along a dimension, as its axis starts there.
std::optional<std::size_t> place_in(const SPMDataStream::dimension& part, const SPMDataStream::dimension& whole)
{
    if (part.get_axes_number() == 0 || whole.get_axes_number() == 0) return std::nullopt;
    const VLAxis inside = part.get_axis(0), all = whole.get_axis(0);
    const double place = std::round((inside.start - all.start) / all.scale);
    if (inside.scale != all.scale || !(place >= 0.0) || place + part.length > whole.length) return std::nullopt;
    return static_cast<std::size_t>(place);
}

/// What of the whole's runs lies in the rows of a part, numbered through the part.
std::vector<primitives::sample_run> runs_inside(const SPMDataStream& part, const CStorageDoc& whole, unsigned from)
{
    const SPMDataStream& source = whole.getImage(from);
    std::vector<primitives::sample_run> out;
    if (part.get_dimensions_number() != 2 || source.get_dimensions_number() != 2) return out;
    const auto left = place_in(part.get_dimension(0), source.get_dimension(0));
    const auto top = place_in(part.get_dimension(1), source.get_dimension(1));
    if (!left || !top) return out;
    const std::size_t width = part.get_dimension(0).length, height = part.get_dimension(1).length;
    const std::size_t row = source.get_dimension(0).length;
    const unmeasured_samples voids(whole, from);
    const std::size_t frames = width * height == 0 ? 0 : part.array_length() / (width * height);
    if (frames != whole.getSubImagesNumber(from)) return out;
    for (unsigned sub = 0; sub < frames && !voids.isEmpty(); ++sub) {
        const std::vector<primitives::sample_run> own = voids.of(sub);
        for (std::size_t y = 0; y < height; ++y) {
            const std::size_t first = (*top + y) * row + *left, to = (sub * height + y) * width;
            for (const primitives::sample_run& each : primitives::runs_within(first, first + width, own))
                out.push_back({each.first - first + to, each.count});
        }
    }
    return primitives::joined_runs(std::move(out));
}

std::string void_text(std::size_t samples, std::span<const primitives::sample_run> runs)
{
    std::vector<formats::void_range> ranges;
    for (const primitives::sample_run& each : runs) ranges.push_back({each.first, each.count});
    return formats::void_ranges_text(samples, std::move(ranges));
}

} // namespace

namespace {

/// What the reader said of points not measured was of the whole.
void drop_notes_of_points(CStorageDoc& part, unsigned table)
{
    const std::string notes = part.getString(formats::readerNote, table);
    std::string kept;
    for (const std::string_view line : base::split(notes, '\n'))
        if (line.find(formats::unmeasuredNote) == std::string_view::npos)
            kept = formats::with_note(kept, std::string(line));
    if (kept.empty()) return drop_texts(part, table, {formats::readerNote});
    part.setString(formats::readerNote, kept.c_str(), table);
}

} // namespace

void keep_part_of_points(CStorageDoc& part, unsigned image, const CStorageDoc& whole, unsigned from)
{
    const auto runs = runs_inside(part.getImage(image), whole, from);
    drop_point_counts(part, image);
    for (const unsigned table : {image, documentTable}) drop_notes_of_points(part, table);
    if (runs.empty()) return;
    part.setString(keys[0], std::to_string(primitives::count_of(runs)).c_str(), image);
    part.setString(formats::voidRangesKey, void_text(part.getImage(image).array_length(), runs).c_str(), image);
}

void replace_points(CStorageDoc& document, unsigned image, std::size_t samples,
                    std::span<const primitives::sample_run> unmeasured)
{
    document.changeTexts(image, {{keys[0], std::to_string(primitives::count_of(unmeasured))},
                                 {formats::voidRangesKey, void_text(samples, unmeasured)}});
}

void tell_points(CStorageDoc& document, unsigned image, std::span<const primitives::sample_run> unmeasured)
{
    drop_point_counts(document, image);
    if (!unmeasured.empty()) replace_points(document, image, document.getImage(image).array_length(), unmeasured);
}

void state_counted_points(CStorageDoc& document, unsigned image)
{
    CStorageDoc::text_changes changes;
    for (const char* key : keys) {
        const std::string text = document.getString(key, image);
        if (text.empty() || text.find(totalMark) != std::string::npos) continue;
        changes.emplace(key, text + std::string(totalMark) + std::to_string(document.getImage(image).array_length()));
    }
    // Nor does a sample keep its number in another shape, of as many samples or not.
    if (*document.getString(formats::voidRangesKey, image)) changes.emplace(formats::voidRangesKey, std::nullopt);
    document.changeTexts(image, changes);
}

} // namespace vldv::document
