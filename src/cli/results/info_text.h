#pragma once
#include "document/StorageDoc.h"

#include <string>

namespace vldv::cli {

/// What a file holds, a line an image, every number in the unit in which it reads well.
void print_info_table(const CStorageDoc& document, const std::wstring& path);
/// With every axis and every sub-image's range as they stand in the document, and the text parameters if asked for.
void print_info_details(const CStorageDoc& document, const std::wstring& path, bool withStrings);

} // namespace vldv::cli
