#pragma once
#include "vldv_api.h"

#include <cstddef>

/// One step of an image's history: its declaration with dimensions and axes, and a copy of its bytes. Both live on the
/// C heap. \throws CMemoryException where there is no memory
class VLDV_API CUndoData {
public:
    /// Copies both. `data_` may be null when `size_` is 0.
    CUndoData(const char* description_, std::size_t size_, const void* data_);
    CUndoData(const CUndoData& other);
    CUndoData(CUndoData&& other) noexcept;
    CUndoData& operator=(const CUndoData& other);
    CUndoData& operator=(CUndoData&& other) noexcept;
    virtual ~CUndoData();

    char* description = nullptr;
    std::size_t size = 0; ///< bytes
    void* data = nullptr; ///< null for no bytes
};

namespace vldv::document {

using heap_function = void* (*)(std::size_t);

/// Lets records take their memory from another function, to try what happens when there is none; null: from malloc.
/// Blocks are given back to free. \return the function before
VLDV_API heap_function set_undo_heap(heap_function heap) noexcept;

} // namespace vldv::document
