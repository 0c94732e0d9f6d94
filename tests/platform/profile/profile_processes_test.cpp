// Several programs on one profile, and programs that are killed.
#include "platform/profile/profile_store.h"
#include "support/temporary_folder.h"

#include <csignal>
#include <gtest/gtest.h>
#include <random>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// Runs `work` in a child process, which ends with its result.
template <class Work>
pid_t in_child(Work work)
{
    const pid_t child = fork();
    if (child == 0) _exit(work() ? 0 : 1);
    return child;
}

int status_of(pid_t child)
{
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return status;
}

TEST(ProfileProcesses, NoChangeOfOneIsLostToAnother)
{
    constexpr int programs = 4, changes = 25;
    const temporary_folder folder;
    const auto file = folder / "profile";
    std::vector<pid_t> children;
    for (int program = 0; program < programs; ++program) {
        children.push_back(in_child([&] {
            CProfileStore store(file);
            bool stored = true;
            for (int i = 0; i < changes; ++i) {
                store.writeInt("Shared", std::to_string(program * changes + i), program);
                stored = store.flush();
                // On a slow disk the others may hold the lock for longer than one waits; the change is kept meanwhile.
                if (!stored && !store.error().ends_with("holds the lock")) return false;
            }
            for (int again = 0; !stored && again < programs; ++again) stored = store.flush();
            return stored;
        }));
    }
    for (const pid_t child : children) EXPECT_EQ(status_of(child), 0);
    const CProfileStore store(file);
    EXPECT_EQ(store.keys("Shared").size(), std::size_t{programs * changes});
    for (int i = 0; i < programs * changes; ++i) EXPECT_EQ(store.readInt("Shared", std::to_string(i)), i / changes);
}

/// Stores batches of equal numbers around a long text until it is killed.
[[noreturn]] void write_until_killed(const std::filesystem::path& file, int ready)
{
    CProfileStore store(file);
    for (int n = store.readInt("Batch", "first").value_or(0) + 1;; ++n) {
        {
            CProfileBatch batch(store);
            store.writeInt("Batch", "first", n);
            store.writeString("Batch", "filler", std::string(300000, static_cast<char>('a' + n % 26)));
            store.writeInt("Batch", "last", n);
        }
        [[maybe_unused]] const auto told = write(ready, "!", 1);
    }
}

/// Starts the writer, kills it `delay` microseconds behind its first batch.
void kill_a_writer(const std::filesystem::path& file, unsigned delay)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    if (child == 0) write_until_killed(file, ends[1]);
    char told = 0;
    ASSERT_EQ(read(ends[0], &told, 1), 1);
    usleep(delay);
    kill(child, SIGKILL);
    EXPECT_TRUE(WIFSIGNALED(status_of(child)));
    close(ends[0]);
    close(ends[1]);
}

TEST(ProfileProcesses, AKillLeavesTheLastWholeBatch)
{
    const temporary_folder folder;
    const auto file = folder / "profile";
    {
        CProfileStore store(file);
        store.writeString("Before", "key", "kept");
    }
    std::mt19937 random(7);
    int last = 0;
    for (int round = 0; round < 40; ++round) {
        kill_a_writer(file, static_cast<unsigned>(random() % 10000));
        CProfileStore store(file);
        const auto first = store.readInt("Batch", "first");
        ASSERT_TRUE(first);
        EXPECT_GT(*first, last) << "a batch that was stored is gone";
        last = *first;
        EXPECT_EQ(store.readInt("Batch", "last"), first);
        EXPECT_EQ(store.readString("Batch", "filler"), std::string(300000, static_cast<char>('a' + *first % 26)));
        EXPECT_EQ(store.readString("Before", "key"), "kept");
        store.writeInt("After", std::to_string(round), round);
        ASSERT_TRUE(store.flush()) << store.error(); // the killed one holds no lock
    }
    EXPECT_EQ(CProfileStore(file).keys("After").size(), 40u);
}

} // namespace
