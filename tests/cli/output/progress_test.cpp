#include "cli/output/progress.h"

#include <gtest/gtest.h>
#include <memory>

namespace {

using std::chrono::milliseconds;

/// What a bar wrote since the last look.
class written {
public:
    written() : file(std::tmpfile(), std::fclose) {}
    std::FILE* out() const { return file.get(); }
    std::string take()
    {
        std::fflush(out());
        std::fseek(out(), from, SEEK_SET);
        std::string text;
        for (int c = std::fgetc(out()); c != EOF; c = std::fgetc(out())) text += static_cast<char>(c);
        from += static_cast<long>(text.size());
        return text;
    }

private:
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file;
    long from = 0;
};

std::string bar(int columns) { return "\r[" + std::string(columns, '#') + std::string(40 - columns, ' ') + "]"; }

constexpr const char* wiped = "\r\033[K";

TEST(ProgressBar, CountsFilesAndShowsHowMuchOfOneIsRead)
{
    written text;
    cli::progress_bar progress(2, text.out(), true, milliseconds(0));
    EXPECT_EQ(text.take(), bar(0) + " 0/2");
    progress.tell(0.5);
    EXPECT_EQ(text.take(), bar(10) + " 0/2");
    progress.tell(0.501);
    EXPECT_EQ(text.take(), "") << "nothing to see";
    progress.advance();
    EXPECT_EQ(text.take(), bar(20) + " 1/2");
    progress.clear();
    EXPECT_EQ(text.take(), wiped);
    progress.tell(0.5);
    EXPECT_EQ(text.take(), bar(30) + " 1/2");
    progress.tell(7.0);
    EXPECT_EQ(text.take(), bar(40) + " 1/2");
}

TEST(ProgressBar, OneFileIsShownWhenItIsSlow)
{
    written text;
    {
        cli::progress_bar slow(1, text.out(), true, milliseconds(0));
        EXPECT_EQ(text.take(), "");
        slow.tell(0.25);
        EXPECT_EQ(text.take(), bar(10));
    }
    EXPECT_EQ(text.take(), wiped);
    {
        cli::progress_bar quick(1, text.out(), true, milliseconds(3600000)), elsewhere(3, text.out(), false, {});
        quick.tell(0.9);
        quick.advance();
        elsewhere.advance();
    }
    EXPECT_EQ(text.take(), "");
}

} // namespace
