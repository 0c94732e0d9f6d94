#pragma once
#include <string>
#include <string_view>

/// Texts of main.xml as XML can carry them. What it cannot (control characters, U+FFFE, U+FFFF, and all that would end
/// a system identifier) is written as U+F8FF and four hexadecimal digits, and so is U+F8FF itself.
namespace vldv::document::spmx_escapes {

/// For element content and attribute values; line ends and tabs become character references.
std::string text(std::string_view plain);
/// For a system identifier, which knows no references.
std::string literal(std::string_view plain);
/// Brings back what both wrote, once the XML parser has resolved its references.
std::string restored(std::string_view escaped);

} // namespace vldv::document::spmx_escapes
