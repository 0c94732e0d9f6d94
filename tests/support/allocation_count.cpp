#include "support/allocation_count.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {
std::atomic<std::size_t> allocations{0};
}

std::size_t allocation_count() noexcept { return allocations; }

void* operator new(std::size_t size)
{
    ++allocations;
    if (void* block = std::malloc(size ? size : 1)) return block;
    throw std::bad_alloc();
}

void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
