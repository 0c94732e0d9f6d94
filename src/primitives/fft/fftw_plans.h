#pragma once
#include <mutex>

namespace vldv::primitives {

/// To be held wherever a plan of FFTW is made or destroyed, in any precision: its planner is one for the whole process
/// and not safe between threads. Executing plans needs no lock.
inline std::mutex& fftw_planner() noexcept
{
    static std::mutex planner;
    return planner;
}

} // namespace vldv::primitives
