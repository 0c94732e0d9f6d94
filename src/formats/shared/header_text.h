#pragma once
#include <map>
#include <string>
#include <string_view>

namespace vldv::formats {

/// A text of a header as documents keep it: UTF-8 (bytes that are none are taken for code page 1252), control
/// characters as blanks, up to the first zero byte, without blanks around it.
std::string header_text(std::string_view bytes);

/// Such a text of which the encoding is known and dealt with already.
std::string clean_text(std::string_view utf8);

/// Cyrillic code page 1251 as UTF-8.
std::string cp1251_to_utf8(std::string_view bytes);

/// Adds the strings of a part that joins another in one image: where both have a key with different texts, both stay,
/// " / " between them.
void join_strings(std::map<std::string, std::string>& strings, const std::map<std::string, std::string>& other);

/// Adds what stands in the elements of an XML text under their names joined by ".", the root left out:
/// "Scan.Common.Date". \param utf8  with or without declaration; what is not well-formed is used as far as it goes
void add_xml_strings(std::string_view utf8, std::map<std::string, std::string>& strings);

} // namespace vldv::formats
