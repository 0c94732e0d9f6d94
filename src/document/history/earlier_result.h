#pragma once
#include "platform/app/Host.h"

#include <string>
#include <vector>

namespace vldv::document {

/// The native files beside a recording in which it was saved when it was opened from here, the latest first: the one
/// that it is held at, and those that stand beside that where both were kept. Empty for a native file.
/// \param path       full path of the recording
/// \param extension  of native files, with its dot
std::vector<std::wstring> earlier_results(const std::wstring& path, const std::wstring& extension);

/// Asks which of these to open, each by its number, behind them the recording itself, and nothing.
question results_question(const std::vector<std::wstring>& results);

} // namespace vldv::document
