#pragma once
#include <filesystem>
#include <set>
#include <string>

namespace vldv::cli {

/// Makes a folder and those above it where they are missing. \throws std::runtime_error with the reason
void make_folder(const std::filesystem::path& folder);

/// Where the results of a call go: into one file, or into a folder or beside each other with a name for each.
class output_names {
public:
    /// \param output     a folder when it ends with a slash, has no extension or is one, and is made when it is missing
    /// \param extension  of the names in a folder; elsewhere results share that of `output`
    /// \throws CLI::ValidationError  when it is "-": results with names cannot share standard output
    /// \throws std::runtime_error     when the folder cannot be made, with the reason
    output_names(const std::string& output, std::string extension);
    /// Of native containers; an `output` that is not the name of one is a folder.
    static output_names ofContainers(const std::string& output);

    bool areInFolder() const noexcept { return isFolder; }

    /// The name of a result of a file: `output` itself for one that is `alone`, in a folder FILE + suffix + extension,
    /// else STEM-FILE + suffix + extension beside it. A file that has the extension already does not get it again where
    /// there is no suffix. Never the same twice, but for containers: with a number that depends on what else is there
    /// they would hold another measurement at the next call.
    /// \param below  folder of the result below that of the others, made when it is missing; may be empty
    /// \throws std::runtime_error  when it cannot be made, with the reason
    std::filesystem::path next(const std::wstring& input, const std::filesystem::path& below, const std::string& suffix,
                               bool alone);

private:
    std::filesystem::path target;
    std::string folderExtension;
    bool isFolder = false;
    std::set<std::filesystem::path> used;
};

} // namespace vldv::cli
