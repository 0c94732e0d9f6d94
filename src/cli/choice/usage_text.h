#pragma once
#include <string>

namespace CLI {
class App;
class Error;
} // namespace CLI

namespace vldv::cli {

/// Why a call cannot be understood, in the words of this program: names the sub-command and its option, the nearest
/// option where a word is none, and where help is. Two lines.
std::string usage_text(const CLI::App& app, const CLI::Error& problem);

} // namespace vldv::cli
