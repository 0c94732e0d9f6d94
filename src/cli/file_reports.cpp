#include "cli/file_reports.h"

#include "base/text.h"

#include <iostream>

namespace cli {

int report_files(session& call, bool asJson, const file_treatment& treat)
{
    using json = nlohmann::ordered_json;
    json files = json::array();
    call.forEachDocument(
        [&](CStorageDoc& document, const std::wstring& path) { files.push_back(treat(document, path)); },
        [&](const std::wstring& path, const std::string& reason) {
            files.push_back({{"path", base::narrow(path)}, {"error", reason}});
        });
    if (asJson) std::cout << json{{"files", files}}.dump(2, ' ', false, json::error_handler_t::replace) << '\n';
    return call.status();
}

} // namespace cli
