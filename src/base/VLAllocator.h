#pragma once
#include "vldv_api.h"

#include <cstddef>

/// Gives derived classes one heap, that of this library, so that an object or array made on one side of a library
/// boundary can be deleted on the other. Array blocks carry their element count in front of the first element.
class VLDV_API VLAllocator {
public:
    static void* operator new(std::size_t bytes);
    static void operator delete(void* block) noexcept;
    static void* operator new[](std::size_t bytes);
    static void operator delete[](void* block) noexcept;
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void*, void*) noexcept {}
};
