#pragma once
#include <cstddef>

namespace cli {

/// A bar on standard error when that is a terminal and there is more than one step to show.
class progress_bar {
public:
    explicit progress_bar(std::size_t steps_);
    progress_bar(const progress_bar&) = delete;
    progress_bar& operator=(const progress_bar&) = delete;
    ~progress_bar();

    void advance();
    /// Takes the bar off the line, for a message; the next step shows it again.
    void clear();

private:
    void draw();

    std::size_t steps, done = 0;
    bool shown;
};

} // namespace cli
