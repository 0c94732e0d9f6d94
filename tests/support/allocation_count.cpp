#include "support/allocation_count.h"

#include <atomic>
#include <cstdlib>
#include <new>
#include <utility>

namespace {
constexpr std::size_t never = std::size_t(-1);
std::atomic<std::size_t> allocations{0};
// Of each thread: what fails elsewhere is another test.
thread_local std::size_t untilFailure = never;
thread_local bool hasFailed = false;
} // namespace

std::size_t allocation_count() noexcept { return allocations; }

void fail_allocation_after(std::size_t succeeding) noexcept
{
    hasFailed = false;
    untilFailure = succeeding;
}

bool allocation_failed() noexcept
{
    untilFailure = never;
    return std::exchange(hasFailed, false);
}

void* operator new(std::size_t size)
{
    ++allocations;
    if (untilFailure != never && untilFailure-- == 0) {
        hasFailed = true;
        throw std::bad_alloc();
    }
    if (void* block = std::malloc(size ? size : 1)) return block;
    throw std::bad_alloc();
}

// As the plain one does it: the sanitizers' own would not be released by the operators below.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    try {
        return operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
