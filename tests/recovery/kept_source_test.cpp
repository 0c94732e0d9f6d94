// Images that stand in the document's file only come back as they were, or are named as missing.
#include "recovery_fixture.h"
#include "support/omicron_set.h"

#include "recovery/file_print.h"

#include <cmath>
#include <csignal>
#include <functional>
#include <set>
#include <sstream>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;
using values = std::vector<std::optional<short>>;

/// The only folder in a folder.
fs::path only_copy(const fs::path& place)
{
    fs::path found;
    for (const auto& entry : fs::directory_iterator(place))
        if (entry.is_directory()) found = entry.path();
    return found;
}

/// As on a disk that is nearly full.
class small_files_only {
public:
    small_files_only()
    {
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit small{100, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }
    small_files_only(const small_files_only&) = delete;
    small_files_only& operator=(const small_files_only&) = delete;
    ~small_files_only()
    {
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, handler);
    }

private:
    rlimit before{};
    void (*handler)(int) = std::signal(SIGXFSZ, SIG_IGN);
};

class KeptSourceTest : public RecoveryTest {
protected:
    /// A file of these images, each of 1000 samples of one value, as another program writes it.
    void write(const std::vector<std::pair<const char*, short>>& images)
    {
        CStorageDoc made;
        for (const auto& [id, value] : images) {
            const SPMDataStream image = even_image(id, 1000, value);
            made.AddNewImages(&image, 1);
        }
        ASSERT_TRUE(made.OnSaveDocument(path.c_str()));
    }
    /// What comes back of the images a, b and c.
    values restored(const recovery::restored_document& done, const CStorageDoc& back)
    {
        values found;
        for (const char* id : {"a", "b", "c"}) {
            found.emplace_back();
            for (unsigned i = 0; i < back.getImagesNumber(); ++i)
                if (back.getImage(i).get_name() == std::string(id)) found.back() = value_of(back, i);
        }
        EXPECT_EQ(done.missing.size(),
                  static_cast<std::size_t>(std::ranges::count_if(found, [](const auto& value) { return !value; })));
        return found;
    }
    values fromClosed()
    {
        CStorageDoc back;
        return restored(restoreLatest(back), back);
    }
    values from(const fs::path& copy)
    {
        CStorageDoc back;
        const auto kept = recovery::read_manifest(copy);
        return kept ? restored(recovery::restore(back, *kept, copy), back) : values();
    }

    static constexpr recovery::autosave_pauses noPauses{.retry = {}, .look = {}};
    CStorageDoc document;
};

TEST_F(KeptSourceTest, SamplesOfAnotherStateAreNeverTaken)
{
    const fs::path file = folder / "three.spm";
    recovery::autosave copies(state());
    const struct {
        const char* name;
        std::function<void()> act;
        values expected;
    } cases[] = {
        {"nothing", [] {}, {1, 7, 1}},
        {"other samples", [&] { write({{"a", 99}, {"b", 99}, {"c", 99}}); }, {{}, 7, {}}},
        {"one of them the same, elsewhere", [&] { write({{"c", 1}, {"a", 99}}); }, {{}, 7, 1}},
        {"another name", [&] { write({{"x", 1}, {"b", 1}, {"c", 1}}); }, {{}, 7, 1}},
        {"another time",
         [&] { fs::last_write_time(file, fs::file_time_type::clock::now() + std::chrono::hours(1)); },
         {1, 7, 1}},
        {"other samples, told before",
         [&] {
             EXPECT_FALSE(copies.fileGoes(file));
             write({{"a", 99}, {"b", 99}, {"c", 99}});
         },
         {1, 7, 1}},
        {"moved away, told before",
         [&] {
             EXPECT_FALSE(copies.fileGoes(file));
             fs::remove(file);
         },
         {1, 7, 1}},
        {"moved away", [&] { fs::remove(file); }, {{}, 7, {}}},
    };
    for (const auto& [name, act, expected] : cases) {
        CStorageDoc changed;
        saveThree(changed);
        fill_image(changed, 1, 7);
        copies.documentCloses(changed);
        copies.finish();
        act();
        EXPECT_EQ(fromClosed(), expected) << name;
        fs::remove_all(only_copy(state() / "closed"));
    }
}

TEST_F(KeptSourceTest, AFileThatWasDamagedSinceIsNotTakenAndNotReplaced)
{
    recovery::autosave copies(state());
    saveThree(document);
    fill_image(document, 1, 7);
    copies.documentCloses(document);
    copies.finish();
    const auto time = fs::last_write_time(path);
    std::string bytes = file_content(path);
    const std::size_t header = bytes.find("a.raw") - 30;
    const std::size_t samples = header + 35 + std::size_t(bytes[header + 28]);
    bytes[samples + 4] = static_cast<char>(bytes[samples + 4] ^ 0x10);
    write_file(path, bytes);
    fs::last_write_time(path, time);
    CStorageDoc back;
    const auto done = restoreLatest(back);
    EXPECT_EQ(restored(done, back), (values{{}, 7, {}}));
    EXPECT_NE(done.missing.at(0).find("is damaged"), std::string::npos) << done.missing[0];
    EXPECT_EQ(back.ownFiles().of(path), document::own_files::relation::foreign) << "saving asks";
}

TEST_F(KeptSourceTest, ARevertThatGivesLessLeavesTheCopy)
{
    recovery::autosave copies(state());
    saveThree(document);
    fill_image(document, 1, 7);
    copies.step({&document});
    copies.finish();
    std::string bytes = file_content(path);
    const std::size_t header = bytes.find("c.raw") - 30;
    bytes[header + 35 + std::size_t(bytes[header + 28]) + 4] ^= 0x10;
    write_file(path, bytes);
    ASSERT_TRUE(document.Revert());
    ASSERT_EQ(document.getImagesNumber(), 2u);
    copies.step({&document});
    copies.finish();
    CStorageDoc back;
    restoreLatest(back);
    EXPECT_EQ(value_of(back, 0), 7) << "its image was not in the file";
}

TEST_F(KeptSourceTest, ARecordingThatChangedIsNotTheOneThatItWas)
{
    const fs::path table = folder / "table.txt";
    for (const bool isReplaced : {false, true}) {
        write_file(table, "0 1 2 3\n1 2 3 4\n2 3 4 5\n3 4 5 9\n");
        recovery::autosave copies(state());
        CStorageDoc changed;
        ASSERT_TRUE(changed.OnOpenDocument(table.wstring().c_str()));
        changed.setString("note", "new", 0);
        copies.documentCloses(changed);
        copies.finish();
        if (isReplaced) {
            write_file(table, "0 1 2 3\n1 2 3 4\n2 3 4 5\n3 4 5 8\n");
            // Clocks of file systems tick too rarely to tell it from the one before.
            fs::last_write_time(table, fs::last_write_time(table) + std::chrono::seconds(1));
        }
        CStorageDoc back;
        EXPECT_EQ(restoreLatest(back).missing.size(), isReplaced ? 1u : 0u);
    }
}

TEST_F(KeptSourceTest, AFileOfEqualSizeAndTimeIsNotTakenForIt)
{
    const fs::path file = folder / "a.txt", neighbour = folder / "b.txt", moved = folder / "c.txt";
    const auto time = fs::file_time_type::clock::now();
    for (const auto& [name, corner] : {std::pair(file, '1'), {neighbour, '9'}}) {
        write_file(name, "2 3 4 5\n4 5 6 7\n7 8 9 9\n" + std::string(1, corner) + " 8 7 6\n");
        fs::last_write_time(name, time);
    }
    const auto corner_of = [](const CStorageDoc& shown) {
        if (shown.getImagesNumber() == 0) return 0.0;
        const VLAxis& heights = shown.getAxis(0, 0, unsigned(-1));
        return std::round(heights.start + heights.scale * shown.getDataPoint2S(0, 0, 0, 0));
    };
    recovery::autosave copies(state());
    ASSERT_TRUE(document.OnOpenDocument(file.wstring().c_str()));
    constexpr double corner = 1.0;
    document.setString("note", "new", 0);
    copies.documentCloses(document);
    ASSERT_FALSE(copies.fileGoes(neighbour));
    const fs::path copy = only_copy(state() / "closed");
    const auto restoredCorner = [&] {
        CStorageDoc back;
        recovery::restore(back, *recovery::read_manifest(copy), copy);
        return corner_of(back);
    };
    EXPECT_EQ(restoredCorner(), corner) << "the other one went";
    fs::create_directory(copy / recovery::sourceFolder);
    fs::copy_file(neighbour, copy / recovery::sourceFolder / "a.txt");
    fs::last_write_time(copy / recovery::sourceFolder / "a.txt", time);
    EXPECT_EQ(restoredCorner(), corner) << "wherever a wrong one lies";

    fs::rename(file, moved);
    EXPECT_EQ(restoredCorner(), 0.0);
    const recovery::kept_document kept = *recovery::read_manifest(copy);
    EXPECT_FALSE(recovery::source_in(neighbour, kept)->isWhole);
    fs::last_write_time(moved, time + std::chrono::hours(1));
    EXPECT_TRUE(recovery::source_in(moved, kept)->isAsItWas) << "under another name, with another time";
    ASSERT_FALSE(copies.fileGoes(moved));
    fs::remove(moved);
    EXPECT_EQ(restoredCorner(), corner) << "kept, in the place of the wrong one";
}

TEST_F(KeptSourceTest, APrintChangesWithEachByteOfASmallFileAndTheEndsOfALargeOne)
{
    for (const std::size_t size : {1u, 200'000u, 65u << 20}) {
        std::string bytes(size, 'a');
        std::set<std::optional<std::uint32_t>> prints;
        const auto take = [&] {
            std::istringstream in(bytes);
            prints.insert(recovery::print_of(in, size));
            EXPECT_FALSE(recovery::print_of(in, size + 1)) << "cut short";
        };
        take();
        const std::set<std::size_t> places = {0, size - 1, recovery::is_printed_whole(size) ? size * 2 / 3 : 0};
        for (const std::size_t place : places) {
            bytes[place] = 'b';
            take();
        }
        EXPECT_EQ(prints.size(), 1 + places.size()) << size;
    }
}

TEST_F(KeptSourceTest, ASetOfSeveralFilesKnowsWhereItCameFrom)
{
    const std::wstring set = write_omicron_set(folder / "set").wstring();
    ASSERT_TRUE(document.OnOpenDocument(set.c_str()));
    document.setString("note", "new", 0);
    recovery::autosave copies(state());
    copies.documentCloses(document);
    copies.finish();
    fs::remove(folder / "set" / "a.tf0");
    CStorageDoc back;
    EXPECT_TRUE(restoreLatest(back).missing.empty()) << "no single file holds it";
    EXPECT_TRUE(back.ownFiles().knows(set)) << "so that it is what Revert reads, not an older result beside it";
}

TEST_F(KeptSourceTest, AnOpenDocumentIsKeptWholeWhenItsFileGoes)
{
    for (const bool closes : {false, true}) {
        CStorageDoc changed;
        saveThree(changed);
        fill_image(changed, 1, 7);
        recovery::autosave copies(state(), noPauses);
        copies.step({&changed});
        copies.finish();
        write({{"a", 99}, {"b", 99}, {"c", 99}});
        if (closes)
            copies.documentCloses(changed);
        else
            copies.step({&changed});
        copies.finish();
        if (closes)
            EXPECT_EQ(fromClosed(), (values{1, 7, 1}));
        else
            EXPECT_EQ(from(only_copy(only_copy(state() / "sessions"))), (values{1, 7, 1}));
        fs::remove_all(state());
    }
}

TEST_F(KeptSourceTest, ACopyThatWasGivenItsFileGoesOnWithoutIt)
{
    recovery::autosave copies(state(), noPauses);
    saveThree(document);
    fill_image(document, 1, 7);
    copies.documentCloses(document);
    copies.finish();
    ASSERT_FALSE(copies.fileGoes(folder / "three.spm"));
    write({{"a", 99}, {"b", 99}, {"c", 99}});
    const fs::path taken = copies.takeCopy(only_copy(state() / "closed"));
    CStorageDoc back;
    auto done = recovery::restore(back, *recovery::read_manifest(taken), taken);
    EXPECT_EQ(back.ownFiles().of(path), document::own_files::relation::replaced) << "saving asks";
    copies.adopt(back, taken, std::move(done.files), true);
    copies.step({&back});
    copies.finish();
    EXPECT_FALSE(fs::exists(taken / recovery::sourceFolder)) << "its images are in files of the copy by now";
    EXPECT_EQ(from(taken), (values{1, 7, 1}));
}

TEST_F(KeptSourceTest, WhereThereAreNoLinksTheFileIsCopied)
{
    std::string name = "/dev/shm/vldv-test-XXXXXX";
    const char* const made = mkdtemp(name.data());
    struct stat here{}, there{};
    if (!made || stat(name.c_str(), &there) != 0 || stat(folder.path.c_str(), &here) != 0 ||
        here.st_dev == there.st_dev)
        GTEST_SKIP() << "there is one file system only";
    path = (fs::path(name) / "three.spm").wstring();
    saveThree(document);
    fill_image(document, 1, 7);
    recovery::autosave copies(state());
    copies.documentCloses(document);
    copies.finish();
    {
        const small_files_only full;
        EXPECT_EQ(copies.fileGoes(path), std::errc::file_too_large) << "in words that tell";
    }
    EXPECT_TRUE(fs::is_empty(only_copy(state() / "closed") / recovery::sourceFolder)) << "and no debris";
    ASSERT_FALSE(copies.fileGoes(path));
    fs::remove_all(name);
    EXPECT_EQ(fromClosed(), (values{1, 7, 1}));
}

TEST_F(KeptSourceTest, CopiesThatCannotBeReadStay)
{
    const fs::path dead = state() / "sessions" / "5-999999999"; // no system has such a process, and this one no lock
    for (const char* copy : {"other version", "half"}) {
        fs::create_directories(dead / copy);
        write_file(dead / copy / "manifest", copy == std::string("half") ? "" : "VLKEPT9\nsomething");
        write_file(dead / copy / "samples", "work");
    }
    fs::create_directories(dead / "never finished");
    const auto found = leftCopies();
    EXPECT_TRUE(found.good.empty());
    ASSERT_EQ(found.unreadable.size(), 2u);
    for (const fs::path& each : found.unreadable) EXPECT_EQ(file_content(each / "samples"), "work");
    EXPECT_FALSE(fs::exists(dead));
    EXPECT_TRUE(leftCopies().unreadable.empty()) << "told once";

    saveThree(document);
    fill_image(document, 1, 7);
    recovery::autosave copies(state());
    copies.step({&document});
    copies.finish();
    const fs::path damaged = only_copy(only_copy(state() / "sessions"));
    write_file(damaged / "manifest", "?");
    copies.documentCloses(document);
    copies.finish();
    EXPECT_TRUE(fs::exists(state() / "closed" / damaged.filename() / "manifest"));
}

} // namespace
