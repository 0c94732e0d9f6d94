#pragma once
#include "base/streams/byte_reader.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace vldv::formats {

class source;

/// A text file in memory: bytes in which every character below 128 stands for itself.
struct text_content {
    std::string text;      ///< without byte order mark
    bool isLatin1 = false; ///< else UTF-8
    /// A piece of `text` as UTF-8, control characters but the tab as blanks.
    std::string utf8(std::string_view piece) const;
};

/// Recognises the encoding: UTF-8, with or without mark; UTF-16 with a mark, either order; else Latin-1. Refuses bytes
/// that no text holds: NUL (outside UTF-16) anywhere, other control characters near the start.
base::read_result<text_content> decode_text(std::string bytes);
/// Reads and decodes all of a file, looking at its start before the rest is fetched.
base::read_result<text_content> read_text(source& file);

/// Walks the lines of a text, whichever way they end: LF, CR LF or CR, also mixed. The last line may lack its end.
class line_cursor {
public:
    explicit line_cursor(std::string_view text_) noexcept : text(text_) {}
    /// The next line without its end. \return false when there is none
    bool next(std::string_view& line) noexcept;
    /// Number of the line that `next` gave last, counted from 1.
    std::size_t number() const noexcept { return lineNumber; }
    /// Position behind that line.
    std::size_t offset() const noexcept { return position; }

private:
    std::string_view text;
    std::size_t position = 0;
    std::size_t lineNumber = 0;
    std::size_t lineFeed = 0; // the next one at or behind `position`, once searched
    bool lineFeedKnown = false;
};

} // namespace vldv::formats
