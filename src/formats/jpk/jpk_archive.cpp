#include "formats/jpk/jpk_archive.h"

#include "base/text.h"
#include "formats/shared/stated_number.h"
#include "formats/shared/stream_shape.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace vldv::formats {

namespace {

constexpr std::uint64_t maxHeaderBytes = 16u << 20;
constexpr std::string_view segmentHeader = "segment-header.properties";

base::read_result<std::string> unpack_text(const zip_reader& zip, const std::string& name)
{
    const zip_reader::entry* entry = zip.find(name);
    if (!entry) return base::read_error{0, name + " is missing"};
    if (entry->bytes > maxHeaderBytes) return base::read_error{0, name + " is too large for a text"};
    std::string text(static_cast<std::size_t>(entry->bytes), '\0');
    const std::string problem = zip.unpack(*entry, std::as_writable_bytes(std::span(text)));
    if (!problem.empty()) return base::read_error{0, name + ": " + problem};
    return text;
}

/// Which curve and segment a header belongs to: "index/12/segments/0/segment-header.properties".
struct segment_place {
    std::uint64_t curve = 0, segment = 0;
};

std::optional<std::uint64_t> take_number(std::string_view& path)
{
    const std::size_t slash = path.find('/');
    if (slash == std::string_view::npos) return std::nullopt;
    const auto number = stated_count(path.substr(0, slash));
    if (number) path.remove_prefix(slash + 1);
    return number;
}

std::optional<segment_place> place_of(std::string_view path)
{
    constexpr std::string_view index = "index/", segments = "segments/";
    segment_place place;
    if (path.starts_with(index)) {
        path.remove_prefix(index.size());
        const auto curve = take_number(path);
        if (!curve) return std::nullopt;
        place.curve = *curve;
    }
    if (!path.starts_with(segments)) return std::nullopt;
    path.remove_prefix(segments.size());
    const auto segment = take_number(path);
    if (!segment || path != segmentHeader) return std::nullopt;
    place.segment = *segment;
    return place;
}

/// Reads segment headers. Those of a map differ in few lines; channels that are described in the same words are
/// described once.
class segment_reader {
public:
    explicit segment_reader(const jpk_properties& shared_) : shared(shared_) {}

    jpk_segment read(const std::string& folder, const std::string& text)
    {
        std::string channelLines, otherLines;
        for (const std::string_view line : base::split(text, '\n'))
            (line.starts_with("channel") ? channelLines : otherLines).append(line) += '\n';
        jpk_segment segment;
        segment.folder = folder;
        jpk_properties header(otherLines);
        header.resolve(shared);
        segment.name = jpk_segment_name(header);
        readTime(header, segment);
        auto& known = described[channelLines];
        if (!known) {
            jpk_properties channels(channelLines);
            channels.resolve(shared);
            known = std::make_shared<const std::vector<jpk_channel>>(read_jpk_channels(channels));
        }
        segment.channels = known;
        return segment;
    }

private:
    static void readTime(const jpk_properties& header, jpk_segment& segment)
    {
        const std::string durationKey = "force-segment-header.duration", pointsKey = "force-segment-header.num-points";
        const auto above0 = [&](const std::string& key, double least) { // 0 for what is none
            const double number = header.number(key).value_or(0.0);
            return number >= least && number < 1e9 ? number : 0.0;
        };
        segment.duration = above0(durationKey, 1e-12);
        segment.points = static_cast<std::uint64_t>(above0(pointsKey, 1.0));
        segment.isTimeDamaged = (segment.duration == 0.0 && header.all().contains(durationKey)) ||
                                (segment.points == 0 && header.all().contains(pointsKey));
    }

    const jpk_properties& shared;
    std::map<std::string, std::shared_ptr<const std::vector<jpk_channel>>> described;
};

/// The grid of a map; 0 by 0 points where none can be used.
class grid_reader {
public:
    grid_reader(const jpk_properties& header_, const std::string& kind)
        : header(header_), pattern(kind + ".position-pattern."), prefix(pattern + "grid.")
    {
    }

    jpk_grid read() const
    {
        jpk_grid grid;
        const double columns = number("ilength"), rows = number("jlength");
        if (!(columns >= 1 && columns <= 65536 && rows >= 1 && rows <= 65536)) {
            grid.doubts.emplace_back("ilength or jlength of the grid is missing or no number from 1 to 65536: curves "
                                     "stand one after another");
            return grid;
        }
        grid.columns = static_cast<unsigned>(columns);
        grid.rows = static_cast<unsigned>(rows);
        grid.isBackAndForth = header.value(pattern + "back-and-forth") == "true";
        grid.x = side("ulength", "xcenter", grid.columns, grid.doubts);
        grid.y = side("vlength", "ycenter", grid.rows, grid.doubts);
        return grid;
    }

private:
    /// 0 for an empty text, NaN for one that is no number.
    double number(const char* key) const
    {
        const std::string& stated = header.value(prefix + key);
        return stated.empty() ? 0.0 : header.number(prefix + key).value_or(std::nan(""));
    }
    VLAxis side(const char* length, const char* centre, unsigned points, std::vector<std::string>& doubts) const
    {
        if (!header.value(prefix + length).empty())
            return stated_side(number(centre) - number(length) / 2, number(length), points, "m");
        doubts.push_back(std::string(length) + " of the grid is missing: its points are counted");
        return {};
    }

    const jpk_properties& header;
    std::string pattern, prefix;
};

/// The settings of a map stand under what the archive is; other archives have no grid.
jpk_grid read_grid(const jpk_properties& header)
{
    for (const std::string kind : {"force-scan-map", "quantitative-imaging-map"}) {
        const std::string start = kind + ".position-pattern.";
        const auto line = header.all().lower_bound(start);
        if (line != header.all().end() && line->first.starts_with(start)) return grid_reader(header, kind).read();
    }
    return {};
}

/// What the archive says it is, or empty.
std::string archive_kind(const jpk_properties& header)
{
    for (const char* kind :
         {"force-scan-series", "force-scan-map", "quantitative-imaging-map", "quantitative-imaging-series"})
        if (header.value("type") == kind || header.value("jpk-data-file") == kind) return kind;
    return header.value("jpk-data-file");
}

void keep_segment(jpk_archive& archive, const std::string& text)
{
    constexpr std::size_t mostBytes = 256u << 10, mostSegments = 32;
    if (text.size() > mostBytes || archive.segments.size() == mostSegments) return;
    archive.segments.emplace_back(text).resolve(archive.shared);
}

/// The value of the first line whose key ends so, NaN for one that is no number; of a header with hundreds of lines two
/// are of interest.
std::optional<double> number_behind(std::string_view text, std::string_view ending)
{
    const std::size_t at = text.find(ending);
    if (at == std::string_view::npos) return std::nullopt;
    return stated_number(text.substr(at + ending.size())).value_or(std::nan(""));
}

/// Adds "12: 1e-06 2e-06", where the header of a map's curve says that it was measured.
void add_place(jpk_archive& archive, std::uint64_t number, const std::string& segmentFolder)
{
    const std::string name = segmentFolder.substr(0, segmentFolder.find("segments/")) + "header.properties";
    if (segmentFolder.starts_with("segments/") || !archive.zip.find(name)) return;
    const auto header = unpack_text(archive.zip, name);
    if (!header) return archive.lostPlaces.add(header.error().reason);
    const auto x = number_behind(*header, ".header.position.x="), y = number_behind(*header, ".header.position.y=");
    if (!x || !y) return;
    if (!std::isfinite(*x) || !std::isfinite(*y)) return archive.lostPlaces.add(name + ": its position is no number");
    archive.places += std::to_string(number) + ": " + base::general(*x) + " " + base::general(*y) + "\n";
}

/// One of which nothing can be read keeps the place between the others.
jpk_segment empty_segment(const std::string& folder)
{
    return {folder, std::make_shared<const std::vector<jpk_channel>>(), {}};
}

/// Segments are numbered through: those that are missing before `index` leave their places empty.
/// \param folder  of the segment with that number
void add_lost_segments(jpk_archive& archive, jpk_curve& curve, std::uint64_t index, const std::string& folder)
{
    const std::string parent = folder.substr(0, folder.find("segments/"));
    for (std::uint64_t lost = curve.segments.size(); lost < index; ++lost) {
        const std::string own = parent + "segments/" + std::to_string(lost) + "/";
        archive.lostHeaders.add(own + std::string(segmentHeader) + " is missing");
        curve.segments.push_back(empty_segment(own));
    }
}

} // namespace

std::uint64_t jpk_grid::place(std::uint64_t number) const noexcept
{
    const std::uint64_t row = number / columns, along = number % columns;
    return row * columns + (isBackAndForth && row % 2 == 1 ? columns - 1 - along : along);
}

base::read_result<jpk_archive> open_jpk_archive(source& file, double share)
{
    auto zip = zip_reader::open(file, zip_reader::names::with_folders);
    if (!zip) return zip.error();
    const auto text = unpack_text(*zip, "header.properties");
    if (!text) return base::read_error{0, "not an archive of force curves: " + text.error().reason};
    jpk_archive archive{std::move(*zip), jpk_properties(*text), {}, {}, {}, {}, {}};
    if (archive_kind(archive.header).empty())
        return base::read_error{0, "header.properties names no kind of force data (jpk-data-file, type)"};
    if (archive.zip.find("shared-data/header.properties")) {
        const auto sharedText = unpack_text(archive.zip, "shared-data/header.properties");
        if (!sharedText) return sharedText.error();
        archive.shared = jpk_properties(*sharedText);
    }
    archive.grid = read_grid(archive.header);

    std::map<std::uint64_t, std::map<std::uint64_t, std::string>> places; // curve, segment, folder
    for (const auto& [name, entry] : archive.zip.all())
        if (const auto place = place_of(name))
            places[place->curve][place->segment] = name.substr(0, name.size() - segmentHeader.size());
    if (places.empty()) return base::read_error{0, "the archive holds no segment of a curve"};
    segment_reader reader(archive.shared);
    for (const auto& [number, segments] : places) {
        if (!file.progress(share * static_cast<double>(archive.curves.size()) / static_cast<double>(places.size())))
            return base::read_error{0, "reading was cancelled"};
        jpk_curve curve{number, {}};
        for (const auto& [index, folder] : segments) {
            add_lost_segments(archive, curve, std::min<std::uint64_t>(index, curve.segments.size() + segments.size()),
                              folder);
            const auto header = unpack_text(archive.zip, folder + std::string(segmentHeader));
            if (!header) {
                archive.lostHeaders.add(header.error().reason);
                curve.segments.push_back(empty_segment(folder));
                continue;
            }
            curve.segments.push_back(reader.read(folder, *header));
            if (archive.curves.empty()) keep_segment(archive, *header);
        }
        add_place(archive, number, segments.begin()->second);
        archive.curves.push_back(std::move(curve));
    }
    return archive;
}

std::uint64_t jpk_points(const jpk_archive& archive, const jpk_segment& segment, const jpk_channel& channel)
{
    if (!channel.problem.empty()) return 0;
    if (!channel.isComputed) {
        const zip_reader::entry* entry = archive.zip.find(segment.folder + channel.file);
        return entry ? entry->bytes / element_size(channel.type) : 0;
    }
    std::uint64_t points = 0; // as many as were measured beside it
    for (const jpk_channel& other : *segment.channels)
        if (!other.isComputed) points = std::max(points, jpk_points(archive, segment, other));
    return points;
}

} // namespace vldv::formats
