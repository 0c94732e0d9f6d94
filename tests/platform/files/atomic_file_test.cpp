#include "platform/files/atomic_file.h"

#include "platform/files/Exceptions.h"
#include "platform/files/leftover_files.h"
#include "platform/files/paths.h"
#include "platform/files/unnamed_file.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

bool linksFail = false;
int interruptions = 0; ///< of syncing that are still to come

} // namespace

/// In the place of the library's: file systems that refuse links are hard to come by.
extern "C" int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) noexcept
{
    if (!linksFail) return static_cast<int>(syscall(SYS_linkat, fromFolder, from, toFolder, to, flags));
    errno = EPERM;
    return -1;
}

/// A signal without SA_RESTART does this, at a moment that no test can choose.
extern "C" int fsync(int file)
{
    if (interruptions-- <= 0) return static_cast<int>(syscall(SYS_fsync, file));
    errno = EINTR;
    return -1;
}

namespace {

namespace fs = std::filesystem;

std::string content_of(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void put(const fs::path& path, const std::string& text) { std::ofstream(path, std::ios::binary) << text; }

void replace(const fs::path& path, const std::string& text)
{
    platform::atomic_file file(path);
    file.write(std::as_bytes(std::span(text)));
    file.commit();
}

/// errno of the refusal, or 0 when the file was replaced.
int refusal(const fs::path& path, const std::string& text = "new")
{
    try {
        replace(path, text);
    } catch (const CFileException& exception) {
        EXPECT_EQ(exception.path, platform::to_wide(path));
        return exception.osError;
    }
    return 0;
}

struct with_unnamed_files {
    bool before;
    explicit with_unnamed_files(bool allowed) : before(platform::allow_unnamed_files(allowed)) {}
    ~with_unnamed_files() { platform::allow_unnamed_files(before); }
};

/// A folder of its own with the file "target" holding "old".
class AtomicFile : public testing::Test {
protected:
    void SetUp() override
    {
        std::string name = (fs::temp_directory_path() / "atomic-XXXXXX").native();
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder = name;
        target = folder / "target";
        put(target, "old");
    }
    void TearDown() override { fs::remove_all(folder); }
    std::ptrdiff_t files() const { return std::distance(fs::directory_iterator(folder), fs::directory_iterator()); }
    mode_t mode(const fs::path& path) const
    {
        struct stat status{};
        EXPECT_EQ(stat(path.c_str(), &status), 0);
        return status.st_mode & 07777;
    }

    fs::path folder, target;
};

TEST_F(AtomicFile, TakesTheTargetsPlaceOnlyWithTheCommit)
{
    std::string expected;
    {
        platform::atomic_file file(target);
        for (int i = 0; i < 3000; ++i) { // sizes on both sides of the buffer's
            const std::string piece(static_cast<std::size_t>(i % 1000 == 999 ? 70000 : i % 100),
                                    static_cast<char>('a' + i % 26));
            file.write(std::as_bytes(std::span(piece)));
            expected += piece;
        }
        EXPECT_EQ(content_of(target), "old");
        file.commit();
    }
    EXPECT_EQ(content_of(target), expected);
    EXPECT_EQ(files(), 1);
}

TEST_F(AtomicFile, WithoutCommitLeavesNothingBehind)
{
    for (const bool unnamed : {true, false}) {
        const with_unnamed_files mode(unnamed);
        {
            platform::atomic_file existing(target), fresh(folder / "fresh");
            existing.write(std::as_bytes(std::span(std::string_view("new"))));
            EXPECT_EQ(files(), unnamed ? 1 : 3);
        }
        EXPECT_EQ(content_of(target), "old");
        EXPECT_EQ(files(), 1);
    }
}

TEST_F(AtomicFile, WhatTheSystemWillNotNameIsCopied)
{
    ASSERT_EQ(chmod(target.c_str(), 0640), 0);
    const std::string large(300'000, 'x');
    linksFail = true;
    replace(target, large);
    replace(folder / "fresh", "made");
    linksFail = false;
    EXPECT_EQ(content_of(target), large);
    EXPECT_EQ(mode(target), 0640u);
    EXPECT_EQ(content_of(folder / "fresh"), "made");
    EXPECT_EQ(files(), 2);
}

TEST_F(AtomicFile, RemovesOnlyWhatDeadProcessesLeft)
{
    put(folder / ".vldv-999999999-3", "left"); // no system has such a process
    const std::string alive = ".vldv-" + std::to_string(getppid()) + "-0";
    for (const std::string& name : {alive, std::string(".vldv-x-1"), std::string(".vldv-999999999"),
                                    std::string(".vldv-999999999-1.spm"), std::string("vldv-999999999-1")})
        put(folder / name, "other");
    const with_unnamed_files mode(false);
    platform::atomic_file running(folder / "other target");
    replace(target, "new");
    EXPECT_EQ(files(), 1 + 5 + 1) << "the target, what is not ours, and what is being written";
    EXPECT_FALSE(fs::exists(folder / ".vldv-999999999-3"));
    running.commit();
    EXPECT_TRUE(fs::exists(folder / "other target"));
}

TEST_F(AtomicFile, ManyKillsLeaveTheTargetWholeAndTheNextSaveNothing)
{
    for (const bool unnamed : {true, false}) {
        const with_unnamed_files mode(unnamed);
        std::ptrdiff_t most = 0;
        for (int kills = 0; kills < 40; ++kills) {
            const pid_t child = fork();
            if (child == 0)
                for (char letter = 'a';; letter = letter == 'z' ? 'a' : static_cast<char>(letter + 1))
                    replace(target, std::string(2'000'000, letter));
            usleep(static_cast<useconds_t>(500 + kills * 397 % 9000));
            kill(child, SIGKILL);
            waitpid(child, nullptr, 0);
            const std::string content = content_of(target);
            EXPECT_TRUE(content == "old" ||
                        (content.size() == 2'000'000 && content.find_first_not_of(content[0]) == std::string::npos));
            most = std::max(most, files() - 1);
        }
        EXPECT_LE(most, 1) << "each save removes what the one before left";
        replace(target, "old");
        EXPECT_EQ(files(), 1);
    }
}

TEST_F(AtomicFile, ASignalWhileItIsSyncedEndsNoSave)
{
    interruptions = 2;
    EXPECT_EQ(refusal(target), 0);
    EXPECT_LT(interruptions, 0) << "it was synced in the end";
    EXPECT_EQ(content_of(target), "new");
}

TEST(LeftoverSchedule, LooksAgainWhenAHundredTimesTheCostHasPassed)
{
    using namespace std::chrono_literals;
    using clock = platform::leftover_schedule::clock;
    platform::leftover_schedule schedule;
    const clock::time_point start{};
    EXPECT_TRUE(schedule.isDue("/large", start));
    schedule.took("/large", start + 30ms, 30ms);
    EXPECT_FALSE(schedule.isDue("/large", start + 3029ms));
    EXPECT_TRUE(schedule.isDue("/large", start + 3030ms));
    EXPECT_TRUE(schedule.isDue("/other", start + 30ms));
}

TEST_F(AtomicFile, KeepsPermissionsAndGivesNewFilesTheUsualOnes)
{
    const mode_t mask = umask(027);
    ASSERT_EQ(chmod(target.c_str(), 0604), 0);
    replace(target, "new");
    replace(folder / "fresh", "new");
    umask(mask);
    EXPECT_EQ(mode(target), 0604u);
    EXPECT_EQ(mode(folder / "fresh"), 0640u);
}

TEST_F(AtomicFile, ReplacesWhatALinkPointsTo)
{
    fs::create_directory(folder / "sub");
    fs::create_symlink("../target", folder / "sub/link");
    fs::create_symlink("sub/link", folder / "chain");
    fs::create_symlink("not yet there", folder / "dangling");
    replace(folder / "chain", "new");
    replace(folder / "dangling", "made");
    EXPECT_TRUE(fs::is_symlink(folder / "chain") && fs::is_symlink(folder / "sub/link"));
    EXPECT_EQ(content_of(target), "new");
    EXPECT_TRUE(fs::is_symlink(folder / "dangling"));
    EXPECT_EQ(content_of(folder / "not yet there"), "made");
}

TEST_F(AtomicFile, RefusesWhatIsNoFileToWrite)
{
    fs::create_symlink("loop", folder / "loop");
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(refusal(folder), EISDIR);
    EXPECT_EQ(refusal(folder / "pipe"), EOPNOTSUPP);
    EXPECT_EQ(refusal(folder / "loop"), ELOOP);
    EXPECT_EQ(refusal(folder / "missing" / "file"), ENOENT);
    EXPECT_EQ(refusal(target / "file"), ENOTDIR);
    EXPECT_EQ(files(), 3);
}

TEST_F(AtomicFile, RefusesAReadOnlyFile)
{
    if (geteuid() == 0) GTEST_SKIP() << "the superuser may write read-only files";
    ASSERT_EQ(chmod(target.c_str(), 0444), 0);
    EXPECT_EQ(refusal(target), EACCES);
}

/// Runs `work` in a child process. \return its wait status
template <class Work>
int in_child(Work work)
{
    const pid_t child = fork();
    if (child == 0) {
        work();
        _exit(99);
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return status;
}

TEST_F(AtomicFile, AFullDiskLeavesTheOldFile)
{
    for (const std::size_t size : {std::size_t{5000}, std::size_t{200000}}) { // fails in the commit, in the write
        const int status = in_child([&] {
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit limit{4096, 4096};
            setrlimit(RLIMIT_FSIZE, &limit);
            _exit(refusal(target, std::string(size, 'x')));
        });
        ASSERT_TRUE(WIFEXITED(status));
        EXPECT_EQ(WEXITSTATUS(status), EFBIG);
        EXPECT_EQ(content_of(target), "old");
        EXPECT_EQ(files(), 1);
    }
}

TEST_F(AtomicFile, AKillInTheMiddleLeavesTheOldFile)
{
    const int status = in_child([&] {
        platform::atomic_file file(target);
        const std::string half(200000, 'x');
        file.write(std::as_bytes(std::span(half)));
        raise(SIGKILL);
    });
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGKILL);
    EXPECT_EQ(content_of(target), "old");
    replace(target, "new"); // what the killed process left does not hinder
    EXPECT_EQ(content_of(target), "new");
}

} // namespace
