#include "document/history/earlier_result.h"

#include "base/text.h"
#include "document/FileReader.h"
#include "document/history/merge_documents.h"
#include "document/history/own_files.h"
#include "platform/app/menu_item.h"
#include "platform/files/file_stamp.h"
#include "platform/files/paths.h"

#include <algorithm>
#include <fstream>
#include <tuple>

namespace vldv::document {

namespace {

bool is_native(const std::wstring& path)
{
    if (!platform::stamp_of(path)) return false; // never waits for what is no file
    std::ifstream in(platform::to_path(path), std::ios::binary);
    return in && VLFileReader::GetDocumentType(in) == FILE_SPMX;
}

/// A recording of that name without the extension is there, whose result the file then is.
bool is_of_another(const std::wstring& result, const std::wstring& extension)
{
    return platform::stamp_of(result.substr(0, result.size() - extension.size())).has_value();
}

/// "Open", with access keys for the first and for the recording.
std::string button_of(const std::wstring& result, bool isFirst)
{
    return (isFirst ? "&Open \"" : "Open \"") + menu_text(base::narrow(platform::file_name(result))) + "\"";
}

} // namespace

std::vector<std::wstring> earlier_results(const std::wstring& path, const std::wstring& extension)
{
    constexpr unsigned lastNumber = 9; // some may have been deleted: each is looked for
    constexpr std::size_t mostResults = 4;
    const std::wstring held = held_path(path, extension, is_native(path));
    if (held == path) return {};
    struct numbered_result {
        platform::file_stamp stamp;
        unsigned number; ///< tells files of one time apart: the higher is the later one
        std::wstring path;
    };
    std::vector<numbered_result> found;
    const auto add = [&](unsigned number, const std::wstring& result) {
        if (is_native(result))
            found.push_back({platform::stamp_of(result).value_or(platform::file_stamp()), number, result});
    };
    for (unsigned number = lastNumber; number > 1; --number)
        if (const std::wstring beside = numbered_path(held, number); !is_of_another(beside, extension))
            add(number, beside);
    add(1, held);
    std::ranges::sort(found, std::ranges::greater(), [](const numbered_result& each) {
        return std::tuple(each.stamp.seconds, each.stamp.nanoseconds, each.number);
    });
    found.resize(std::min(found.size(), mostResults));
    std::vector<std::wstring> results;
    for (numbered_result& each : found) results.push_back(std::move(each.path));
    return results;
}

question results_question(const std::vector<std::wstring>& results)
{
    question asked;
    asked.text = results.size() == 1 ? "\"" + base::narrow(platform::file_name(results.front())) +
                                           "\" beside this recording holds what was saved of it earlier.\n\nOpen that?"
                                     : "Files beside this recording hold what was saved of it earlier, the latest "
                                       "first.\n\nOpen one of them?";
    for (const std::wstring& result : results) asked.answers.push_back(button_of(result, asked.answers.empty()));
    asked.answers.insert(asked.answers.end(), {"Open the &recording", "Cancel"});
    return asked;
}

} // namespace vldv::document
