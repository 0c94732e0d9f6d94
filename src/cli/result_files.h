#pragma once
#include "cli/output_names.h"
#include "cli/session.h"

#include <filesystem>
#include <set>
#include <string>

namespace cli {

/// Names for the files of one kind that a call writes: never an input of the call, never the same twice.
class result_files {
public:
    /// As for `output_names`.
    result_files(session& call_, const std::string& output, std::string extension)
        : call(call_), names(output, std::move(extension))
    {
    }

    /// \throws std::runtime_error with the reason, where the name cannot be written to
    std::filesystem::path next(const std::wstring& input, const std::string& suffix, bool alone);
    /// Saves a document under the next name, which has no suffix. \throws std::runtime_error with the reason
    std::string save(CStorageDoc& document, const std::wstring& input);

private:
    session& call;
    output_names names;
    std::set<std::filesystem::path> written;
};

} // namespace cli
