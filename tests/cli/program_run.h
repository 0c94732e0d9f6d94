#pragma once
#include <filesystem>
#include <string>
#include <vector>

/// What a run of the vldv program left.
struct program_result {
    int status = -1;
    std::string out, err;
};

/// Runs the program with `folder` as its current one.
/// \param output  where its standard output goes; empty: into the result
/// \param input   the file that is its standard input; empty: nothing
program_result run_vldv(const std::filesystem::path& folder, const std::vector<std::string>& arguments,
                        const std::filesystem::path& output = {}, const std::filesystem::path& input = {});
