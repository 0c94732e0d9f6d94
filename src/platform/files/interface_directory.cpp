#include "platform/files/interface_directory.h"

#include "base/SPMVarList.h"

namespace {

std::string language()
{
    VLGlobalVarList* const options = VLGlobalVarList::GetVarList("global_options");
    std::string name = (*options)["language"].as_string().c_str();
    options->ReleaseList();
    return name;
}

} // namespace

std::filesystem::path get_interface_directory(bool noLanguage)
{
    std::error_code error;
    std::filesystem::path folder = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
    if (error) folder = std::filesystem::current_path(error);
    if (const std::string name = noLanguage ? std::string() : language(); !name.empty()) folder /= name;
    // With its separator at the end, so that callers may append a name.
    return folder / "";
}

namespace platform {

std::filesystem::path find_interface_file(const std::string& name)
{
    std::error_code error;
    const std::filesystem::path translated = get_interface_directory(false) / name;
    return std::filesystem::exists(translated, error) ? translated : get_interface_directory(true) / name;
}

} // namespace platform
