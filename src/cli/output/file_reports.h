#pragma once
#include "cli/session.h"

#include <functional>
#include <nlohmann/json.hpp>

namespace vldv::cli {

/// What a call tells of its files, an entry each.
using file_treatment = std::function<nlohmann::ordered_json(CStorageDoc&, const std::wstring& path)>;

/// Treats each file of a call and prints {"files":[...]} for machines; a file that failed is {"path","error"}, or what
/// was found before it failed, with the "error" in its last entry. \return the exit status
int report_files(session& call, bool asJson, const file_treatment& treat);

/// Reports files that have any number of entries each, which `treat` appends to those of the call.
using entries_treatment = std::function<void(CStorageDoc&, const std::wstring& path, nlohmann::ordered_json& entries)>;
int report_entries(session& call, bool asJson, const entries_treatment& treat);

/// Prints JSON for machines; on a terminal what would steer it is escaped the way of JSON.
void print_json(const nlohmann::ordered_json& value);

} // namespace vldv::cli
