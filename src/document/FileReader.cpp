#include "document/FileReader.h"

#include "base/text.h"
#include "document/container/spmx_read.h"
#include "document/container/storable_text.h"
#include "document/container/stream_source.h"
#include "document/document_table.h"
#include "formats/shared/force/force_order.h"
#include "formats/shared/void_points.h"
#include "formats/shared/zip_reader.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <string_view>

using namespace vldv;

namespace {

constexpr const char* cancelled = "reading was cancelled";

/// A number above 0 as it is written without leading zeros; 0 for other texts and for one of many digits.
std::size_t plain_number(std::string_view text) noexcept
{
    constexpr std::size_t mostDigits = 9;
    if (text.empty() || text.size() > mostDigits || text.front() == '0') return 0;
    std::size_t number = 0;
    for (const char c : text) {
        if (c < '0' || c > '9') return 0;
        number = 10 * number + static_cast<std::size_t>(c - '0');
    }
    return number;
}

/// The first bytes, fewer when the stream is shorter; the position is left at the start.
std::vector<std::byte> head_of(std::istream& in)
{
    std::vector<std::byte> head(formats::sniffBytes);
    in.clear();
    in.seekg(0);
    in.read(reinterpret_cast<char*>(head.data()), static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<std::size_t>(in.gcount()));
    in.clear();
    in.seekg(0);
    return head;
}

/// What can be said of a file that no format knows.
std::string why_unknown(std::span<const std::byte> head, formats::source& file)
{
    constexpr std::string_view zipped = "PK\3\4";
    if (head.size() < zipped.size() || std::memcmp(head.data(), zipped.data(), zipped.size()) != 0)
        return "the format of this file is not known";
    const auto archive = formats::zip_reader::open(file, formats::zip_reader::names::with_folders);
    return archive && archive->find("main.xml")
               ? "\"main.xml\" is not the first entry of the archive; another program has packed it anew"
               : "an archive of a format that is not known";
}

} // namespace

VLFileReader::~VLFileReader() = default;

SupportedFileTypes VLFileReader::GetDocumentType(std::istream& in)
{
    const auto position = in.tellg();
    const std::vector<std::byte> head = head_of(in);
    in.seekg(position);
    const formats::format_row* format = formats::find_format(head, {});
    return format ? format->type : FILE_UNKNOWN;
}

bool VLFileReader::tellProgress(double done)
{
    readCancelled = onReadProgress && !onReadProgress(done);
    return !readCancelled;
}

bool VLFileReader::ReadFile(std::istream& in)
{
    readError.clear();
    readWarnings.clear();
    readCancelled = false;
    isDamaged = false;
    const std::vector<std::byte> head = head_of(in);
    document::stream_source named(in, sourcePath);
    if (tryFormats(in, formats::formats_to_try(head, named.name()))) return true;
    if (readCancelled || formats::find_format(head, named.name())) return false;
    // Neither content nor name asked for the formats that were tried; only a text says something by its reason.
    const std::string known = fileType == FILE_TEXT ? "; as a table of numbers: " + readError : "";
    readError = why_unknown(head, named) + known;
    fileType = FILE_UNKNOWN;
    return false;
}

/// \return false when none can read the file; type and reason are then those of the first
bool VLFileReader::tryFormats(std::istream& in, const std::vector<const formats::format_row*>& rows)
{
    fileType = FILE_UNKNOWN;
    std::string firstError;
    const unsigned before = getImagesNumber();
    // Several formats may ask for a file. A reader that refuses it makes room for the next one, unless it has put an
    // image into the document already: two readers never fill one document.
    for (const formats::format_row* row : rows) {
        fileType = row->type;
        readError.clear();
        if (doReadFile(in)) return true;
        if (readCancelled || getImagesNumber() != before) return false;
        if (row == rows.front()) firstError = readError;
    }
    if (!rows.empty()) fileType = rows.front()->type;
    readError = firstError;
    return false;
}

bool VLFileReader::doReadFile(std::istream& in)
{
    if (fileType == FILE_SPMX) return readNative(in);
    for (const formats::format_row& format : formats::format_table())
        if (format.type == fileType && format.read) return readForeign(in, format);
    readError = "there is no reader for this kind of file";
    return false;
}

bool VLFileReader::readNative(std::istream& in)
{
    document::stream_source source(in, sourcePath);
    source.onProgress = [this](double done) { return tellProgress(done); };
    document::spmx_reading reading = document::read_spmx(source, *this, readWarnings);
    readError = std::move(reading.failure);
    isDamaged = !reading.isWhole;
    isOfSeveralFiles = false;
    if (readCancelled) readError = cancelled;
    if (readError.empty()) warnOfVoids();
    return readError.empty();
}

/// The document keeps what it has; whatever computes with curves leaves these samples out.
void VLFileReader::warnOfVoids()
{
    for (unsigned i = 0; i < getImagesNumber(); ++i) {
        const SPMDataStream& stream = getImage(i);
        const std::size_t count = formats::count_implausible(stream);
        if (count == 0) continue;
        const char *label = stream.get_description(), *id = stream.get_name();
        readWarnings.push_back("\"" +
                               std::string(label && *label ? label
                                           : id            ? id
                                                           : "") +
                               "\": " + std::to_string(count) + (count == 1 ? " sample was" : " samples were") +
                               " not measured: no number, or 1e30 and more");
    }
}

bool VLFileReader::readForeign(std::istream& in, const formats::format_row& format)
{
    document::stream_source source(in, sourcePath);
    source.onProgress = [this](double done) { return tellProgress(done); };
    auto recording = format.read(source);
    isOfSeveralFiles = source.hasOpenedSiblings();
    if (readCancelled) {
        readError = cancelled;
        return false;
    }
    if (!recording) {
        readError = recording.error().reason;
        if (recording.error().offset)
            readError += base::formatted(" (at byte %llu)", static_cast<unsigned long long>(recording.error().offset));
        return false;
    }
    formats::order_by_forces(*recording);
    return addRecording(*recording);
}

namespace {

namespace storable_text = document::storable_text;

std::vector<smart_string> storable_names(const std::vector<smart_string>& names)
{
    std::vector<smart_string> out;
    for (const smart_string& name : names) out.emplace_back(storable_text::content(name.c_str()));
    return out;
}

void make_units_storable(VLAxesContainer& axes)
{
    for (unsigned i = 0; i < axes.get_axes_number(); ++i) {
        VLAxis axis = axes.get_axis(i);
        axis.set_units(storable_text::attribute(axis.get_units()).c_str());
        axes.set_axis(i, axis);
    }
}

/// Texts of a foreign file may be anything.
void make_storable(SPMDataStream& stream)
{
    stream.set_description(storable_text::attribute(stream.get_description()).c_str());
    stream.set_subimage_names(storable_names(stream.subimage_names()));
    make_units_storable(stream.values);
    for (unsigned i = 0; i < stream.get_dimensions_number(); ++i) make_units_storable(stream.get_dimension(i));
}

} // namespace

bool VLFileReader::addRecording(formats::recording& recording)
{
    if (recording.items.empty()) {
        readError = "the file holds no images";
        return false;
    }
    for (auto& item : recording.items) {
        if (auto* image = std::get_if<formats::recorded_image>(&item)) {
            make_storable(image->stream);
            makeIdUnique(image->stream); // the ids of pictures are given here, not by the reader
            moveIn(image->stream);
            for (const auto& [key, text] : image->strings) setForeignText(key, text, getImagesNumber() - 1);
        } else {
            const auto& picture = std::get<formats::picture>(item);
            const RGBQUAD* palette = picture.palette.empty() ? nullptr : picture.palette.data();
            if (!SetDIB(&picture.header, picture.bits.data(), palette, -1)) {
                readError = "the bitmap cannot be converted";
                return false;
            }
        }
    }
    for (const auto& [key, text] : recording.strings) setForeignText(key, text, document::documentTable);
    readWarnings = std::move(recording.warnings);
    if (!recording.title.empty()) setDisplayTitle(recording.title);
    return true;
}

void VLFileReader::setForeignText(const std::string& key, const std::string& text, unsigned image)
{
    setString(storable_text::key(key).c_str(), storable_text::content(text).c_str(), image);
}

/// Adding copies what it is given, and a volume must not be in memory twice: an empty image makes the room.
void VLFileReader::moveIn(SPMDataStream& stream)
{
    SPMDataStream room;
    room.Init(stream.get_name(), stream.get_description(), SPM_VAR_ARRAY, 0u, stream.array_element_size());
    AddNewImages(&room, 1);
    const unsigned image = getImagesNumber() - 1;
    getImage(image) = std::move(stream);
    revalidateImage(image);
}

void VLFileReader::makeIdUnique(SPMDataStream& stream) const
{
    const std::string wanted = stream.get_name();
    // A trailing number counts on: img0, img1 … In one walk: a file may hold thousands of images.
    const std::string stem = wanted.substr(0, wanted.find_last_not_of("0123456789") + 1);
    std::vector<bool> isUsed(std::size_t{getImagesNumber()} + 2); // one number from 1 on stays free
    bool isTaken = false;
    for (unsigned i = 0; i < getImagesNumber(); ++i) {
        const std::string_view id = getImage(i).get_name();
        isTaken = isTaken || id == wanted;
        if (const std::size_t number = id.starts_with(stem) ? plain_number(id.substr(stem.size())) : 0;
            number < isUsed.size())
            isUsed[number] = true;
    }
    if (!isTaken) return;
    const auto free = std::find(isUsed.begin() + 1, isUsed.end(), false);
    stream.set_name((stem + std::to_string(free - isUsed.begin())).c_str());
}
