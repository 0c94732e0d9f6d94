#include "cli/result_files.h"

#include "platform/paths.h"

#include <stdexcept>

namespace cli {

std::filesystem::path result_files::next(const std::wstring& input, const std::string& suffix, bool alone)
{
    std::filesystem::path path = names.next(input, suffix, alone);
    if (call.isInput(path)) throw std::runtime_error("the output \"" + path.native() + "\" is an input of this call");
    if (!written.insert(identity(path)).second)
        throw std::runtime_error("the output \"" + path.native() + "\" was written by this call already");
    return path;
}

std::string result_files::save(CStorageDoc& document, const std::wstring& input)
{
    const std::filesystem::path path = next(input, {}, call.files().size() == 1);
    if (const std::string reason = call.save(document, platform::to_wide(path)); !reason.empty())
        throw std::runtime_error(reason);
    return path.native();
}

} // namespace cli
