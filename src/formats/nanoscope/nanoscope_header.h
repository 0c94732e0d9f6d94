#pragma once
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vldv::formats {

/// One line of a header, `\Samps/line: 512` or `\@2:Z scale: V [Sens. Zsens] (0.005 V/LSB) 330 V`.
struct nanoscope_line {
    std::string name;   ///< as written, without the backslash: "@2:Z scale"
    std::string key;    ///< for look-ups: lower case, without "@" and group number: "z scale"
    std::string value;  ///< UTF-8, without blanks around it
    bool typed = false; ///< began with "@": the value starts with the letter V, C or S
};

/// What a list of the header describes.
enum class nanoscope_list {
    scan,        ///< settings of the scan: size, lines, rate
    image,       ///< one image
    force_image, ///< one channel of force curves or of a force volume
    other,       ///< file, equipment, scanner, controller, force settings
};

/// One list of a header. The same name occurs once per image, so lists are kept in order.
struct nanoscope_section {
    std::string name; ///< lower case: "ciao image list"
    nanoscope_list kind = nanoscope_list::other;
    std::vector<nanoscope_line> lines;

    /// Value of the first plain line with this lower-case key, or null.
    const std::string* find(std::string_view key) const noexcept;
    /// Value of the first line that began with "@", whatever their group number.
    const std::string* findTyped(std::string_view key) const noexcept;
    /// The leading number of a plain line, nothing when it is damaged (stated_number.h).
    std::optional<double> number(std::string_view key) const;
};

/// The text part of a file of header version 3 or later. Damaged lines are left out.
struct nanoscope_header {
    std::vector<nanoscope_section> sections;
    std::size_t textLength = 0; ///< bytes up to and with the line that ends the list, or all

    /// 0x05120000 is version 5.12; 0 when the line is missing.
    std::uint32_t version() const noexcept;
    /// `Data length` of the first list: the bytes in front of the samples.
    std::optional<std::uint64_t> length() const;
    /// Value of a plain line in any list that is no image; the scan list goes first. Null when there is none.
    const std::string* setting(std::string_view key) const noexcept;
    std::optional<double> settingNumber(std::string_view key) const;
    /// Value in any list that is no image of a line that began with "@", such as "sens. zsens".
    const std::string* typedSetting(std::string_view key) const noexcept;
    /// The first list of this lower-case name, or null.
    const nanoscope_section* section(std::string_view name) const noexcept;
    std::size_t count(nanoscope_list kind) const noexcept;

    /// Keys of plain and of typed settings with their values; a file may hold very many of both.
    std::map<std::string, std::string, std::less<>> settings, typedSettings;
};

/// Splits a header into its lists. `text` may reach into the samples: it ends at "list end" or Ctrl-Z.
nanoscope_header parse_nanoscope_header(std::string_view text);

/// A whole number of 0 or more at the start of `text`; nothing when there is none or it is above 2^53.
std::optional<std::uint64_t> leading_count(std::string_view text);

} // namespace vldv::formats
