#include "document/container/spmx_escapes.h"

#include "base/text.h"

namespace vldv::document::spmx_escapes {

namespace {

constexpr std::string_view escapeMark = "\xEF\xA3\xBF"; // U+F8FF

// U+F8FF, which has no meaning of its own, and four hexadecimal digits stand for a character that XML cannot hold, not
// even as a reference.
void append_marked(std::string& out, unsigned code)
{
    out += escapeMark;
    out += base::formatted("%04x", code);
}

/// U+FFFE and U+FFFF are no characters of XML; U+F8FF is our own mark. All have three bytes.
unsigned marked_code(std::string_view at)
{
    if (at.starts_with(escapeMark)) return 0xf8ff;
    if (at.starts_with("\xEF\xBF\xBE")) return 0xfffe;
    return at.starts_with("\xEF\xBF\xBF") ? 0xffff : 0;
}

/// `append` writes a character in its own way, or answers false when it is none of its concern.
template <class Append>
std::string rewritten(std::string_view plain, Append append)
{
    std::string out;
    out.reserve(plain.size() + 16);
    for (std::size_t i = 0; i < plain.size(); ++i) {
        const char c = plain[i];
        if (append(out, c)) continue;
        if (static_cast<unsigned char>(c) < ' ') {
            append_marked(out, static_cast<unsigned char>(c));
        } else if (const unsigned code = marked_code(plain.substr(i))) {
            append_marked(out, code);
            i += 2;
        } else {
            out += c;
        }
    }
    return out;
}

} // namespace

// Line ends and tabs are written as references, since a parser turns the plain ones into other characters: "\r\n" into
// "\n", and all three into blanks in an attribute.
std::string text(std::string_view plain)
{
    return rewritten(plain, [](std::string& out, char c) {
        switch (c) {
        case '&':
            out += "&amp;";
            return true;
        case '<':
            out += "&lt;";
            return true;
        case '>':
            out += "&gt;";
            return true;
        case '"':
            out += "&quot;";
            return true;
        case '\n':
        case '\r':
        case '\t':
            out += base::formatted("&#%d;", c);
            return true;
        default:
            return false;
        }
    });
}

// In the file name of an entity a parser expands no references, so that quotes need the mark as well.
std::string literal(std::string_view plain)
{
    return rewritten(plain, [](std::string& out, char c) {
        const bool isQuote = c == '"' || c == '\'';
        if (isQuote) append_marked(out, static_cast<unsigned char>(c));
        return isQuote;
    });
}

std::string restored(std::string_view escaped)
{
    std::string out;
    for (std::size_t i = 0; i < escaped.size();) {
        const std::string_view at = escaped.substr(i);
        const auto code = at.starts_with(escapeMark) && at.size() >= escapeMark.size() + 4
                              ? base::whole_integer("0x" + std::string(at.substr(escapeMark.size(), 4)))
                              : std::nullopt;
        if (!code) {
            out += escaped[i++];
            continue;
        }
        if (*code < ' ' || *code == '"' || *code == '\'')
            out += static_cast<char>(*code);
        else
            out += *code == 0xfffe ? "\xEF\xBF\xBE" : *code == 0xffff ? "\xEF\xBF\xBF" : escapeMark;
        i += escapeMark.size() + 4;
    }
    return out;
}

} // namespace vldv::document::spmx_escapes
