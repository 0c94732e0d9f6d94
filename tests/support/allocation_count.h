#pragma once
#include <cstddef>

/// How often this test program has called `operator new`. Link support/allocation_count.cpp, which replaces it.
std::size_t allocation_count() noexcept;

/// Lets `operator new` throw once, after `succeeding` more calls. \see allocation_failed
void fail_allocation_after(std::size_t succeeding) noexcept;
/// Whether it has thrown since; a failure still to come is called off.
bool allocation_failed() noexcept;
