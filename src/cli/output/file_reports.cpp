#include "cli/output/file_reports.h"

#include "base/text.h"

#include <iostream>
#include <unistd.h>

namespace vldv::cli {

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
    std::size_t done = 0; // entries of files that are done with
    call.forEachDocument(
        [&](CStorageDoc& document, const std::wstring& path) {
            treat(document, path, files);
            done = files.size();
        },
        [&](const std::wstring& path, const std::string& reason) {
            // A file that fails half way has entries already: the last of them tells the error. Without any it gets one
            // of its own.
            if (files.size() == done) files.push_back({{"path", base::narrow(path)}});
            files.back()["error"] = reason;
            done = files.size();
        });
    if (asJson) print_json({{"files", files}});
    return call.status();
}

void print_json(const json& value)
{
    const bool onlyAscii = isatty(STDOUT_FILENO) == 1;
    std::cout << value.dump(2, ' ', onlyAscii, json::error_handler_t::replace) << '\n';
}

} // namespace vldv::cli
