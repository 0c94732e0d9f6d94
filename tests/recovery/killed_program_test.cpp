// A program that is killed at any moment of its work leaves copies that hold one whole state of the document, never
// older than the last that was known to be written.
#include "recovery_fixture.h"

#include <csignal>
#include <random>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int rounds = 40;
constexpr short passing = -1;
constexpr unsigned images = 3, samples = 300'000; // 600 kB each

/// What image `image` holds after operation `last`: operation n fills image n % 3 with n, its text tells n as well.
short expected(unsigned image, int last)
{
    const int back = (last % static_cast<int>(images) - static_cast<int>(image) + static_cast<int>(images)) %
                     static_cast<int>(images);
    return static_cast<short>(std::max(last - back, 0));
}

/// Edits without end, with steps back on the way; tells each operation through `report` that is surely written.
[[noreturn]] void work(const std::wstring& path, const std::filesystem::path& state, int report, unsigned seed)
{
    CStorageDoc document;
    document.OnOpenDocument(path.c_str());
    recovery::autosave copies(state);
    std::minstd_rand random(seed);
    for (int n = 1;; ++n) {
        const unsigned image = static_cast<unsigned>(n) % images;
        if (random() % 4 == 0) { // an operation that is taken back
            fill_image(document, image, passing);
            if (random() % 2 == 0) copies.step({&document});
            document.undo(image);
        }
        fill_image(document, image, static_cast<short>(n));
        document.setString("operation", std::to_string(n).c_str(), unsigned(-1));
        document.setOverlay(0, numbered_bitmap(n));
        draw_number(document, 0, n);
        copies.step({&document});
        if (random() % 5 != 0) continue;
        while (!copies.isUpToDate()) copies.step({&document});
        copies.finish();
        if (write(report, &n, sizeof n) != sizeof n) _exit(1);
    }
}

TEST_F(RecoveryTest, AProgramThatIsKilledAtAnyMomentLeavesWholeStates)
{
    CStorageDoc start;
    for (const char* id : {"a", "b", "c"}) {
        const SPMDataStream image = even_image(id, samples, 0);
        start.AddNewImages(&image, 1);
    }
    ASSERT_TRUE(start.DoSave(path.c_str(), true));
    std::minstd_rand random(42);
    int withWork = 0;
    for (unsigned round = 0; round < rounds; ++round) {
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) work(path, state(), ends[1], round + 1);
        close(ends[1]);
        int status = 0, known = 0;
        const bool waitsForWork = round % 4 != 0; // else the program may only be starting
        if (waitsForWork) { ASSERT_EQ(read(ends[0], &known, sizeof known), ssize_t{sizeof known}); }
        usleep(static_cast<useconds_t>(random() % 40'000));
        kill(child, SIGKILL);
        waitpid(child, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status)) << "it went on until it was killed";
        for (int n = 0; read(ends[0], &n, sizeof n) == sizeof n;) known = n;
        close(ends[0]);

        const auto found = leftCopies().good;
        ASSERT_GE(found.size(), known > 0 ? 1u : 0u) << "round " << round;
        for (const std::filesystem::path& copy : found) {
            CStorageDoc restored;
            const auto kept = recovery::read_manifest(copy);
            ASSERT_TRUE(kept);
            EXPECT_TRUE(recovery::restore(restored, *kept, copy).missing.empty());
            const int last = std::atoi(restored.getString("operation", unsigned(-1)));
            EXPECT_GE(last, known) << "round " << round;
            ASSERT_EQ(restored.getImagesNumber(), images);
            const std::string number = std::to_string(last);
            EXPECT_EQ(over(restored, 0), last > 0 ? number + " lines " + number + "/1" : "") << "round " << round;
            for (unsigned i = 0; i < images; ++i) {
                const std::optional<short> value = value_of(restored, i);
                const bool isPassing = value == passing && i == static_cast<unsigned>(last + 1) % images;
                EXPECT_TRUE(isPassing || value == expected(i, last)) << round << ", image " << i;
            }
            withWork += last > 0;
            std::filesystem::remove_all(copy);
        }
        EXPECT_TRUE(std::filesystem::is_empty(state() / "sessions")) << "nothing of the dead is left";
    }
    EXPECT_GE(withWork, rounds * 3 / 4);
}

} // namespace
