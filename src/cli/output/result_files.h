#pragma once
#include "cli/output/output_names.h"
#include "cli/session.h"

#include <filesystem>
#include <string>
#include <utility>

namespace vldv::cli {

/// Names for the files of one kind that a call writes: never an input of the call, never the same file twice.
class result_files {
public:
    result_files(session& call_, output_names names_) : call(call_), names(std::move(names_)) {}

    /// \throws std::runtime_error with the reason, where the name cannot be written to
    std::filesystem::path next(const std::wstring& input, const std::string& suffix, bool alone);
    /// Saves a document under the next name, which is that of the whole call where it has a single file.
    /// \return where. \throws std::runtime_error with the reason
    std::filesystem::path save(CStorageDoc& document, const std::wstring& input, const std::string& suffix = {});

private:
    session& call;
    output_names names;
};

} // namespace vldv::cli
