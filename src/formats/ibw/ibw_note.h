#pragma once
#include <cstdint>
#include <map>
#include <string>

namespace vldv::formats {

/// The note of a wave: lines "Key: value" that end with CR, LF or both, the first of equal keys counts. Lines without a
/// key come together under "Note".
std::map<std::string, std::string> parse_ibw_note(const std::string& text);

/// "2021-10-11 15:52:01" from seconds since the start of 1904, local time.
std::string ibw_date(std::uint32_t seconds);

} // namespace vldv::formats
