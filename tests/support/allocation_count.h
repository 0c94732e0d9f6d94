#pragma once
#include <cstddef>
#include <gtest/gtest.h>
#include <new>

/// How often this test program has called `operator new`. Link support/allocation_count.cpp, which replaces it.
std::size_t allocation_count() noexcept;

/// Lets `operator new` throw once in this thread, after `succeeding` more calls. \see allocation_failed
void fail_allocation_after(std::size_t succeeding) noexcept;
/// Whether it has thrown since; a failure still to come is called off.
bool allocation_failed() noexcept;

/// Lets the allocations of `act` fail in turn until none does. Each time: `setup()`, `act()` and
/// `check(isDone, hasFailed)`, where an act that let std::bad_alloc out is not done.
/// \return how often; fewer after a fatal failure
template <class Setup, class Act, class Check>
std::size_t for_each_failing_allocation(const Setup& setup, const Act& act, const Check& check)
{
    bool hasFailed = true;
    std::size_t succeeding = 0;
    for (; hasFailed && !testing::Test::HasFatalFailure(); ++succeeding) {
        SCOPED_TRACE(succeeding);
        setup();
        bool isDone = true;
        fail_allocation_after(succeeding);
        try {
            act();
        } catch (const std::bad_alloc&) {
            isDone = false;
        }
        hasFailed = allocation_failed();
        check(isDone, hasFailed);
    }
    return succeeding;
}
