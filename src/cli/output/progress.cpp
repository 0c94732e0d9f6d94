#include "cli/output/progress.h"

#include <algorithm>
#include <string>
#include <unistd.h>

namespace vldv::cli {

namespace {

constexpr std::size_t width = 40; // columns of the bar

} // namespace

progress_bar::progress_bar(std::size_t steps_)
    : progress_bar(steps_, stderr, isatty(STDERR_FILENO) == 1, std::chrono::milliseconds(500))
{
}

progress_bar::progress_bar(std::size_t steps_, std::FILE* out_, bool isTerminal, std::chrono::milliseconds patience)
    : steps(steps_), out(out_), appears(std::chrono::steady_clock::now() + patience), shown(isTerminal && steps_ != 0)
{
    if (steps > 1) draw(0.0);
}

progress_bar::~progress_bar() { clear(); }

void progress_bar::advance()
{
    done = std::min(done + 1, steps);
    if (steps > 1) draw(0.0);
}

void progress_bar::tell(double part)
{
    if (!shown || done == steps) return;
    if (steps > 1 || std::chrono::steady_clock::now() >= appears) draw(std::clamp(part, 0.0, 1.0));
}

void progress_bar::clear()
{
    // Back to the start of the line, and what is behind it goes.
    if (isDrawn) std::fputs("\r\033[K", out);
    isDrawn = false;
}

void progress_bar::draw(double part)
{
    if (!shown) return;
    const double all = (static_cast<double>(done) + part) / static_cast<double>(steps);
    const auto columns = static_cast<std::size_t>(static_cast<double>(width) * all);
    if (isDrawn && columns == drawnColumns && part != 0.0) return; // only a new step has another text
    const std::string bar = std::string(columns, '#') + std::string(width - columns, ' ');
    const std::string text =
        "\r[" + bar + "]" + (steps > 1 ? " " + std::to_string(done) + "/" + std::to_string(steps) : "");
    std::fputs(text.c_str(), out);
    std::fflush(out);
    isDrawn = true;
    drawnColumns = columns;
}

} // namespace vldv::cli
