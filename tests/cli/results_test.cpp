// Where the results of a call go, and what it says of those that go nowhere.
#include "document/fixtures.h"
#include "program_fixture.h"

#include <algorithm>

namespace {

using json = nlohmann::json;

class ResultsTest : public ProgramTest {
protected:
    /// A terrace that begins at column 8 of 16.
    void writeTerrace(const std::string& name) const
    {
        SPMDataStream stream = heights("Topo", {16, 16});
        for (int i = 0; i < 16 * 16; ++i)
            static_cast<short*>(stream.array_data())[i] = static_cast<short>(i % 16 < 8 ? 0 : 500);
        write(name, {stream});
    }
    std::vector<std::string> filesIn(const std::string& name) const
    {
        std::vector<std::string> names;
        for (const auto& each : std::filesystem::directory_iterator(folder / name))
            names.push_back(each.path().filename().native());
        std::ranges::sort(names);
        return names;
    }
};

TEST_F(ResultsTest, NoPictureOrTableReplacesARecording)
{
    writeTerrace("t.spm");
    // A scan by its first line, a container by its ending; anybody's picture is drawn anew.
    const std::string wsxm = "WSxM file copyright X\nSxM Image file\n";
    write_file(folder / "scan.png", wsxm);
    write_file(folder / "rows.spm", "");
    write_file(folder / "old.png", "anybody's");
    for (const std::vector<std::string>& call :
         {std::vector<std::string>{"render", "t.spm", "-o", "scan.png"}, {"features", "t.spm", "--csv", "rows.spm"}}) {
        const program_result refused = vldv(call);
        EXPECT_EQ(refused.status, 1) << call[0];
        EXPECT_THAT(refused.err, HasSubstr("is a recording, which no result replaces"));
    }
    EXPECT_EQ(file_content(folder / "scan.png"), wsxm);
    EXPECT_EQ(file_content(folder / "rows.spm"), "");
    EXPECT_EQ(vldv({"render", "t.spm", "-o", "old.png"}).status, 0);
    EXPECT_TRUE(file_content(folder / "old.png").starts_with("\x89PNG"));
    // The next call would take what it wrote itself for one.
    for (const std::vector<std::string>& call :
         {std::vector<std::string>{"stats", "t.spm", "--csv", "new.spm"}, {"features", "t.spm", "--csv", "new.mdt"}}) {
        tells(call, "has an ending of recordings, which no table or picture gets");
        EXPECT_FALSE(std::filesystem::exists(folder / call.back()));
    }
}

TEST_F(ResultsTest, WhatWasFoundIsToldThoughItsFileIsRefused)
{
    writeTerrace("t.spm");
    write("there.spm", {heights("Other", {5})});
    const struct {
        std::vector<std::string> call;
        const char *told, *kind, *output;
    } cases[] = {
        {{"steps", "t.spm", "-o", "there.spm"}, "1 step\n", "steps", "there.spm\" exists and holds something else"},
        {{"fourier", "t.spm", "--rect", "1,0,1,0", "--zero-inner", "-o", "e.spm", "--spectrum", "there.spm"},
         "e.spm\n",
         "max",
         "there.spm\" exists and holds something else"},
        {{"features", "t.spm", "--csv", "t.spm"}, "1 feature", "features", "t.spm\" is an input of this call"},
    };
    for (const auto& [call, told, kind, output] : cases) {
        const program_result text = vldv(call);
        EXPECT_EQ(text.status, 1);
        EXPECT_THAT(text.out, HasSubstr(told));
        EXPECT_THAT(text.err, HasSubstr("t.spm: the output \""));
        EXPECT_THAT(text.err, HasSubstr(output));
        const json entry = filesOf(call, 1).at(0);
        EXPECT_TRUE(entry["images"][0].contains(kind)) << entry;
        EXPECT_THAT(entry["error"].get<std::string>(), HasSubstr(output)) << entry;
    }
}

TEST_F(ResultsTest, AFolderTakesItsOwnResults)
{
    const std::vector<std::string> calls[] = {{"convert", "in", "--to", "in"},
                                              {"render", "in", "-o", "in"},
                                              {"steps", "in", "-o", "in"},
                                              {"fourier", "in", "--spectrum", "in"}};
    for (const std::vector<std::string>& call : calls) {
        std::filesystem::create_directories(folder / "in");
        for (const char* name : {"in/a.txt", "in/b.txt"}) write_file(folder / name, smallMatrix);
        const program_result first = vldv(call);
        const std::vector<std::string> made = filesIn("in");
        const program_result second = vldv(call);
        EXPECT_EQ(first.status, 0) << call[0] << first.err;
        EXPECT_EQ(second.status, 0) << call[0] << second.err;
        EXPECT_EQ(second.out, first.out) << call[0];
        EXPECT_EQ(filesIn("in"), made) << call[0];
        EXPECT_EQ(made.size(), 4u) << call[0];
        std::filesystem::remove_all(folder / "in");
    }
    std::filesystem::create_directories(folder / "in");
    write_file(folder / "in/a.txt", smallMatrix);
    write("in/a.txt.spm", {heights("Edited", {5})});
    const program_result edited = vldv({"convert", "in", "--to", "in"});
    EXPECT_EQ(edited.status, 1);
    EXPECT_THAT(edited.err, HasSubstr("in/a.txt: the output \""));
    EXPECT_EQ(std::ranges::count(edited.err, '\n'), 1) << edited.err;
    write_file(folder / "in/z.txt", smallMatrix);
    EXPECT_EQ(vldv({"stats", "in", "--csv", "in/z.txt"}).status, 1) << "a recording, and no earlier result";
    EXPECT_EQ(file_content(folder / "in/z.txt"), smallMatrix);
}

TEST_F(ResultsTest, AFolderTakesTheResultsOfThoseBelow)
{
    const std::vector<std::string> calls[] = {{"convert", "in", "--to", "in"},
                                              {"steps", "in", "-o", "in"},
                                              {"render", "in", "-o", "in"},
                                              {"fourier", "in", "--spectrum", "in"},
                                              {"convert", "in", "out", "--to", "in"}};
    for (const std::vector<std::string>& call : calls) {
        // Behind the results by its name, before them, and in another folder.
        for (const char* name : {"in/z/a.txt", "in/B/b.txt", "out/c.txt"}) {
            std::filesystem::create_directories((folder / name).parent_path());
            write_file(folder / name, smallMatrix);
        }
        const program_result first = vldv(call), second = vldv(call);
        EXPECT_EQ(first.status, 0) << call[0] << first.err;
        EXPECT_EQ(second.status, 0) << call[0] << second.err;
        EXPECT_EQ(second.out, first.out) << call[0];
        EXPECT_EQ(filesIn("in/z").size(), 2u) << call[0];
        for (const char* name : {"in", "out"}) std::filesystem::remove_all(folder / name);
    }
}

TEST_F(ResultsTest, AContainerKeepsItsMeasurementWhenAFolderGrows)
{
    const std::string other = "# Channel: H\n# Width: 2 nm\n# Height: 2 nm\n# Value units: nm\n9 9\n9 8\n";
    const auto add = [&](const char* name, const std::string& text) {
        std::filesystem::create_directories((folder / name).parent_path());
        write_file(folder / name, text);
    };
    add("in/b/x.txt", smallMatrix);
    const std::vector<std::string> calls[] = {{"convert", "in", "--to", "out"},
                                              {"convert", "in", "--to", "out", "--force"},
                                              {"steps", "in", "-o", "out/"},
                                              {"fourier", "in", "--spectrum", "out", "--force"}};
    for (const std::vector<std::string>& call : calls) {
        ASSERT_EQ(vldv(call).status, 0) << call[0];
        ASSERT_EQ(filesIn("out/b").size(), 1u) << call[0];
        const std::filesystem::path result = folder / "out/b" / filesIn("out/b")[0];
        const std::string before = vldv({"dump", result.native()}).out;
        add("in/a/x.txt", other);
        EXPECT_EQ(vldv(call).status, 0) << call[0];
        EXPECT_EQ(vldv({"dump", result.native()}).out, before) << call[0];
        EXPECT_EQ(filesIn("out/a").size() + filesIn("out/b").size() + filesIn("out").size(), 4u) << call[0];
        for (const char* name : {"in/a", "out"}) std::filesystem::remove_all(folder / name);
    }
}

TEST_F(ResultsTest, WhyNothingIsWrittenIsTrue)
{
    for (const char* name : {"a", "b", "out"}) std::filesystem::create_directories(folder / name);
    for (const char* name : {"a/x.txt", "b/x.txt"}) write_file(folder / name, smallMatrix);
    write("out/x.txt.spm", {heights("Edited", {5})});
    const program_result refused = vldv({"convert", "a/x.txt", "b/x.txt", "--to", "out/x.txt.spm"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.err.find("taken"), std::string::npos) << "the call wrote nothing: " << refused.err;
    EXPECT_THAT(refused.err, HasSubstr("b/x.txt: the output \""));
    std::filesystem::create_symlink("/proc/self/mem", folder / "shut.spm"); // a file whose first byte is an error
    tells({"convert", "a/x.txt", "--to", "shut.spm"}, "shut.spm\" exists and cannot be read");
}

TEST_F(ResultsTest, ADamagedContainerIsNeverTakenForTheSame)
{
    write_file(folder / "m.txt", smallMatrix);
    ASSERT_EQ(vldv({"convert", "m.txt", "--to", "m.spm"}).status, 0);
    const std::string whole = file_content(folder / "m.spm");
    std::string flipped = whole; // in the data of the first entry, behind its local header of 30 bytes and two texts
    const auto length = [&](std::size_t at) {
        return static_cast<unsigned char>(whole[at]) + 256u * static_cast<unsigned char>(whole[at + 1]);
    };
    flipped[30 + length(26) + length(28) + 3] ^= 0x55;
    for (const std::string& there : {flipped, whole.substr(0, whole.size() / 2), std::string("words"), std::string()}) {
        write_file(folder / "m.spm", there);
        tells({"convert", "m.txt", "--to", "m.spm"},
              "m.spm\" exists and is damaged or no container; --force replaces it");
        EXPECT_EQ(file_content(folder / "m.spm"), there) << "left for whoever can save something of it";
        EXPECT_EQ(vldv({"convert", "m.txt", "--to", "m.spm", "--force"}).status, 0);
        EXPECT_EQ(vldv({"dump", "m.spm"}).out, smallMatrixRaw) << there.size();
    }
}

} // namespace
