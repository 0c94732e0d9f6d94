#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/source.h"
#include "vldv_api.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// What a file is. The numbers of the known ones are part of the reader interface.
enum SupportedFileTypes : int {
    FILE_UNKNOWN = 0,
    FILE_SPMX = 1,
    FILE_NANOSCOPE = 2,
    FILE_TEXT = 3,
    FILE_BMP = 4,
    FILE_JPEG = 5,
    FILE_TIFF = 6,
    FILE_MDT = 7,
    FILE_JPK = 8,
    FILE_WSXM = 9,
    FILE_BCR = 10,
    FILE_IBW = 11,
    FILE_OPD = 12,
    FILE_IMG = 13,
    FILE_HDF = 14,
    FILE_TMD = 15,
    FILE_SM2 = 16,
    FILE_STP = 17,
    FILE_TLK = 18,
    FILE_WIP = 19,
    FILE_SCALA = 20,
    FILE_NANOSURF = 21,
    FILE_AIST = 22,
    FILE_SUR = 23,
    FILE_PNI = 26,
    FILE_PNG = 27,
    FILE_PSIA = 28,
};

namespace vldv::formats {

/// Row of the table of foreign formats.
struct format_row {
    SupportedFileTypes type;
    const char* name;     ///< as the file dialog lists it: "BMP files"
    const char* patterns; ///< "*.tif;*.tiff"
    /// True when the first bytes of a file are this format's for certain. `head` holds up to `sniffBytes` of them.
    bool (*sniff)(std::span<const std::byte> head);
    /// True when the bytes do not contradict the format: asked only when the extension fits and no other row is
    /// certain. Null: never by the extension alone.
    bool (*possible)(std::span<const std::byte> head);
    /// Gives a recording that is finished (`finish_recording`). Null for formats whose reader stands elsewhere (the
    /// native container).
    base::read_result<recording> (*read)(source& file);
    /// Possible content is tried under any name when no other row can read it.
    bool underAnyName = false;
    /// Of a format whose recordings are several files, any of which opens them all: for each of `names` the one that
    /// stands for those that open with it. `names` are the files of this format in one folder, sorted.
    /// Null: each file is a recording of its own.
    std::vector<std::string> (*leaders)(const std::vector<std::string>& names) = nullptr;
};

constexpr std::size_t sniffBytes = 4096;

/// All rows, in the order of the file dialog.
VLDV_INTERNAL_API std::span<const format_row> format_table() noexcept;
/// The row that reads these bytes: the first that is certain of them, else the first possible one whose patterns fit
/// the name, else null.
const format_row* find_format(std::span<const std::byte> head, std::string_view fileName) noexcept;
/// The rows to try one after another until one can read the file: the one that is certain of these bytes and no other,
/// else the possible ones whose patterns fit the name, then those that are tried under any name. When `find_format`
/// knows a row it stands first.
std::vector<const format_row*> formats_to_try(std::span<const std::byte> head, std::string_view fileName);
/// The name ends as only recordings of microscopes do: when such a file does not open, something is wrong with it.
bool has_own_ending(std::string_view fileName) noexcept;
/// Case-insensitive match of one pattern with "*" and "?" against a file name.
bool pattern_matches(std::string_view pattern, std::string_view fileName) noexcept;

} // namespace vldv::formats
