#pragma once
#include <algorithm>
#include <atomic>
#include <cstddef>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace vldv::primitives {

/// Shares `count` items out among threads, `together` at a time. Every thread calls `makeWorker` once and then its
/// worker with ranges [first, end); a worker keeps what it needs from range to range. Each item is worked on once, by
/// whichever thread comes first, so results must not depend on which. \throws what a worker threw first
template <class MakeWorker>
void parallel_blocks(std::size_t count, std::size_t together, unsigned threads, MakeWorker makeWorker)
{
    std::atomic<std::size_t> next{0};
    std::exception_ptr failure;
    std::mutex failureGuard;
    const auto work = [&] {
        try {
            auto worker = makeWorker();
            for (std::size_t first = next.fetch_add(together); first < count; first = next.fetch_add(together))
                worker(first, std::min(first + together, count));
        } catch (...) {
            const std::lock_guard lock(failureGuard);
            if (!failure) failure = std::current_exception();
            next = count; // the others stop as well
        }
    };
    const std::size_t blocks = (count + together - 1) / together;
    std::vector<std::jthread> others;
    for (unsigned i = 1; i < std::min<std::size_t>(threads, blocks); ++i) others.emplace_back(work);
    work();
    others.clear();
    if (failure) std::rethrow_exception(failure);
}

} // namespace vldv::primitives
