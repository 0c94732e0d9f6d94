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
    std::vector<std::pair<platform::file_stamp, std::wstring>> found;
    const auto add = [&](const std::wstring& result) {
        if (is_native(result)) found.emplace_back(platform::stamp_of(result).value_or(platform::file_stamp()), result);
    };
    for (unsigned number = lastNumber; number > 1; --number)
        if (const std::wstring beside = numbered_path(held, number); !is_of_another(beside, extension)) add(beside);
    add(held);
    std::ranges::stable_sort(found, std::ranges::greater(),
                             [](const auto& each) { return std::tuple(each.first.seconds, each.first.nanoseconds); });
    found.resize(std::min(found.size(), mostResults));
    std::vector<std::wstring> results;
    for (auto& [stamp, result] : found) results.push_back(std::move(result));
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
