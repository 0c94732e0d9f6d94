#include "cli/file_reports.h"

#include "base/text.h"

#include <iostream>

namespace cli {

using json = nlohmann::ordered_json;

int report_files(session& call, bool asJson, const file_treatment& treat)
{
    return report_entries(call, asJson, [&](CStorageDoc& document, const std::wstring& path, json& entries) {
        entries.push_back(treat(document, path));
    });
}

int report_entries(session& call, bool asJson, const entries_treatment& treat)
{
    json files = json::array();
    call.forEachDocument([&](CStorageDoc& document, const std::wstring& path) { treat(document, path, files); },
                         [&](const std::wstring& path, const std::string& reason) {
                             files.push_back({{"path", base::narrow(path)}, {"error", reason}});
                         });
    if (asJson) std::cout << json{{"files", files}}.dump(2, ' ', false, json::error_handler_t::replace) << '\n';
    return call.status();
}

} // namespace cli
