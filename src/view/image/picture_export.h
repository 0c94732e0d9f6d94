#pragma once
#include "base/SPMVar.h"
#include "vldv_api.h"

#include <filesystem>
#include <span>

class CDCView;

/// How many formats a filter list names: pairs of a name and its patterns, each followed by a bar. 0 for null.
VLDV_API int CountExportFormats(const wchar_t* filters) noexcept;

namespace vldv::view {

/// Pictures that every view of an image exports, as the filters of string 4026 name them, from 1.
enum picture_filter { bitmapFilter = 1, jpegFilter, tiffFilter };

/// Parameters of a picture format, from 0; they are those of the process and keep what was set. Empty for others.
std::span<SPMVar* const> picture_parameters(int format);

/// Writes what a view shows: its picture in memory, or with "expDec" data and legend anew on white. Failures are told
/// to the user, with the file as it was. \return a file was written
bool export_picture(CDCView& view, int filter, const std::filesystem::path& path);

} // namespace vldv::view
