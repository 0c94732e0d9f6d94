#pragma once
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>

// Numbers in the texts of headers. They are decimal, and nothing but a blank or a unit may touch them: "24x.16 nm/V",
// "0x03" and "1.5.2" are damaged, not 24, 3 and 1.5.

namespace vldv::formats {

/// The number at the front of a text, behind blanks, and in `rest` what follows it. Nothing when
/// there is none or it is damaged. The number may be NaN or infinite.
std::optional<double> stated_number(std::string_view text, std::string_view* rest = nullptr);

/// The number of a text that holds nothing else but blanks.
std::optional<double> lone_number(std::string_view text);

/// A whole number of decimal digits and nothing else but blanks around them; nothing above `most`. "0x10" is no count.
std::optional<std::uint64_t> stated_count(std::string_view text,
                                          std::uint64_t most = std::numeric_limits<std::int64_t>::max()) noexcept;

/// Takes the number at the front away from `text`; false, with nothing taken, when none is left. A damaged one is NaN
/// and takes all.
bool take_number(std::string_view& text, double& number);

} // namespace vldv::formats
