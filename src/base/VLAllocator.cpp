#include "base/VLAllocator.h"

#include <cstdlib>
#include <new>

void* VLAllocator::operator new(std::size_t bytes)
{
    if (void* block = std::malloc(bytes ? bytes : 1)) return block;
    throw std::bad_alloc();
}

void VLAllocator::operator delete(void* block) noexcept { std::free(block); }

void* VLAllocator::operator new[](std::size_t bytes) { return operator new(bytes); }

void VLAllocator::operator delete[](void* block) noexcept { std::free(block); }
