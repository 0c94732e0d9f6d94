#include "platform/profile/profile_store.h"

#include "platform/files/file_lock.h"
#include "support/temporary_folder.h"

#include <algorithm>
#include <cstdlib>
#include <gmock/gmock.h>
#include <random>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::HasSubstr;
namespace fs = std::filesystem;

class ProfileStore : public testing::Test {
protected:
    /// What a program that starts now reads.
    CProfileStore fresh() const { return CProfileStore(file); }
    /// The file behind its first line, which is our own comment.
    std::string content() const
    {
        const std::string text = file_content(file);
        return text.substr(text.find('\n') + 1);
    }

    temporary_folder folder;
    fs::path file = folder / "profile";
};

TEST_F(ProfileStore, KeepsValuesOfEachTypeAndTheirOrder)
{
    const std::vector<std::byte> table{std::byte{0}, std::byte{200}};
    {
        CProfileStore store(file);
        EXPECT_TRUE(store.writeString("View", "z", "last letter"));
        EXPECT_TRUE(store.writeInt("View", "a", -7));
        EXPECT_TRUE(store.writeBinary("View\\Table", "m", table));
        EXPECT_TRUE(store.writeInt("View", "m", 1));
        EXPECT_TRUE(store.writeString("View", "z", "changed"));
        EXPECT_FALSE(fs::exists(file)) << "changes are collected";
        EXPECT_TRUE(store.flush());
    }
    EXPECT_EQ(content(), "[View]\nz=\"changed\"\na=-7\nm=1\n[View\\\\Table]\nm=hex:00c8\n");
    const CProfileStore store = fresh();
    EXPECT_EQ(store.readString("View", "z"), "changed");
    EXPECT_EQ(store.readInt("View", "a"), -7);
    EXPECT_EQ(store.readBinary("View\\Table", "m"), table);
    EXPECT_THAT(store.keys("View"), ElementsAre("z", "a", "m"));
    EXPECT_EQ(store.error(), "");
}

TEST_F(ProfileStore, ReadsAnIntegerFromATextThatIsOneAndConvertsNothingElse)
{
    CProfileStore store(file);
    store.writeInt("S", "int", 5);
    const std::pair<const char*, std::optional<int>> texts[] = {
        {"12", 12},        {" -3 ", -3}, {"2147483647", 2147483647}, {"2147483648", {}}, {"1.5", {}},
        {"12 apples", {}}, {"", {}}};
    for (const auto& [text, number] : texts) {
        store.writeString("S", "text", text);
        EXPECT_EQ(store.readInt("S", "text"), number) << text;
    }
    EXPECT_FALSE(store.readString("S", "int") || store.readBinary("S", "int") || store.readBinary("S", "text"));
    EXPECT_FALSE(store.readInt("S", "none") || store.readInt("none", "int") || store.readInt("s", "int"));
    store.writeBinary("S", "int", {});
    EXPECT_FALSE(store.readInt("S", "int"));
}

TEST_F(ProfileStore, ListsAndDeletesSectionsByTheirNames)
{
    CProfileStore store(file);
    for (const char* section : {"Macros", "Macros\\b\\2", "Macros\\a", "MacrosList", "Other", "Macros\\b"})
        store.writeInt(section, "n", 1);
    EXPECT_THAT(store.sections("Macros\\"), ElementsAre("Macros\\b\\2", "Macros\\a", "Macros\\b"));
    EXPECT_THAT(store.sections("Macros"), testing::SizeIs(5));
    EXPECT_TRUE(store.deleteSection("Macros\\b"));
    EXPECT_TRUE(store.deleteValue("Other", "n"));
    EXPECT_TRUE(store.deleteValue("Other", "n")) << "nothing to do";
    EXPECT_THAT(store.sections(""), ElementsAre("Macros", "Macros\\a", "MacrosList"));
    EXPECT_TRUE(store.deleteSection("Macros"));
    EXPECT_THAT(store.sections(""), ElementsAre("MacrosList"));
    ASSERT_TRUE(store.flush());
    EXPECT_EQ(content(), "[MacrosList]\nn=1\n");
}

TEST_F(ProfileStore, StoresABatchAtTheEndOfTheOutermost)
{
    CProfileStore store(file);
    {
        CProfileBatch outer(store);
        CProfileBatch inner(store);
        EXPECT_TRUE(store.writeInt("S", "a", 1));
        EXPECT_TRUE(inner.end());
        EXPECT_TRUE(store.flush());
        EXPECT_FALSE(fs::exists(file));
        store.writeInt("S", "b", 2);
    }
    EXPECT_THAT(fresh().keys("S"), ElementsAre("a", "b"));
    CProfileBatch failing(store);
    fs::remove(file);
    fs::create_directory(file);
    store.writeInt("S", "c", 3);
    EXPECT_FALSE(failing.end());
}

TEST_F(ProfileStore, KeepsBrokenAndForeignLinesInTheirPlaces)
{
    const std::string start = "\xef\xbb\xbfno section=1\n\n[Good]\r\n  # a remark\na = 1\nlater=list:1,2\nb=\"open\n";
    const std::string broken = "[Broken\na=4\n\xff\0\x01=\n"s;
    write_file(file, start + "c=3\n" + broken + "[Gone]\na=5\nrest of it\n[Good]\nd=6");
    CProfileStore store(file);
    EXPECT_THAT(store.keys("Good"), ElementsAre("a", "c", "d"));
    EXPECT_THAT(store.sections(""), ElementsAre("Good", "Gone"));
    EXPECT_EQ(store.readInt("Good", "a"), 1) << "not that of the broken section";
    store.deleteSection("Gone");
    store.writeInt("Good", "c", 33);
    store.writeInt("Good", "e", 7);
    store.writeInt("New", "a", 8);
    ASSERT_TRUE(store.flush());
    EXPECT_EQ(file_content(file), start + "c=33\nd=6\ne=7\n" + broken + "[New]\na=8\n");
}

TEST_F(ProfileStore, MergesWhatTwoProgramsChanged)
{
    CProfileStore first(file);
    first.writeInt("Shared", "both", 1);
    first.writeInt("Shared", "deleted", 1);
    first.writeInt("Shared", "untouched", 1);
    first.writeInt("Gone\\deep", "a", 1);
    first.writeInt("Gone", "a", 1);
    ASSERT_TRUE(first.flush());
    CProfileStore second(file);

    first.writeInt("Shared", "untouched", 1); // changes nothing
    first.writeInt("Shared", "of first", 2);
    first.writeInt("Shared", "both", 2);
    first.deleteValue("Shared", "deleted");
    second.writeInt("Shared", "both", 3);
    second.writeInt("Shared", "untouched", 3);
    second.writeInt("Shared", "of second", 3);
    second.deleteSection("Gone");
    second.writeInt("Gone\\deep", "back", 3);
    ASSERT_TRUE(second.flush());
    ASSERT_TRUE(first.flush());
    EXPECT_EQ(content(), "[Shared]\nboth=2\nuntouched=3\nof second=3\nof first=2\n[Gone\\\\deep]\nback=3\n");
    EXPECT_EQ(first.readInt("Shared", "untouched"), 1) << "the file is read once";

    second.writeInt("Shared", "later", 4);
    ASSERT_TRUE(second.flush());
    EXPECT_FALSE(fresh().readInt("Shared", "deleted"))
        << "the other program still knows it, and does not bring it back";
}

TEST_F(ProfileStore, WritesNothingWhenNothingChanges)
{
    CProfileStore store(file);
    store.writeInt("S", "a", 1);
    ASSERT_TRUE(store.flush());
    fs::remove(file);
    store.writeInt("S", "a", 1);
    store.deleteValue("S", "none");
    store.deleteSection("none");
    EXPECT_TRUE(store.flush());
    EXPECT_FALSE(fs::exists(file));
}

TEST_F(ProfileStore, MakesItsFoldersForTheUserAlone)
{
    CProfileStore store(folder / "new" / "velmira" / "profile");
    EXPECT_TRUE(store.writeInt("S", "a", 1));
    EXPECT_TRUE(store.flush());
    EXPECT_EQ(fs::status(folder / "new").permissions(), fs::perms::owner_all);
    EXPECT_EQ(fs::status(folder / "new" / "velmira").permissions(), fs::perms::owner_all);
}

TEST_F(ProfileStore, TellsWhyItCannotStoreAndKeepsTheValuesForTheRun)
{
    write_file(folder / "a file", "");
    fs::create_directory(folder / "a folder");
    write_file(folder / "huge", "[S]\nb=2\n");
    fs::resize_file(folder / "huge", (std::uintmax_t{64} << 20) + 1);
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    const std::pair<fs::path, std::string> cases[] = {
        {folder / "a file" / "profile", ": Not a directory"},
        {folder / "a file" / "velmira" / "profile", ": Not a directory"},
        {folder / "a folder", "a folder: Is a directory"},
        {folder / "pipe", "pipe: Operation not supported"},
        {folder / "huge", "huge: larger than the 64 MiB"},
        {"/proc/velmira/profile", "/proc"},
        {"", "no home folder"},
    };
    for (const auto& [path, reason] : cases) {
        CProfileStore store(path);
        EXPECT_FALSE(store.writeInt("S", "a", 1) && store.flush()) << path;
        EXPECT_THAT(store.error(), HasSubstr(reason));
        EXPECT_FALSE(store.writeString("S", "b", "text"));
        EXPECT_FALSE(store.deleteValue("S", "b"));
        EXPECT_FALSE(store.flush());
        EXPECT_THAT(store.error(), HasSubstr(reason));
        EXPECT_EQ(store.readInt("S", "a"), 1);
    }
    EXPECT_EQ(fs::file_size(folder / "huge"), (std::uintmax_t{64} << 20) + 1);
    EXPECT_TRUE(fs::is_fifo(folder / "pipe"));
}

TEST_F(ProfileStore, TellsAtTheFirstWriteThatAReadOnlyPlaceCannotHoldIt)
{
    if (geteuid() == 0) GTEST_SKIP() << "the superuser may write everywhere";
    write_file(file, "[S]\na=1\n");
    const auto expectRefusal = [this] {
        CProfileStore store(file);
        EXPECT_EQ(store.error(), "");
        EXPECT_FALSE(store.writeInt("S", "a", 2));
        EXPECT_THAT(store.error(), HasSubstr("Permission denied"));
    };
    fs::permissions(file, fs::perms::owner_read);
    expectRefusal();
    fs::permissions(file, fs::perms::owner_all);
    fs::permissions(folder.path, fs::perms::owner_read | fs::perms::owner_exec);
    expectRefusal();
    fs::permissions(folder.path, fs::perms::owner_all);
}

TEST_F(ProfileStore, StoresWhatWasCollectedOnceItCanAndLosesNothingUnseen)
{
    fs::create_directory(file); // cannot be read as a file
    CProfileStore store(file);
    EXPECT_FALSE(store.writeInt("S", "a", 1));
    EXPECT_FALSE(store.flush());
    fs::remove(file);
    write_file(file, "[S]\nof another=2\n");
    EXPECT_TRUE(store.flush());
    EXPECT_EQ(store.error(), "");
    EXPECT_EQ(file_content(file), "[S]\nof another=2\na=1\n");
    EXPECT_TRUE(store.writeInt("S", "a", 3));
}

TEST_F(ProfileStore, DoesNotWaitForeverForAnotherProgram)
{
    CProfileStore store(file);
    store.writeInt("S", "a", 1);
    {
        const platform::file_lock stopped(folder / "profile.lock", {});
        EXPECT_FALSE(store.flush());
        EXPECT_THAT(store.error(), HasSubstr("profile.lock: another program holds the lock"));
        EXPECT_FALSE(fs::exists(file));
    }
    EXPECT_TRUE(store.flush());
}

// Random operations against a plain list that defines the answer.

using entries = std::vector<std::pair<std::string, platform::profile_value>>;
using model = std::vector<std::pair<std::string, entries>>;

template <class List>
auto find_named(List& list, const std::string& name)
{
    return std::ranges::find(list, name, [](const auto& each) { return each.first; });
}

struct hostile_values {
    std::mt19937 random{12345};

    unsigned below(unsigned limit) { return static_cast<unsigned>(random() % limit); }
    /// Short texts of the bytes that matter, often the same ones.
    std::string text()
    {
        static const std::string pieces[] = {"a", "\\", "=",  "]",  "[",        "\n",   "\r",   "\0"s,  "\"",   " ",
                                             "#", ";",  "\t", "x4", "\xc3\xa4", "\xc3", "\xff", "hex:", "\\x0", "\x7f"};
        std::string out;
        for (unsigned n = below(4); n > 0; --n) out += pieces[below(std::size(pieces))];
        return out;
    }
    platform::profile_value value()
    {
        const std::string bytes = text() + text();
        if (below(3) == 0) return static_cast<int>(random());
        if (below(2) == 0) return bytes;
        const auto raw = std::as_bytes(std::span(bytes));
        return std::vector<std::byte>(raw.begin(), raw.end());
    }
};

void write_to(CProfileStore& store, const std::string& section, const std::string& key,
              const platform::profile_value& value)
{
    if (const auto* number = std::get_if<int>(&value))
        store.writeInt(section, key, *number);
    else if (const auto* text = std::get_if<std::string>(&value))
        store.writeString(section, key, *text);
    else
        store.writeBinary(section, key, std::get<std::vector<std::byte>>(value));
}

void set_in(model& expected, const std::string& section, const std::string& key, const platform::profile_value& value)
{
    auto part = find_named(expected, section);
    if (part == expected.end()) part = expected.insert(part, {section, {}});
    const auto entry = find_named(part->second, key);
    if (entry != part->second.end())
        entry->second = value;
    else
        part->second.emplace_back(key, value);
}

void erase_in(model& expected, const std::string& section, const std::string& key)
{
    const auto part = find_named(expected, section);
    if (part == expected.end()) return;
    std::erase_if(part->second, [&](const auto& entry) { return entry.first == key; });
    if (part->second.empty()) expected.erase(part);
}

void erase_section_in(model& expected, const std::string& section)
{
    std::erase_if(expected,
                  [&](const auto& part) { return part.first == section || part.first.starts_with(section + '\\'); });
}

model held_by(const CProfileStore& store)
{
    model out;
    for (const std::string& section : store.sections("")) {
        entries& part = out.emplace_back(section, entries()).second;
        for (const std::string& key : store.keys(section)) {
            platform::profile_value value;
            if (const auto text = store.readString(section, key))
                value = *text;
            else if (const auto bytes = store.readBinary(section, key))
                value = *bytes;
            else
                value = store.readInt(section, key).value();
            part.emplace_back(key, value);
        }
    }
    return out;
}

TEST_F(ProfileStore, HoldsAnyNamesAndValuesThroughAnyChanges)
{
    hostile_values hostile;
    model expected;
    auto store = std::make_unique<CProfileStore>(file);
    for (int round = 0; round < 200; ++round) {
        for (int i = 0; i < 40; ++i) {
            const std::string section = hostile.text(), key = hostile.text();
            switch (hostile.below(12)) {
            case 0:
                store->deleteSection(section);
                erase_section_in(expected, section);
                break;
            case 1:
            case 2:
            case 3:
                store->deleteValue(section, key);
                erase_in(expected, section, key);
                break;
            default:
                const auto value = hostile.value();
                write_to(*store, section, key, value);
                set_in(expected, section, key, value);
            }
        }
        ASSERT_TRUE(held_by(*store) == expected) << "round " << round;
        if (round % 3 == 0) {
            ASSERT_TRUE(store->flush()) << store->error();
            store = std::make_unique<CProfileStore>(file);
            ASSERT_TRUE(held_by(*store) == expected) << "read back in round " << round;
        }
    }
    EXPECT_GT(expected.size(), 50u);
}

TEST(ProfilePath, FollowsTheConfigurationFolder)
{
    const auto path_with = [](const char* config, const char* home) {
        config ? setenv("XDG_CONFIG_HOME", config, 1) : unsetenv("XDG_CONFIG_HOME");
        setenv("HOME", home, 1);
        return platform::profile_path();
    };
    const char* const home = std::getenv("HOME");
    const std::string before = home ? home : "";
    EXPECT_EQ(path_with("/etc/me", "/home/me"), "/etc/me/velmira/profile");
    EXPECT_EQ(path_with("", "/home/me"), "/home/me/.config/velmira/profile");
    EXPECT_EQ(path_with("not/absolute", "/home/me"), "/home/me/.config/velmira/profile");
    EXPECT_EQ(path_with(nullptr, "/home/me"), "/home/me/.config/velmira/profile");
    setenv("HOME", before.c_str(), 1);
}

} // namespace
