#include "platform/files/interface_directory.h"

#include "base/variables/global_option.h"

#include <dlfcn.h>
#include <vector>

namespace {

std::string language() { return vldv::base::global_option("language").as_string().c_str(); }

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

namespace vldv::platform {

namespace {

/// The folder of shared data of the prefix below which this code lies, as a program or in the library; empty when there
/// is none, as in a build folder.
std::filesystem::path installed_folder()
{
    Dl_info own{};
    if (!dladdr(reinterpret_cast<const void*>(&installed_folder), &own) || !own.dli_fname) return {};
    std::error_code unknown, absent;
    std::filesystem::path above = std::filesystem::canonical(own.dli_fname, unknown).parent_path();
    for (; above.has_relative_path(); above = above.parent_path())
        if (const auto folder = above / "share" / "vldv"; std::filesystem::is_directory(folder, absent)) return folder;
    return {};
}

} // namespace

std::filesystem::path find_interface_file(const std::string& name)
{
    static const std::filesystem::path installed = installed_folder();
    const std::filesystem::path translated = get_interface_directory(false), plain = get_interface_directory(true);
    std::vector<std::filesystem::path> folders{translated, plain};
    if (!installed.empty())
        folders.insert(folders.end(), {installed / translated.lexically_relative(plain), installed});
    std::error_code absent;
    for (const std::filesystem::path& folder : folders)
        if (std::filesystem::exists(folder / name, absent)) return folder / name;
    return plain / name;
}

} // namespace vldv::platform
