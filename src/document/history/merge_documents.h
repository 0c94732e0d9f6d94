#pragma once
#include <string>
#include <vector>

class CStorageDoc;

namespace vldv::document {

/// Adds the images of `from`, another document, to `into`, which has no views yet.
/// One joins the image of the same name as further sub-images when its samples mean the same there: equal lengths,
/// element type and value axes, dimensions of equal scale and units (their start may differ, as in a series that
/// drifts), and the same parameter stream, which joins as well. The first name of an added sub-image is the title of
/// its file: "scan7 Forward", or "scan7 3" for the third of several without names; the sub-images that `into` holds
/// without names get such names too.
/// Any other image is appended with its texts. Where its id is taken it gets one of its own, and so do the references
/// that the images of `from` make to it. Texts of joined images and of the document `from` itself are not taken over.
/// \throws std::bad_alloc, or std::length_error for more than 2^32 elements, with `into` as it was
void merge_documents(CStorageDoc& into, const CStorageDoc& from);

/// "open.filter": 1, 2 and 3 ask for an image of that many dimensions, other numbers for nothing.
bool takes_part(const CStorageDoc& document, int filter) noexcept;

/// Where a file is held: a native one under its own name when it has the template's extension; any other, also a
/// foreign file with that extension, with the extension appended, so that saving never writes over a recording.
std::wstring held_path(const std::wstring& path, const std::wstring& extension, bool isNative);

/// Whether a document held at `held` is the file `requested`, a full path, in either form of `held_path`.
bool is_held_path(const std::wstring& held, const std::wstring& requested, const std::wstring& extension);

/// Path of the `number`th merged document, beside the file at `first`.
std::wstring merged_path(const std::wstring& first, unsigned number, const std::wstring& extension);

/// By code point; equal ones keep their order.
void sort_paths(std::vector<std::wstring>& paths);

} // namespace vldv::document
