#include "formats/shared/header_text.h"

#include "base/VLXMLParser.h"
#include "base/text.h"

#include <sstream>

namespace vldv::formats {

namespace {

/// Upper half of code page 1251 below the letters А to я; 0 for what has no character.
constexpr char16_t cyrillic[64] = {
    0x0402, 0x0403, 0x201A, 0x0453, 0x201E, 0x2026, 0x2020, 0x2021, 0x20AC, 0x2030, 0x0409, 0x2039, 0x040A,
    0x040C, 0x040B, 0x040F, 0x0452, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, 0,      0x2122,
    0x0459, 0x203A, 0x045A, 0x045C, 0x045B, 0x045F, 0x00A0, 0x040E, 0x045E, 0x0408, 0x00A4, 0x0490, 0x00A6,
    0x00A7, 0x0401, 0x00A9, 0x0404, 0x00AB, 0x00AC, 0x00AD, 0x00AE, 0x0407, 0x00B0, 0x00B1, 0x0406, 0x0456,
    0x0491, 0x00B5, 0x00B6, 0x00B7, 0x0451, 0x2116, 0x0454, 0x00BB, 0x0458, 0x0405, 0x0455, 0x0457};

/// Collects the texts of elements that hold no others.
class leaf_collector : public VLXMLParser {
public:
    explicit leaf_collector(std::map<std::string, std::string>& strings_) : strings(strings_) {}

    void OnXMLStartElement(const char* element, const char**) override
    {
        if (path.size() > maxDepth) return fail("nested too deeply");
        path.push_back(element);
        text.clear();
    }
    void OnXMLEndElement(const char*) override
    {
        std::string key;
        for (std::size_t i = 1; i < path.size(); ++i) key += (i > 1 ? "." : "") + path[i];
        const std::string value = clean_text(text);
        if (!key.empty() && !value.empty() && strings.size() < maxStrings) strings.emplace(key, value);
        if (!path.empty()) path.pop_back();
        text.clear();
    }
    void OnXMLCharacterData(const char* data, int length) override
    {
        text.append(data, static_cast<std::size_t>(length));
    }

private:
    static constexpr std::size_t maxDepth = 30, maxStrings = 2000;
    std::map<std::string, std::string>& strings;
    std::vector<std::string> path;
    std::string text;
};

} // namespace

std::string clean_text(std::string_view utf8)
{
    std::string text = base::valid_utf8(utf8.substr(0, utf8.find('\0')));
    for (char& c : text)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = ' ';
    return std::string(base::trimmed(text));
}

std::string header_text(std::string_view bytes)
{
    bytes = bytes.substr(0, bytes.find('\0'));
    return clean_text(base::is_utf8(bytes) ? std::string(bytes) : base::cp1252_to_utf8(bytes));
}

std::string cp1251_to_utf8(std::string_view bytes)
{
    std::string utf16;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        char16_t character = byte;
        if (byte >= 0xC0)
            character = static_cast<char16_t>(0x0410 + byte - 0xC0);
        else if (byte >= 0x80)
            character = cyrillic[byte - 0x80] ? cyrillic[byte - 0x80] : u'\uFFFD';
        utf16 += static_cast<char>(character & 0xFF);
        utf16 += static_cast<char>(character >> 8);
    }
    return base::utf16_to_utf8(utf16, false);
}

void join_strings(std::map<std::string, std::string>& strings, const std::map<std::string, std::string>& other)
{
    for (const auto& [key, text] : other) {
        const auto [entry, isNew] = strings.emplace(key, text);
        if (!isNew && entry->second != text) entry->second += " / " + text;
    }
}

void add_xml_strings(std::string_view utf8, std::map<std::string, std::string>& strings)
{
    utf8 = base::trimmed(utf8);
    if (utf8.starts_with("\xEF\xBB\xBF")) utf8.remove_prefix(3);
    if (utf8.starts_with("<?")) { // it may name the encoding that the text had before
        const std::size_t end = utf8.find("?>");
        utf8.remove_prefix(end == std::string_view::npos ? utf8.size() : end + 2);
    }
    std::istringstream in{std::string(utf8.substr(0, utf8.find('\0')))};
    leaf_collector(strings).load_xml(in);
}

} // namespace vldv::formats
