#include "platform/app/menu_item.h"

namespace vldv {

std::string menu_text(const std::string& shown)
{
    std::string out;
    for (const char c : shown) out += c == '&' ? "&&" : std::string(1, c);
    return out;
}

} // namespace vldv
