#include "document/history/earlier_result.h"

#include "document/FileReader.h"
#include "document/history/merge_documents.h"
#include "platform/files/file_stamp.h"
#include "platform/files/paths.h"

#include <fstream>

namespace vldv::document {

namespace {

bool is_native(const std::wstring& path)
{
    if (!platform::stamp_of(path)) return false; // never waits for what is no file
    std::ifstream in(platform::to_path(path), std::ios::binary);
    return in && VLFileReader::GetDocumentType(in) == FILE_SPMX;
}

} // namespace

std::wstring earlier_result(const std::wstring& path, const std::wstring& extension)
{
    const std::wstring held = held_path(path, extension, is_native(path));
    return held != path && is_native(held) ? held : std::wstring();
}

} // namespace vldv::document
