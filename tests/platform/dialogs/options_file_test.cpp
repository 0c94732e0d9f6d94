#include "platform/dialogs/options_file.h"

#include "platform/files/Exceptions.h"
#include "support/temporary_folder.h"

#include <algorithm>
#include <cerrno>
#include <gtest/gtest.h>
#include <random>
#include <unistd.h>

namespace vldv::platform {

// For messages of failed comparisons.
static void PrintTo(const options_section& section, std::ostream* out)
{
    *out << '[' << section.name << ']';
    for (const options_entry& each : section.entries) *out << " {" << each.key << "} = {" << each.value << '}';
}

} // namespace vldv::platform

namespace {

using platform::options_entry;
using platform::options_section;
using sections = std::vector<options_section>;

constexpr const char* note = "; This section was automatically generated";

TEST(OptionsFile, ReadsLinesAsTheyAreMeant)
{
    struct reading {
        const char* text;
        sections expected;
    };
    const reading cases[] = {
        {"", {}},
        {"before=1;\n[A]\nx=1;\n", {{"A", {{"x", "1"}}}}},
        {"[A]\r\nx=1; note\r\n\r\n[B]\r\ny = two words ;\r\n", {{"A", {{"x", "1"}}}, {"B", {{"y", "two words"}}}}},
        {"\xEF\xBB\xBF[A]\rx=1\ry=2", {{"A", {{"x", "1"}, {"y", "2"}}}}},
        {" [A] ; note\n[B ]\n[]", {{"A", {}}, {"B ", {}}, {"", {}}}},
        {"[A]\n; x=1;\n;\nno pair;\n[open\n", {{"A", {}}}},
        {"[A]\npoints=1,2;3,4;;\n", {{"A", {{"points", "1,2;3,4;"}}}}}, // only the last ";" ends the value
        {"[A]\nx=a=b;\n=c;\ny=;\n", {{"A", {{"x", "a=b"}, {"", "c"}, {"y", ""}}}}},
        {"[A]\nx=\"a;b\"; c\ny='a;b';\nz=say \"a;b\";\n",
         {{"A", {{"x", "a;b"}, {"y", "'a;b'"}, {"z", "say \"a;b\""}}}}},
        {"[A]\nx=it's; here;\n", {{"A", {{"x", "it's; here;"}}}}}, // a quote left open takes the rest
        {"[A]\nx=\"C:\\new\";\ny=\"1\"\\t\"2\";\nz=\"a\"b\" ;\n",  // none of these pieces is ours
         {{"A", {{"x", "C:\\new"}, {"y", "\"1\"\\t\"2\""}, {"z", "\"a\"b\" ;"}}}}},
        {"[A]\nx=\"1\"\\n\"2\"\\r\"\";\n\"a=\"\"b\"=1;\n[\"]\"\\n\";\"]\n",
         {{"A", {{"x", "1\n2\r"}, {"a=\"b", "1"}}}, {"]\n;", {}}}},
    };
    for (const reading& each : cases) EXPECT_EQ(platform::parse_options(each.text), each.expected) << each.text;
}

TEST(OptionsFile, ReplacesOneSectionAndKeepsEveryOtherByte)
{
    struct replacing {
        const char *before, *head, *tail; ///< what stays around the new lines
        const char* lineEnd = "\n";
    };
    const replacing cases[] = {
        {"", "[A]\n", ""},
        {"; mine", "; mine\n[A]\n", ""},
        {"[B]\nx=2;\n", "[B]\nx=2;\n[A]\n", ""},
        {"[a]\r\nx = 2 ;mine\r\n", "[a]\r\nx = 2 ;mine\r\n[A]\r\n", "", "\r\n"},
        {"[A]", "[A]\n", ""},
        {"\t[A] ; mine\nold=1;\n; lost\n\n [B]\r\r\n; kept\nx=2", "\t[A] ; mine\n", " [B]\r\r\n; kept\nx=2"},
        {"; top\r\n[A]\r\nold=1;\r\n[B]\nx=2;", "; top\r\n[A]\r\n", "[B]\nx=2;", "\r\n"},
        {"[A]\rold=1;\r[B]\r", "[A]\r", "[B]\r", "\r"},
        {"[A]\n[A]\nsecond=1;\n", "[A]\n", "[A]\nsecond=1;\n"},
        {"\xEF\xBB\xBF[A]\nold=1;\n", "\xEF\xBB\xBF[A]\n", ""},
    };
    const options_section section{"A", {{"x", "1.5"}, {"name", ""}}};
    for (const replacing& each : cases) {
        const std::string end = each.lineEnd;
        const std::string expected = each.head + (note + end) + "x=1.5;" + end + "name=;" + end + each.tail;
        const std::string once = platform::replace_options(each.before, section);
        EXPECT_EQ(once, expected) << each.before;
        EXPECT_EQ(platform::replace_options(once, section), once) << "writing again changes nothing";
    }
}

TEST(OptionsFile, QuotesOnlyWhatAPlainLineWouldNotGiveBack)
{
    const std::pair<options_entry, const char*> cases[] = {
        {{"face", "Times New Roman"}, "face=Times New Roman;"},
        {{"points", "1,2;3,4;"}, "points=1,2;3,4;;"},
        {{"path", "C:\\new"}, "path=C:\\new;"},
        {{"text", "say \"a;b\""}, "text=say \"a;b\";"},
        {{"text", "it's"}, "text=\"it's\";"},
        {{"text", "\"a\""}, "text=\"\"\"a\"\"\";"},
        {{"text", " a"}, "text=\" a\";"},
        {{"text", "a\nb"}, "text=\"a\"\\n\"b\";"},
        {{"a=b", "c=d"}, "\"a=b\"=c=d;"},
        {{"[a", "b]"}, "[a=\"b]\";"},
        {{";a", ""}, "\";a\"=;"},
    };
    for (const auto& [entry, line] : cases)
        EXPECT_EQ(platform::replace_options("", {"A", {entry}}), "[A]\n" + std::string(note) + "\n" + line + "\n");
}

TEST(OptionsFile, GivesBackAnyTextAmongAnyLines)
{
    std::mt19937 random(7);
    const auto text = [&](std::size_t most) {
        // The characters of the format, all the more often together.
        static constexpr std::string_view characters("\"\"\"'';=[]\\nr0 \t\n\r\0\xEF\xBB\xBF"
                                                     "a",
                                                     22);
        std::string out(random() % (most + 1), '\0');
        for (char& c : out) c = characters[random() % characters.size()];
        return out;
    };
    for (int round = 0; round < 20'000; ++round) {
        const std::string before = text(60);
        options_section section{text(5), {}};
        for (unsigned i = random() % 4; i > 0; --i) section.entries.push_back({text(5), text(12)});
        const std::string after = platform::replace_options(before, section);
        const sections was = platform::parse_options(before), is = platform::parse_options(after);
        const auto named = [&](const options_section& each) { return each.name == section.name; };
        const auto replaced = static_cast<std::size_t>(std::ranges::find_if(was, named) - was.begin());
        ASSERT_EQ(is.size(), std::max(was.size(), replaced + 1)) << before;
        for (std::size_t i = 0; i < is.size(); ++i) ASSERT_EQ(is[i], i == replaced ? section : was[i]) << before;
    }
}

TEST(OptionsFile, FilesAreReadAndWrittenInOneStep)
{
    const temporary_folder folder;
    const auto file = folder / "a.opt";
    const options_section section{"A", {{"x", "1"}}};
    platform::write_options_file(file, section);
    EXPECT_EQ(file_content(file), "[A]\n" + std::string(note) + "\nx=1;\n") << "a missing file is made";
    write_file(file, "[B]\r\ny=2;\r\n[A]\r\n");
    platform::write_options_file(file, section);
    EXPECT_EQ(file_content(file), "[B]\r\ny=2;\r\n[A]\r\n" + std::string(note) + "\r\nx=1;\r\n");
    EXPECT_EQ(platform::read_options_file(file, "A"), section.entries);
    EXPECT_EQ(platform::read_options_file(file, "a"), std::vector<options_entry>());
    EXPECT_EQ(folder.files(), 1u);
}

TEST(OptionsFile, WhatCannotBeReadIsNamedAndStays)
{
    const temporary_folder folder;
    std::filesystem::create_directory(folder / "folder.opt");
    write_file(folder / "huge.opt", "[A]\n");
    std::filesystem::resize_file(folder / "huge.opt", (64u << 20) + 1);
    std::filesystem::create_symlink("loop.opt", folder / "loop.opt");
    const auto refusal = [&](const char* name, auto&& work) {
        try {
            work(folder / name);
        } catch (const CFileException& failure) {
            EXPECT_EQ(failure.path, (folder / name).wstring());
            return failure.osError;
        }
        return 0;
    };
    const auto read = [](const std::filesystem::path& file) { platform::read_options_file(file, "A"); };
    const auto write = [](const std::filesystem::path& file) { platform::write_options_file(file, {"A", {}}); };
    EXPECT_EQ(refusal("none.opt", read), ENOENT);
    const std::pair<const char*, int> cases[] = {{"folder.opt", EISDIR}, {"huge.opt", EFBIG}, {"loop.opt", ELOOP}};
    for (const auto& [name, error] : cases) {
        EXPECT_EQ(refusal(name, read), error) << name;
        EXPECT_EQ(refusal(name, write), error) << name;
    }
    EXPECT_EQ(std::filesystem::file_size(folder / "huge.opt"), (64u << 20) + 1);
    EXPECT_EQ(folder.files(), 3u);
}

} // namespace
