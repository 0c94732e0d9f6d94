#include "cli/CliHost.h"

#include <utility>

namespace vldv::cli {

void CCliHost::messageBox(const std::string& text, message_icon)
{
    if (!messages.empty()) messages += '\n';
    messages += text;
}

std::string CCliHost::takeMessages() { return std::exchange(messages, {}); }

} // namespace vldv::cli
