#include "cli/output/result_files.h"

#include "platform/files/paths.h"

#include <stdexcept>

namespace vldv::cli {

std::filesystem::path result_files::next(const std::wstring& input, const std::string& suffix, bool alone)
{
    std::filesystem::path path = names.next(input, call.placeBelow(), suffix, alone);
    call.claim(path);
    return path;
}

std::filesystem::path result_files::save(CStorageDoc& document, const std::wstring& input, const std::string& suffix)
{
    std::filesystem::path path = names.next(input, call.placeBelow(), suffix, call.files().size() == 1);
    if (const std::string reason = call.save(document, platform::to_wide(path)); !reason.empty())
        throw std::runtime_error(reason);
    return path;
}

} // namespace vldv::cli
