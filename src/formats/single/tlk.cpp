#include "formats/single/tlk.h"

#include "formats/registry.h"
#include "formats/shared/file_start.h"
#include "formats/text/text_table.h"

namespace vldv::formats {

bool possible_tlk(std::span<const std::byte>) { return true; }

base::read_result<recording> read_tlk(source& file)
{
    const std::string head = read_start(file, sniffBytes);
    if (possible_text_table(std::as_bytes(std::span(head))))
        if (auto table = read_text_table(file)) return table;
    return base::read_error{0, "TLK files have no public layout and are not supported"};
}

} // namespace vldv::formats
