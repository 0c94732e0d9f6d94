#include "document/UndoData.h"

#include "platform/files/Exceptions.h"

#include <cstdlib>
#include <cstring>
#include <utility>

using namespace vldv;

namespace {

document::heap_function heap = std::malloc;

void* copied(const void* source, std::size_t size)
{
    if (size == 0) return nullptr;
    void* block = heap(size);
    if (!block) throw CMemoryException();
    return std::memcpy(block, source, size);
}

} // namespace

document::heap_function document::set_undo_heap(heap_function replacement) noexcept
{
    return std::exchange(heap, replacement ? replacement : std::malloc);
}

CUndoData::CUndoData(const char* description_, std::size_t size_, const void* data_) : size(size_)
{
    description = static_cast<char*>(copied(description_, std::strlen(description_) + 1));
    try {
        data = copied(data_, size);
    } catch (...) {
        std::free(description);
        throw;
    }
}

CUndoData::CUndoData(const CUndoData& other) : CUndoData(other.description, other.size, other.data) {}

CUndoData::CUndoData(CUndoData&& other) noexcept
    : description(std::exchange(other.description, nullptr)),
      size(std::exchange(other.size, 0)),
      data(std::exchange(other.data, nullptr))
{
}

CUndoData& CUndoData::operator=(const CUndoData& other)
{
    CUndoData copy(other);
    return *this = std::move(copy);
}

CUndoData& CUndoData::operator=(CUndoData&& other) noexcept
{
    std::swap(description, other.description);
    std::swap(size, other.size);
    std::swap(data, other.data);
    return *this;
}

CUndoData::~CUndoData()
{
    std::free(description);
    std::free(data);
}
