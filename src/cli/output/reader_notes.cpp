#include "cli/output/reader_notes.h"

#include "base/text.h"
#include "document/document_table.h"

#include <algorithm>

namespace vldv::cli {

std::vector<std::string> notes_of(const CStorageDoc& document)
{
    std::vector<std::string> notes = document.getReadWarnings();
    if (document.fileType != FILE_SPMX) return notes;
    const std::string kept = document.getString("\\Reader note", document::documentTable);
    for (const std::string_view line : base::split(kept, '\n'))
        if (!line.empty() && std::ranges::find(notes, line) == notes.end()) notes.emplace_back(line);
    return notes;
}

} // namespace vldv::cli
