#include "cli/progress.h"

#include <cstdio>
#include <string>
#include <unistd.h>

namespace cli {

progress_bar::progress_bar(std::size_t steps_) : steps(steps_), shown(steps_ > 1 && isatty(STDERR_FILENO) == 1)
{
    draw();
}

progress_bar::~progress_bar() { clear(); }

void progress_bar::advance()
{
    ++done;
    draw();
}

void progress_bar::clear()
{
    if (shown) std::fputs("\r\033[K", stderr);
}

void progress_bar::draw()
{
    if (!shown) return;
    constexpr std::size_t width = 40;
    const std::size_t filled = width * done / steps;
    const std::string bar = std::string(filled, '#') + std::string(width - filled, ' ');
    std::fprintf(stderr, "\r[%s] %zu/%zu", bar.c_str(), done, steps);
    std::fflush(stderr);
}

} // namespace cli
