// Saves that cannot be finished: what was there stays, nothing is left behind.
#include "container_fixture.h"

#include <csignal>
#include <functional>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// Runs in a child process and answers its exit status, or minus the signal that ended it.
int in_child(const std::function<int()>& work)
{
    const pid_t child = fork();
    if (child == 0) _exit(work());
    int status = 0;
    waitpid(child, &status, 0);
    return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

TEST_F(ContainerTest, AFullDiskLeavesTheOldFileWhole)
{
    SPMDataStream image = heights("a", {1024, 64});
    std::uint32_t state = 1; // noise does not pack
    for (unsigned i = 0; i < image.array_length(); ++i)
        static_cast<short*>(image.array_data())[i] = static_cast<short>((state = state * 1664525u + 1013904223u) >> 16);
    document.AddNewImages(&image, 1);
    write_file(folder / "a.spm", "old content");
    // The limits hit the temporary samples, the packed archive and the last block of the target in turn.
    for (const rlim_t limit : {rlim_t{1000}, rlim_t{100'000}, rlim_t{131'080}}) {
        const int status = in_child([&] {
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit files{limit, limit};
            setrlimit(RLIMIT_FSIZE, &files);
            return document.DoSave(path("a.spm").c_str(), true) ? 1 : 0;
        });
        EXPECT_EQ(status, 0) << "the save reports the failure at " << limit;
        EXPECT_EQ(file_content(folder / "a.spm"), "old content");
        EXPECT_EQ(folder.files(), 1u);
    }
}

TEST_F(ContainerTest, KilledSavesLeaveTheOldFileWholeAndNothingElse)
{
    const std::filesystem::path scratch = folder / "scratch";
    std::filesystem::create_directory(scratch);
    setenv("TMPDIR", scratch.c_str(), 1);
    SPMDataStream image = heights("a", {512, 512}, 4);
    document.AddNewImages(&image, 1);
    write_file(folder / "a.spm", "old content");
    for (int kills = 0; kills < 30; ++kills) {
        const pid_t child = fork();
        if (child == 0) {
            for (;;) document.DoSave(path("other.spm").c_str(), false);
        }
        usleep(static_cast<useconds_t>(500 + kills * 7919 % 60000));
        kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_EQ(file_content(folder / "a.spm"), "old content");
        if (std::filesystem::exists(folder / "other.spm")) {
            EXPECT_EQ(refusal("other.spm"), "") << "what stands under the name is whole";
        }
        EXPECT_TRUE(std::filesystem::is_empty(scratch));
    }
    save("other.spm");
    EXPECT_EQ(folder.files(), 3u) << "both documents and the folder for temporary files";
    unsetenv("TMPDIR");
}

TEST_F(ContainerTest, TemporaryFilesAreNeverLeftBehind)
{
    const std::filesystem::path scratch = folder / "scratch";
    std::filesystem::create_directory(scratch);
    setenv("TMPDIR", scratch.c_str(), 1);
    const SPMDataStream image = heights("a", {1024, 64});
    document.AddNewImages(&image, 1);
    EXPECT_TRUE(document.DoSave(path("a.spm").c_str(), false));
    EXPECT_FALSE(document.DoSave(path("no/such/folder/a.spm").c_str(), false));
    EXPECT_TRUE(std::filesystem::is_empty(scratch));
    unsetenv("TMPDIR");
}

} // namespace
