// Images that stand in the document's file only come back as they were, or are named as missing.
#include "recovery_fixture.h"

#include <functional>
#include <stdlib.h>
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
