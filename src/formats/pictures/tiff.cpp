#include "formats/pictures/tiff.h"

#include "base/text.h"
#include "formats/jpk/jpk_image.h"
#include "formats/pictures/tiff_page.h"
#include "formats/pictures/tiff_pixels.h"
#include "formats/shared/left_out.h"
#include "formats/shared/tiff_directory.h"
#include "formats/single/psia.h"

#include <algorithm>

namespace vldv::formats {

namespace {

std::string append_page(tiff_file& file, const tiff_page& page, std::vector<std::string>& used, recording& out)
{
    if (!page.isKnownKind) return "SampleFormat: complex samples are not supported";
    if (holds_heights(page)) return append_heights(file, page, used, out);
    if (page.kind == sample_kind::natural) {
        if (page.bits <= 8 && (page.isGrey() || page.isPalette())) return append_indexed(file, page, out);
        if (page.bits <= 16 && page.isRgb()) return append_colours(file, page, out);
    }
    return append_converted(file, page, out);
}

/// The texts of the current page.
void copy_texts(TIFF* tiff, std::map<std::string, std::string>& strings)
{
    constexpr std::pair<std::uint32_t, const char*> texts[] = {
        {TIFFTAG_DOCUMENTNAME, "DocumentName"},
        {TIFFTAG_IMAGEDESCRIPTION, "ImageDescription"},
        {TIFFTAG_MAKE, "Make"},
        {TIFFTAG_MODEL, "Model"},
        {TIFFTAG_SOFTWARE, "Software"},
        {TIFFTAG_DATETIME, "DateTime"},
        {TIFFTAG_ARTIST, "Artist"},
        {TIFFTAG_HOSTCOMPUTER, "HostComputer"},
        {TIFFTAG_COPYRIGHT, "Copyright"},
    };
    for (const auto& [tag, name] : texts) {
        const char* text = nullptr;
        if (libtiff().getField(tiff, tag, &text) && text && *text) strings[name] = base::valid_utf8(text);
    }
}

/// The texts of the first page are the document's, later ones go with their image.
void add_texts(TIFF* tiff, unsigned page, recording& out)
{
    if (page == 0) return copy_texts(tiff, out.strings);
    if (auto* image = out.items.empty() ? nullptr : std::get_if<recorded_image>(&out.items.back()))
        copy_texts(tiff, image->strings);
}

/// False when the file ends before the current directory's link to the next one, which the library takes for the end of
/// the list: pages behind it would be lost unnoticed.
bool has_link(tiff_file& file)
{
    TIFF* tiff = file.handle();
    const bool isBig = libtiff().isBigTiff(tiff) != 0;
    const std::uint64_t countBytes = isBig ? 8 : 2, entryBytes = isBig ? 20 : 12, linkBytes = isBig ? 8 : 4;
    std::byte count[8]{};
    const std::uint64_t at = libtiff().currentDirectoryOffset(tiff);
    if (!file.bytes().read(at, std::span(count).first(countBytes))) return false;
    std::uint64_t entries = 0;
    for (std::uint64_t i = 0; i < countBytes; ++i) {
        const std::uint64_t byte = std::to_integer<std::uint64_t>(count[i]);
        entries |= byte << 8 * (libtiff().isBigEndian(tiff) ? countBytes - 1 - i : i);
    }
    const std::uint64_t room = file.bytes().size() - at;
    return entries <= room / entryBytes && countBytes + entries * entryBytes + linkBytes <= room;
}

std::string complaint_or(const tiff_file& file, const char* text)
{
    const bool isEmpty = file.complaint().find("(0 elements of") != std::string::npos; // the library ran out of nothing
    return isEmpty ? "a directory has no entries" : file.complaint().empty() ? text : file.complaint();
}

} // namespace

base::read_result<recording> read_tiff(source& source_)
{
    // The directories may lie behind the bytes that tell the formats apart.
    if (file_has_tiff_tag(source_, jpkGridTag)) {
        std::vector<std::string> ids;
        return read_jpk_image(source_, ids);
    }
    if (is_psia(source_)) return read_psia(source_);
    tiff_budget budget(source_.size());
    tiff_file file(source_, budget.coded);
    TIFF* tiff = file.handle();
    if (!tiff) return base::read_error{0, "TIFF: " + complaint_or(file, "not a TIFF file")};
    const unsigned pages = std::max<unsigned>(libtiff().numberOfDirectories(tiff), 1);
    recording result;
    std::vector<std::string> used;
    left_out missing;
    for (unsigned number = 0;; ++number) {
        tiff_page page;
        page.progressStart = std::min(static_cast<double>(number) / pages, 1.0);
        page.progressShare = 1.0 / pages;
        file.forget();
        const std::size_t whole = result.items.size();
        std::string reason = read_tiff_page(file, budget, page);
        const std::string lost = file.takeLostResolution();
        if (reason.empty()) reason = append_page(file, page, used, result);
        if (reason.empty() && !lost.empty())
            add_warning(result,
                        base::formatted("page %u: ", number + 1) + lost + ": a side without one counts in pixels");
        if (reason.empty())
            add_texts(tiff, number, result);
        else
            result.items.resize(whole); // no channels of half a page
        if (!reason.empty()) missing.add({0, base::formatted("page %u: ", number + 1) + reason});
        if (reason == readingCancelled) return missing.first();
        if (!has_link(file)) {
            missing.add({file.bytes().size(), "the list of pages is cut short"});
            break;
        }
        if (libtiff().isLastDirectory(tiff)) break;
        file.forget();
        if (libtiff().readDirectory(tiff)) continue;
        missing.add({0, base::formatted("page %u: ", number + 2) + complaint_or(file, "its directory cannot be read")});
        break;
    }
    if (result.items.empty()) return missing.first();
    missing.tell(result);
    return result;
}

bool sniff_tiff(std::span<const std::byte> head)
{
    constexpr std::string_view signatures[] = {
        {"II*\0", 4}, {"MM\0*", 4}, {"II+\0\10\0\0\0", 8}, {"MM\0+\0\10\0\0", 8}};
    return std::ranges::any_of(signatures,
                               [&](std::string_view signature) { return base::byte_reader(head).tag(signature); });
}

} // namespace vldv::formats
