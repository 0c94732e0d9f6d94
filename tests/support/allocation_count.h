#pragma once
#include <cstddef>

/// How often this test program has called `operator new`. Link support/allocation_count.cpp, which replaces it.
std::size_t allocation_count() noexcept;
