#pragma once
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

/// Benchmarks that judge by ratios: all contestants run in turn, several times, and the best time of each counts, so
/// that a busy or a slow machine changes the times but hardly their ratio.
namespace vldv::bench {

/// Processor time of this thread: what other programs take from the machine does not count.
inline double thread_milliseconds()
{
    std::timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) * 1e-6;
}

/// Processor time of all threads of this program.
inline double process_milliseconds()
{
    std::timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) * 1e-6;
}

/// Time on the wall, in which other programs count too: to be looked at, not to be judged.
inline double wall_milliseconds()
{
    std::timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) * 1e-6;
}

class contest {
public:
    void add(std::string name, std::function<void()> run) { entries.push_back({std::move(name), std::move(run)}); }

    /// Runs everything `rounds` times, the first time only to warm up, and prints the best times.
    void run(int rounds, double (*clock)() = thread_milliseconds)
    {
        for (int round = 0; round <= rounds; ++round)
            for (entry& each : entries) {
                const double start = clock();
                each.run();
                const double taken = clock() - start;
                if (round > 0) each.best = std::min(each.best, taken);
            }
        for (const entry& each : entries) std::printf("%-44s %9.3f ms\n", each.name.c_str(), each.best);
    }

    /// Best time of a contestant in milliseconds; infinite for a name that was never added.
    double best(std::string_view name) const
    {
        for (const entry& each : entries)
            if (each.name == name) return each.best;
        return std::numeric_limits<double>::infinity();
    }

private:
    struct entry {
        std::string name;
        std::function<void()> run;
        double best = std::numeric_limits<double>::infinity();
    };
    std::vector<entry> entries;
};

/// Prints "name ratio limit ok|MISSED" for each demand and remembers whether one was missed.
class verdict {
public:
    void at_most(const std::string& name, double ratio, double limit)
    {
        print(name, ratio, "<=", limit, ratio <= limit);
    }
    void at_least(const std::string& name, double ratio, double limit)
    {
        print(name, ratio, ">=", limit, ratio >= limit);
    }
    int exit_status() const noexcept { return missed ? 1 : 0; }

private:
    void print(const std::string& name, double ratio, const char* relation, double limit, bool kept)
    {
        std::printf("%-52s %6.2f  %s %.2f  %s\n", name.c_str(), ratio, relation, limit, kept ? "ok" : "MISSED");
        missed = missed || !kept;
    }
    bool missed = false;
};

} // namespace vldv::bench
