#include "cli/output/output_names.h"

#include "base/text.h"
#include "cli/output/standard_streams.h"
#include "cli/output/terminal.h"
#include "platform/files/paths.h"

#include <CLI/Error.hpp>
#include <stdexcept>

namespace vldv::cli {

namespace fs = std::filesystem;

void make_folder(const fs::path& folder)
{
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) throw std::runtime_error(visible_text(folder.native()) + ": " + error.message());
}

output_names::output_names(const std::string& output, std::string extension)
    : target(platform::to_path(platform::full_path(base::widen(output)))), folderExtension(std::move(extension))
{
    if (output == standardStream) throw CLI::ValidationError("-", "these results go to files, not to standard output");
    std::error_code error;
    isFolder = output.ends_with('/') || target.extension().empty() || fs::is_directory(target, error);
    if (isFolder) make_folder(target);
}

output_names output_names::ofContainers(const std::string& output)
{
    const bool isContainer = base::equal_ignoring_case(fs::path(output).extension().native(), ".spm");
    return {isContainer || output == standardStream ? output : output + '/', ".spm"};
}

fs::path output_names::next(const std::wstring& input, const fs::path& below, const std::string& suffix, bool alone)
{
    // One result takes the name as it was given. Several become "NAME-INPUT" beside it or, in a folder, "INPUT", with
    // the suffix that tells results of one input apart. What was found in a folder keeps its subfolder.
    if (alone && !isFolder) return target;
    const std::string extension = isFolder ? folderExtension : target.extension().native();
    fs::path file = platform::to_path(input).filename();
    if (suffix.empty() && base::equal_ignoring_case(file.extension().native(), extension)) file = file.stem();
    const std::string stem = (isFolder ? std::string() : target.stem().native() + "-") + file.native() + suffix;
    const fs::path folder = (isFolder ? target : target.parent_path()) / below;
    make_folder(folder);
    fs::path path = folder / (stem + extension);
    if (folderExtension == ".spm") return path;
    // Files of one name out of several folders.
    for (unsigned number = 2; !used.insert(path).second; ++number)
        path = folder / (stem + base::formatted("-%u", number) + extension);
    return path;
}

} // namespace vldv::cli
