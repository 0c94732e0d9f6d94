#pragma once
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace vldv::recovery {

/// Does what it is given on a thread of its own, one after the other. What a task throws ends that task alone.
class background_writer {
public:
    background_writer();
    background_writer(const background_writer&) = delete;
    background_writer& operator=(const background_writer&) = delete;
    /// Everything that was given is done first.
    ~background_writer();

    /// \param bytes  that the task holds, for `waitingBytes`
    void give(std::function<void()> task, std::size_t bytes = 0);
    /// Held by tasks that are not done yet.
    std::size_t waitingBytes() const;
    /// Returns when everything is done.
    void wait();
    /// Returns when no more than this many bytes are held.
    void waitUntilBelow(std::size_t bytes);
    /// What the first task threw since the last call, or empty.
    std::string takeError();

private:
    struct entry {
        std::function<void()> task;
        std::size_t bytes = 0;
    };
    void run();

    mutable std::mutex guard;
    std::condition_variable changed;
    std::deque<entry> waiting; ///< the first one may be running
    std::size_t held = 0;
    std::string error;
    bool ending = false;
    std::thread thread; ///< the last member: it uses the others
};

} // namespace vldv::recovery
