#pragma once
#include "formats/instrument_fixture.h"
#include "formats/shared/bytes.h"
#include "formats/text/text_table.h"

#include <string>

/// What the tests of text tables share.
namespace text_table_fixture {

inline base::read_result<formats::recording> read(const std::string& text)
{
    return instrument_fixture::read(formats::read_text_table, text, "table.txt");
}

/// UTF-16 with its mark.
inline std::string utf16(const std::string& ascii, bool isBigEndian)
{
    return (isBigEndian ? "\xFE\xFF" : "\xFF\xFE") + formats::utf16_of(ascii, 0, isBigEndian);
}

/// The first warning, or an empty text.
inline std::string first_note(const base::read_result<formats::recording>& result)
{
    return !result || result->warnings.empty() ? "" : result->warnings[0];
}

/// Header of a matrix of a stated size whose lines may break its rows.
inline std::string spip(int columns, int rows)
{
    return "# File Format = ASCII\n# x-pixels = " + std::to_string(columns) + "\n# y-pixels = " + std::to_string(rows) +
           "\n# Start of Data:\n";
}

/// Header of arrays that stand by columns.
inline std::string wyko(int height, int width)
{
    return "Wyko ASCII Data File Format\t0\t0\t1\nX Size\t" + std::to_string(width) + "\nY Size\t" +
           std::to_string(height) + "\n";
}

inline const std::string channelExport =
    "# Kanal: Topografie\n# Breite: 12.34 \xC2\xB5m\n# H\xC3\xB6he: 5678.9 nm\n# Werteinheit: m\n";
inline const std::string wsxmPoints = "WSxM file copyright UAM\nWSxM ASCII XYZ file\nX[nm]\tY[nm]\tZ[\xC5]\n\n";

} // namespace text_table_fixture
