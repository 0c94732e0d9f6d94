// What vldv writes on a terminal cannot steer it, whatever stands in a file or in its name.
#include "cli/output/failure_text.h"
#include "cli/output/terminal.h"
#include "cli/program_fixture.h"

#include <new>
#include <pty.h>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

namespace {

TEST(VisibleText, ShowsWhatWouldSteerATerminal)
{
    struct {
        std::string text, shown;
    } const cases[] = {
        {"Height, µm ½ 高", "Height, µm ½ 高"},
        {"\x1b[31mred\x1b[0m", "\\x1B[31mred\\x1B[0m"},
        {"a\tb\r\nc", "a\\tb\\r\\nc"},
        {std::string("\0\x07\x7f", 3), "\\x00\\x07\\x7F"},
        {"\xc2\x9b", "\\x9B"},      // U+009B begins a sequence as well
        {"\x9b\xff", "\\x9B\\xFF"}, // bytes that are no UTF-8
        {"\xe2\x82", "\\xE2\\x82"}, // a character that is cut
        {"\xc0\x9b", "\\xC0\\x9B"}, // an overlong one
        {"a\xe2\x80\xae"
         "fdp.exe",
         "a\\u202Efdp.exe"},                            // from right to left
        {"\xe2\x80\x8b\xef\xbb\xbf", "\\u200B\\uFEFF"}, // no width
    };
    for (const auto& [text, shown] : cases) EXPECT_EQ(cli::visible_text(text), shown);
    EXPECT_EQ(cli::visible_lines("a\tb\n\x1b"), "a\tb\n\\x1B");
}

TEST(VisibleText, ComesThroughAStreamInPieces)
{
    const std::string text = "µ\x1b[2J\n\xe2\x80\xae|\xe2\x82|高\xc2";
    const std::string expected = "µ\\x1B[2J\n\\u202E|\\xE2\\x82|高\\xC2";
    for (std::size_t length = 1; length <= text.size(); ++length) {
        std::ostringstream target;
        {
            cli::visible_buffer buffer(*target.rdbuf());
            std::ostream out(&buffer);
            for (std::size_t at = 0; at < text.size(); at += length) out << text.substr(at, length) << std::flush;
        }
        EXPECT_EQ(target.str(), expected) << "pieces of " << length;
    }
    std::ostringstream pipe;
    const cli::terminal_guard none(pipe, false);
    pipe << text;
    EXPECT_EQ(pipe.str(), text) << "files and pipes get the bytes";
}

TEST(FailureText, NamesTheOperationThatMemoryRanOutFor)
{
    EXPECT_EQ(cli::failure_text(std::bad_alloc()), "not enough memory");
    cli::set_operation("fourier");
    EXPECT_EQ(cli::failure_text(std::bad_alloc()), "not enough memory for fourier");
    EXPECT_EQ(cli::failure_text(std::bad_array_new_length()), "not enough memory for fourier");
    EXPECT_EQ(cli::failure_text(std::runtime_error("no such image")), "no such image");
    cli::set_operation("");
}

class TerminalTest : public ProgramTest {
protected:
    /// What the program writes on a terminal, both streams.
    std::string onTerminal(const std::vector<std::string>& arguments) const
    {
        std::vector<char*> words = {const_cast<char*>(VLDV_PROGRAM)};
        for (const std::string& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
        words.push_back(nullptr);
        int terminal = -1;
        const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
        if (child == 0) {
            if (chdir(folder.path.c_str()) == 0) execv(VLDV_PROGRAM, words.data());
            _exit(127);
        }
        std::string out;
        char bytes[4096];
        for (ssize_t count = 0; (count = read(terminal, bytes, sizeof bytes)) > 0;)
            out.append(bytes, static_cast<std::size_t>(count)); // ends with an error when the other end has closed
        close(terminal);
        // A bar of progress, which a busy machine may show, wipes itself so.
        constexpr std::string_view wiped = "\r\033[K";
        for (std::size_t at = 0; (at = out.find(wiped)) != std::string::npos;) out.erase(at, wiped.size());
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) != 127);
        return out;
    }
};

TEST_F(TerminalTest, LabelsUnitsAndPathsAreHarmless)
{
    const std::string name = "a\x1b]0;owned\x07.txt";
    write_file(folder / name,
               "# Channel: He\x1b[31might\n# Width: 2 nm\n# Height: 2 nm\n# Value units: \x1b[5mV\n1 2\n3 4\n");
    const std::string strange = "b\x9b.txt";
    write_file(folder / strange, "no numbers");
    for (const std::vector<std::string>& call : {std::vector<std::string>{"info", name},
                                                 {"info", "--strings", name},
                                                 {"stats", name},
                                                 {"info", strange},
                                                 {"dump", name, "--image", "7"},
                                                 {"info", "--json", name}}) {
        const std::string shown = onTerminal(call);
        EXPECT_EQ(shown.find('\x1b'), std::string::npos) << shown;
        EXPECT_EQ(shown.find('\x07'), std::string::npos) << shown;
        EXPECT_EQ(shown.find('\x9b'), std::string::npos) << shown;
    }
    const std::string steering = "He\xC2\x9B"
                                 "31might\xE2\x80\xAE";
    write_file(folder / "c.txt",
               "# Channel: " + steering + "\n# Width: 2 nm\n# Height: 2 nm\n# Value units: V\n1 2\n3 4\n");
    const nlohmann::json told = nlohmann::json::parse(onTerminal({"info", "--json", "c.txt"}));
    EXPECT_EQ(told["files"][0]["images"][0]["label"], steering) << "still JSON";
    EXPECT_THAT(onTerminal({"info", name}), HasSubstr("a\\x1B]0;owned\\x07.txt"));
    EXPECT_THAT(onTerminal({"info", strange}), HasSubstr("b\\x9B.txt"));
    EXPECT_EQ(vldv({"info", name}).out.find("\n\x1b"), std::string::npos);
}

} // namespace
