#include "recovery/background_writer.h"

#include <utility>

namespace vldv::recovery {

background_writer::background_writer() : thread([this] { run(); }) {}

background_writer::~background_writer()
{
    {
        const std::lock_guard lock(guard);
        ending = true;
    }
    changed.notify_all();
    thread.join();
}

void background_writer::give(std::function<void()> task, std::size_t bytes)
{
    {
        const std::lock_guard lock(guard);
        waiting.push_back({std::move(task), bytes});
        held += bytes;
    }
    changed.notify_all();
}

std::size_t background_writer::waitingBytes() const
{
    const std::lock_guard lock(guard);
    return held;
}

void background_writer::wait()
{
    std::unique_lock lock(guard);
    changed.wait(lock, [this] { return waiting.empty(); });
}

void background_writer::waitUntilBelow(std::size_t bytes)
{
    std::unique_lock lock(guard);
    changed.wait(lock, [&] { return held <= bytes; });
}

std::string background_writer::takeError()
{
    const std::lock_guard lock(guard);
    return std::exchange(error, {});
}

void background_writer::run()
{
    std::unique_lock lock(guard);
    for (;;) {
        changed.wait(lock, [this] { return ending || !waiting.empty(); });
        if (waiting.empty()) return;
        // An entry leaves the queue when its task is done and not when it starts: an empty queue means that all is
        // written.
        entry& next = waiting.front(); // stays where it is while others are added behind it
        std::string failure;
        lock.unlock();
        try {
            next.task();
        } catch (const std::exception& thrown) {
            failure = thrown.what();
        }
        next.task = nullptr; // what it holds is freed outside of the lock
        lock.lock();
        if (error.empty()) error = std::move(failure);
        held -= next.bytes;
        waiting.pop_front();
        changed.notify_all();
    }
}

} // namespace vldv::recovery
