#pragma once
#include <string>
#include <vector>

class CStorageDoc;

namespace document {

/// Adds the images of `from` to `into`. One whose name, shape, element type and value axes are those of an image of
/// `into` becomes further sub-images of it, named by file title and sub-image; others are appended under an id of their
/// own, with their texts. \throws std::bad_alloc or std::length_error with the images so far merged whole
void merge_documents(CStorageDoc& into, const CStorageDoc& from);

/// "open.filter": 1, 2 and 3 ask for an image of that many dimensions, other numbers for nothing.
bool passes_filter(const CStorageDoc& document, int filter) noexcept;

/// Where a file is held: a native one under its own name when it has the template's extension; any other, also a
/// foreign file with that extension, with the extension appended, so that saving never writes over a recording.
std::wstring held_path(const std::wstring& path, const std::wstring& extension, bool isNative);

/// Path of the `number`th merged document, beside the file at `first`.
std::wstring merged_path(const std::wstring& first, int number, const std::wstring& extension);

/// By code point.
void sort_paths(std::vector<std::wstring>& paths);

} // namespace document
