#include "platform/app/interface_queue.h"

#include <cassert>
#include <utility>

namespace vldv::platform {

bool interface_queue::post(std::function<void()> work)
{
    assert(work && "something to do");
    const std::lock_guard lock(guard);
    if (isClosed) return false;
    waiting.push_back(std::move(work));
    if (wake) wake(); // under the lock, so that it is not called any more once `close` has returned
    return true;
}

void interface_queue::open(std::function<void()> wake_)
{
    const std::lock_guard lock(guard);
    wake = std::move(wake_);
    for (std::size_t i = 0; wake && i < waiting.size(); ++i) wake();
}

bool interface_queue::runNext()
{
    std::function<void()> work;
    {
        const std::lock_guard lock(guard);
        if (waiting.empty()) return false;
        if (holds > 0) {
            ++missed;
            return false;
        }
        work = std::move(waiting.front());
        waiting.pop_front();
    }
    work(); // outside of the lock: it may post
    return true;
}

void interface_queue::resume()
{
    assert(holds > 0 && "each resume pairs with a hold");
    if (--holds > 0) return;
    const std::lock_guard lock(guard);
    for (std::size_t due = std::exchange(missed, 0); wake && due > 0; --due) wake();
}

void interface_queue::close()
{
    std::deque<std::function<void()>> dropped; // goes outside of the lock: what they hold may do anything
    const std::lock_guard lock(guard);
    isClosed = true;
    wake = nullptr;
    dropped.swap(waiting);
}

} // namespace vldv::platform
