#pragma once
#include <chrono>
#include <cstddef>
#include <cstdio>

namespace vldv::cli {

/// A bar on a terminal: how many of several steps are done, and how much of a slow one. A single step that is done
/// within `patience` shows nothing, and without a terminal nothing is ever shown.
class progress_bar {
public:
    /// On standard error, when that is a terminal.
    explicit progress_bar(std::size_t steps_);
    progress_bar(std::size_t steps_, std::FILE* out_, bool isTerminal, std::chrono::milliseconds patience);
    progress_bar(const progress_bar&) = delete;
    progress_bar& operator=(const progress_bar&) = delete;
    ~progress_bar();

    void advance();
    /// How much of the present step is done, 0 to 1; cheap when the bar stays the same.
    void tell(double part);
    /// Takes the bar off the line, for a message; the next change shows it again.
    void clear();

private:
    void draw(double part);

    std::size_t steps, done = 0;
    std::FILE* out;
    std::chrono::steady_clock::time_point appears; ///< of a single step
    bool shown, isDrawn = false;
    std::size_t drawnColumns = 0;
};

} // namespace vldv::cli
