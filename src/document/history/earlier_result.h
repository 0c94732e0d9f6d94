#pragma once
#include <string>

namespace vldv::document {

/// The native file beside a recording in which it is saved when it was opened from here, if there is one; empty for a
/// native file and where there is none.
/// \param path       full path of the recording
/// \param extension  of native files, with its dot
std::wstring earlier_result(const std::wstring& path, const std::wstring& extension);

} // namespace vldv::document
