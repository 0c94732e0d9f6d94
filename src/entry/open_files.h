#pragma once
#include "vldv_api.h"

#include <span>
#include <string>
#include <vector>

class CWinApp;

namespace vldv::entry {

/// Opens files by the names that a user gave: "~" is the home folder, a folder stands for the recordings in it. Those
/// that cannot be opened are told in one list; many files of a folder only after a question.
VLDV_INTERNAL_API void open_files(CWinApp& app, std::span<const std::wstring> names);

} // namespace vldv::entry
