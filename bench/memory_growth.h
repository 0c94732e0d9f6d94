#pragma once
#include <fstream>
#include <malloc.h>
#include <string>

namespace vldv::bench {

/// A row of /proc/self/status in MB (10^6 bytes).
inline double memory_of_process(const std::string& row)
{
    std::ifstream status("/proc/self/status");
    for (std::string name; status >> name;)
        if (name == row + ":") {
            double kibibytes = 0.0;
            status >> kibibytes;
            return kibibytes * 1024e-6;
        }
    return 0.0;
}

/// How much the memory of the process grows at most while something runs, in MB.
template <class Run>
double memory_growth(Run run)
{
    // Large blocks come from the system and go back there meanwhile, so that the growth is what is really needed.
    mallopt(M_MMAP_THRESHOLD, 1 << 16);
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << 5; // the peak starts anew
    const double before = memory_of_process("VmRSS");
    run();
    const double grown = memory_of_process("VmHWM") - before;
    mallopt(M_MMAP_THRESHOLD, 1 << 25);
    mallopt(M_TRIM_THRESHOLD, 1 << 26);
    return grown;
}

} // namespace vldv::bench
