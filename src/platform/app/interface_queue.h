#pragma once
#include "vldv_api.h"

#include <deque>
#include <functional>
#include <mutex>

namespace vldv::platform {

/// What other threads want done on the interface thread. Threads share it with the host (`IHost::interfaceQueue`), so
/// that it is there for one that outlives the program's windows; from `close` on it takes nothing more.
class VLDV_INTERNAL_API interface_queue {
public:
    /// Keeps `work` for the interface thread. From any thread; the thread does not wait.
    /// \return false when the program is ending: `work` will not run
    bool post(std::function<void()> work);

    // Interface thread only.
    /// \param wake_  makes the interface thread call `runNext` once, soon; called from any thread, once a work, and
    ///               must not post itself. Works that wait already are woken for.
    void open(std::function<void()> wake_);
    /// Runs the work that waits longest. What it throws goes on to the caller; the others stay. \return one was there
    bool runNext();
    /// Until `resume` works wait: a document is half read.
    void hold() noexcept { ++holds; }
    void resume();
    /// Drops what waits. Works posted from now on are refused.
    void close();

private:
    std::mutex guard; ///< of the three below
    std::deque<std::function<void()>> waiting;
    std::function<void()> wake;
    bool isClosed = false;
    int holds = 0;
    std::size_t missed = 0; ///< calls of `runNext` while works were held back
};

} // namespace vldv::platform
