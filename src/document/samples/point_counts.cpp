#include "document/samples/point_counts.h"

#include "base/text.h"
#include "document/StorageDoc.h"
#include "formats/shared/void_ranges.h"

#include <string>
#include <string_view>

namespace vldv::document {

namespace {

constexpr const char* keys[] = {"\\Void points", "\\Absurd points"};
constexpr std::string_view totalMark = " of ";

} // namespace

std::size_t unmeasured_points(const CStorageDoc& document, unsigned image)
{
    const std::string_view text = document.getString(keys[0], image);
    const std::size_t mark = text.find(totalMark), samples = document.getImage(image).array_length();
    const auto count = base::leading_number(text);
    if (!count || !(*count > 0 && *count < 1e18)) return 0;
    const bool isOfOtherSize =
        mark != std::string_view::npos && text.substr(mark + totalMark.size()) != std::to_string(samples);
    return isOfOtherSize ? 0 : static_cast<std::size_t>(*count);
}

void drop_point_counts(CStorageDoc& document, unsigned image)
{
    auto kept = document.strings(image);
    if (kept.erase(keys[0]) + kept.erase(keys[1]) + kept.erase(formats::voidRangesKey) == 0) return;
    document.clearStrings(image);
    for (const auto& [key, text] : kept) document.setString(key.c_str(), text.c_str(), image);
}

void state_counted_points(CStorageDoc& document, unsigned image)
{
    CStorageDoc::text_changes changes;
    for (const char* key : keys) {
        const std::string text = document.getString(key, image);
        if (text.empty() || text.find(totalMark) != std::string::npos) continue;
        changes.emplace(key, text + std::string(totalMark) + std::to_string(document.getImage(image).array_length()));
    }
    document.changeTexts(image, changes);
}

} // namespace vldv::document
