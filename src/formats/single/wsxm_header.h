#pragma once
#include "base/streams/byte_reader.h"
#include "formats/shared/text_units.h"
#include "formats/source.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace vldv::formats {

/// The text part of a WSxM file.
struct wsxm_header {
    std::string kind;                         ///< second line: "SxM Image file"
    std::map<std::string, std::string> lines; ///< "General Info.Number of rows"; UTF-8
    std::uint64_t end = 0;                    ///< of the line "[Header end]", where the data begins

    /// The value of a label in its section; empty when there is none.
    const std::string& value(const std::string& section, const std::string& label) const;
    /// Whole numbers above 0 and up to `most`; 0 for all others.
    std::uint64_t count(const std::string& section, const std::string& label, std::uint64_t most) const;
    /// Nothing when there is none; the number NaN for a text that is no quantity.
    std::optional<quantity> measure(const std::string& section, const std::string& label) const;
};

/// A number with a point or a comma for the decimals, and a unit that may be several words ("5 arb. units"); nothing
/// when it is none or damaged.
std::optional<quantity> wsxm_quantity(std::string text);

base::read_result<wsxm_header> read_wsxm_header(source& file);

} // namespace vldv::formats
