#include "formats/source.h"

#include <cstring>

namespace vldv::formats {

bool source::readAll(std::vector<std::byte>& out)
{
    out.resize(size());
    return read(0, out);
}

bool memory_source::read(std::uint64_t offset, std::span<std::byte> out)
{
    if (offset > bytes.size() || out.size() > bytes.size() - offset) return false;
    if (!out.empty()) std::memcpy(out.data(), bytes.data() + offset, out.size());
    return true;
}

} // namespace vldv::formats
