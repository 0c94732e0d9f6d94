#include "support/allocation_count.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {
constexpr std::size_t never = std::size_t(-1);
std::atomic<std::size_t> allocations{0};
std::atomic<std::size_t> failing{never}; ///< number of the allocation that throws
std::atomic<bool> hasFailed{false};
} // namespace

std::size_t allocation_count() noexcept { return allocations; }

void fail_allocation_after(std::size_t succeeding) noexcept
{
    hasFailed = false;
    failing = allocations + succeeding;
}

bool allocation_failed() noexcept
{
    failing = never;
    return hasFailed.exchange(false);
}

void* operator new(std::size_t size)
{
    if (allocations++ == failing) {
        hasFailed = true;
        throw std::bad_alloc();
    }
    if (void* block = std::malloc(size ? size : 1)) return block;
    throw std::bad_alloc();
}

void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
