#pragma once
#include <memory>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

namespace vldv::cli {

/// Text from files with what would steer a terminal made visible: control characters as \x1B (line ends, tabs and
/// returns as \n, \t, \r), bytes that are no UTF-8 as \x9B, characters that change the direction of writing or have no
/// width as \u202E.
std::string visible_text(std::string_view text);
/// Several lines made visible like that; their ends and tabs stay.
std::string visible_lines(std::string_view text);

/// A path as a line of what is printed, for scripts as well: its line ends are shown, all other bytes stay.
std::string path_line(std::string_view path);

/// Lets everything that goes to a stream through `visible_lines`, piece by piece.
class visible_buffer : public std::streambuf {
public:
    explicit visible_buffer(std::streambuf& target_) : target(target_) {}
    ~visible_buffer() override;

protected:
    int_type overflow(int_type c) override;
    int sync() override;

private:
    bool put(unsigned char byte);
    bool dropPending();

    std::streambuf& target;
    std::string pending; ///< bytes of a character that is not whole yet
};

/// Makes what a stream of the program writes visible for its lifetime where it goes to a terminal.
class terminal_guard {
public:
    /// \param isTerminal  otherwise nothing changes: bytes reach files and pipes as they are
    terminal_guard(std::ostream& stream_, bool isTerminal);
    terminal_guard(const terminal_guard&) = delete;
    terminal_guard& operator=(const terminal_guard&) = delete;
    ~terminal_guard();

private:
    std::ostream& stream;
    std::streambuf* before;
    std::unique_ptr<visible_buffer> buffer;
};

} // namespace vldv::cli
