// The vldv program as a script meets it.
#include "program_fixture.h"

#include <algorithm>

namespace {

using json = nlohmann::json;

TEST_F(ProgramTest, ExamplesNeverReplaceWhatSomebodyMadeOfThem)
{
    examples();
    write_file(folder / "m.txt", smallMatrix);
    ASSERT_EQ(vldv({"convert", "m.txt", "-o", "ex/grains.spm", "--force"}).status, 0);
    write_file(folder / "ex/section.spm", "notes");
    const std::string grains = file_content(folder / "ex/grains.spm");
    const program_result again = vldv({"examples", "ex"});
    EXPECT_EQ(again.status, 0);
    for (const char* name : {"ex/grains.spm", "ex/section.spm"})
        EXPECT_THAT(again.err, HasSubstr(std::string(name) + ": stays as it is"));
    EXPECT_EQ(std::ranges::count(again.err, '\n'), 2) << "the others are as they were written: " << again.err;
    EXPECT_EQ(std::ranges::count(again.out, '\n'), 5) << again.out;
    EXPECT_TRUE(file_content(folder / "ex/grains.spm") == grains);
    EXPECT_EQ(vldv({"examples", "ex", "--force"}).err, "");
    EXPECT_FALSE(file_content(folder / "ex/grains.spm") == grains);
    EXPECT_EQ(vldv({"examples", "ex"}).err, "");
}

TEST_F(ProgramTest, AFailedFileIsNamedAndTheOthersAreDone)
{
    std::filesystem::create_directories(folder / "a");
    std::filesystem::create_directories(folder / "b");
    write_file(folder / "a/x.txt", smallMatrix);
    write_file(folder / "b/y.txt", smallMatrix);
    write_file(folder / "b/broken.spm", "PK\3\4");
    const program_result result = vldv({"info", "--json", "a/x.txt", "b/broken.spm", "b/missing.spm", "b/y.txt"});
    EXPECT_EQ(result.status, 1);
    const json files = json::parse(result.out)["files"];
    ASSERT_EQ(files.size(), 4u);
    EXPECT_EQ(files[0]["images"].size(), 1u);
    EXPECT_EQ(files[1].size(), 2u);
    EXPECT_TRUE(files[1].contains("path") && files[1].contains("error"));
    EXPECT_THAT(files[2]["error"].get<std::string>(), HasSubstr("No such file"));
    EXPECT_EQ(files[3]["images"].size(), 1u) << "a relative path behind a file of another folder";
    EXPECT_THAT(result.err, HasSubstr("broken.spm"));
    EXPECT_THAT(result.err, HasSubstr("missing.spm"));
}

TEST_F(ProgramTest, WrongUseIsTold)
{
    EXPECT_EQ(vldv({"render", "x.spm", "-o", "x.png", "--roi", "1,2,3"}).status, 2);
    for (const char* window : {"0,nan,nm", "inf,1,nm", "0,0,nm", "0,-5,nm", "0,5"})
        EXPECT_EQ(vldv({"render", "x.spm", "-o", "x.png", "--fixed", window}).status, 2) << window;
    for (const char* size : {"0x5", "5x-1", "4", "40000x1", "1x1x1"})
        EXPECT_EQ(vldv({"render", "x.spm", "-o", "x.png", "--size", size}).status, 2) << size;
    EXPECT_EQ(vldv({"dump", "x.spm", "--raw", "--physical"}).status, 2);
    EXPECT_EQ(vldv({"--help"}).status, 0);
    EXPECT_EQ(vldv({"render", "--help"}).status, 0);
}

TEST_F(ProgramTest, IsolinesAreWalkedAround)
{
    // A hill of 2 by 1 samples in the middle of rows 0 to 2; the file has its top row first.
    write_file(folder / "hill.txt", "# Channel: H\n# Width: 4 nm\n# Height: 3 nm\n# Value units: nm\n"
                                    "0 0 0 0\n0 5 5 0\n0 0 0 0\n");
    EXPECT_EQ(vldv({"isoline", "hill.txt", "--at", "1,1"}).out, "1\t1\n2\t1\n1\t1\n");
    const json contour = json::parse(vldv({"isoline", "hill.txt", "--at", "2,1", "--json"}).out);
    expect_fields(contour, {{"contour", json::parse("[[2,1],[1,1],[2,1]]")}, {"at", json::parse("[2,1]")}});
    write_file(folder / "flat.txt", "# Channel: H\n# Width: 3 nm\n# Height: 3 nm\n# Value units: nm\n"
                                    "3 3 3\n3 3 3\n3 3 9\n");
    EXPECT_EQ(vldv({"isoline", "flat.txt", "--at", "1,1"}).out, "");
    tells({"isoline", "flat.txt", "--at", "1,1"}, "flat.txt: No isoline: all samples around are at least as high", 0);
    const program_result alone = vldv({"isoline", "flat.txt", "--at", "2,0", "--json"});
    EXPECT_TRUE(json::parse(alone.out)["contour"].empty());
    EXPECT_THAT(alone.err, HasSubstr("all samples around are lower"));
    tells({"isoline", "hill.txt", "--at", "4,1"}, "4,1 lies outside of the image of 4 x 3");
    EXPECT_EQ(vldv({"isoline", "hill.txt"}).status, 2);
    EXPECT_EQ(vldv({"isoline", "--at", "1,1", "hill.txt"}).out, "1\t1\n2\t1\n1\t1\n") << "the file comes last";
    for (const char* const wrong : {"4", "1,1,1", "1,-1", "1,x", "1,1e99"})
        EXPECT_EQ(vldv({"isoline", "hill.txt", "--at", wrong}).status, 2) << wrong;
}

TEST_F(ProgramTest, InfoTellsWhatAReaderLeftOut)
{
    write_file(folder / "short.txt", "1 2 3 4\n5 6 7 8\n9\n");
    const std::string warning = "The last line, 3, was left out: it has 1 value of 4";
    EXPECT_THAT(vldv({"info", "short.txt"}).out, HasSubstr("\n  note: " + warning + "\n"));
    EXPECT_EQ(info({"short.txt"})["files"][0]["warnings"], json{warning});
    tells({"convert", "short.txt", "--to", "short.spm"}, "short.txt, note: " + warning + "\n", 0);
    EXPECT_EQ(info({"short.spm"})["files"][0]["warnings"], json{warning}) << "what was lost stays lost";
    EXPECT_THAT(vldv({"stats", "short.spm"}).err, HasSubstr("short.spm, note: " + warning));
    write_file(folder / "whole.txt", smallMatrix);
    EXPECT_FALSE(info({"whole.txt"})["files"][0].contains("warnings"));
}

TEST_F(ProgramTest, InfoLendsNoSideTheUnitOfTheOther)
{
    write_file(folder / "m.txt", "# Channel: T\n# Width: 10.00\n# Height: 10.00 um\n# Value units: m\n1 2\n3 4\n");
    EXPECT_THAT(vldv({"info", "m.txt"}).out, HasSubstr("  10 (no unit) x 10 \u00B5m  "));
}

TEST_F(ProgramTest, ConvertKeepsSamplesAndNeverOverwritesWhatItReads)
{
    examples();
    write_file(folder / "m.txt", smallMatrix);
    ASSERT_EQ(vldv({"convert", "m.txt", "--to", "out"}).status, 0);
    EXPECT_TRUE(std::filesystem::exists(folder / "out/m.txt.spm"));
    EXPECT_EQ(vldv({"dump", "out/m.txt.spm"}).out, vldv({"dump", "m.txt"}).out);
    const std::string before = file_content(folder / "out/m.txt.spm");
    EXPECT_EQ(vldv({"convert", "m.txt", "--to", "out"}).status, 0) << "the same again";

    // As after an edit: what lies there is not what the recording holds.
    ASSERT_EQ(vldv({"convert", "ex/grains.spm", "-o", "out/m.txt.spm", "--force"}).status, 0);
    const std::string edited = file_content(folder / "out/m.txt.spm");
    tells({"convert", "m.txt", "--to", "out"}, "exists and holds something else; --force replaces it");
    EXPECT_EQ(file_content(folder / "out/m.txt.spm"), edited);
    write_file(folder / "out/m.txt.spm", before);

    EXPECT_EQ(vldv({"convert", "out/m.txt.spm", "--to", "out"}).status, 1) << "onto itself";
    EXPECT_EQ(file_content(folder / "out/m.txt.spm"), before);
    std::filesystem::create_directory_symlink(folder / "out", folder / "link");
    EXPECT_EQ(vldv({"convert", "out/m.txt.spm", "--to", "link"}).status, 1) << "onto itself by another name";
    EXPECT_EQ(file_content(folder / "out/m.txt.spm"), before);

    std::filesystem::create_directories(folder / "other");
    write_file(folder / "other/m.txt", "# Channel: H\n# Width: 2 nm\n# Height: 2 nm\n# Value units: nm\n9 9\n9 8\n");
    tells({"convert", "m.txt", "other/m.txt", "--to", "both"},
          "other/m.txt: the output \"" + (folder / "both/m.txt.spm").native() + "\" is taken by the result of \"" +
              (folder / "m.txt").native() + '"');
    EXPECT_EQ(vldv({"dump", "both/m.txt.spm"}).out, vldv({"dump", "m.txt"}).out);
    EXPECT_EQ(vldv({"convert", "m.txt", "--to", "one.spm"}).status, 0);
    EXPECT_EQ(vldv({"convert", "other/m.txt", "one.spm", "--to", "one.spm"}).status, 1)
        << "the second input would be gone before it is read";
    EXPECT_EQ(vldv({"dump", "one.spm"}).out, smallMatrixRaw);
    EXPECT_EQ(vldv({"convert", "m.txt", "--to", "m.txt/one.spm"}).status, 1) << "a file is no folder";
    EXPECT_EQ(vldv({"convert", "missing.txt", "m.txt", "--to", "rest"}).status, 1);
    EXPECT_EQ(vldv({"dump", "rest/m.txt.spm"}).out, smallMatrixRaw) << "one failure does not stop the others";
    EXPECT_EQ(info({"one.spm"})["files"][0]["images"][0]["label"], "Height");
}

TEST_F(ProgramTest, FileNamesMayHoldAnyBytes)
{
    const std::string name = "night 1 \xff \xc3\xa9.txt";
    write_file(folder / name, smallMatrix);
    EXPECT_EQ(vldv({"dump", name}).out, smallMatrixRaw);
    ASSERT_EQ(vldv({"convert", name, "--to", "out"}).status, 0);
    EXPECT_TRUE(std::filesystem::exists(folder / "out" / (name + ".spm")));
    EXPECT_EQ(vldv({"info", "--json", name}).status, 0);
}

TEST_F(ProgramTest, FoldersStandForTheRecordingsInThem)
{
    std::filesystem::create_directories(folder / "in/deep");
    std::filesystem::create_directories(folder / "none");
    write_file(folder / "in/b.txt", smallMatrix);
    write_file(folder / "in/deep/a.dat", smallMatrix);
    write_file(folder / "in/notes.md", "nothing to see");
    const nlohmann::json files = info({"in"})["files"];
    ASSERT_EQ(files.size(), 2u);
    EXPECT_TRUE(std::string(files[0]["path"]).ends_with("in/b.txt"));
    EXPECT_TRUE(std::string(files[1]["path"]).ends_with("in/deep/a.dat"));
    EXPECT_THAT(vldv({"dump", "in"}).err, HasSubstr("in: ")) << "one file, not one of those in a folder";
    tells({"info", "none"}, "none: the folder holds no file that opens");
    std::filesystem::create_symlink("loop.spm", folder / "in/loop.spm");
    const nlohmann::json told = info({"in"}, 1)["files"];
    ASSERT_EQ(told.size(), 3u) << "what cannot be read is no less a failure than what cannot be understood";
    EXPECT_TRUE(std::string(told[0]["path"]).ends_with("in/loop.spm"));
    EXPECT_EQ(told[0]["error"], "Too many levels of symbolic links");
}

TEST_F(ProgramTest, ASecondCallDoesNotReadTheResultsOfTheFirst)
{
    std::filesystem::create_directories(folder / "in/deep");
    for (const char* name : {"in/a.txt", "in/deep/b.txt"}) write_file(folder / name, smallMatrix);
    const std::vector<std::string> calls[] = {{"convert", "in", "--to", "in/out"},
                                              {"render", "in", "-o", "in/out"},
                                              {"features", "in", "--mask", "in/out", "--csv", "in/deep/out"},
                                              {"steps", "in", "-o", "in/deep/../out"},
                                              {"fourier", "in", "--spectrum", "in/out"}};
    for (const std::vector<std::string>& call : calls) {
        const program_result first = vldv(call), second = vldv(call);
        EXPECT_EQ(first.status, 0) << call[0] << first.err;
        EXPECT_EQ(second.status, 0) << call[0] << second.err;
        EXPECT_EQ(second.out, first.out) << call[0];
        std::filesystem::remove_all(folder / "in/out");
        std::filesystem::remove_all(folder / "in/deep/out");
    }
    ASSERT_EQ(vldv({"convert", "in/a.txt", "--to", "in/deep"}).status, 0);
    EXPECT_EQ(info({"in/deep"})["files"].size(), 2u) << "a call without results reads them";
}

/// The page tells what is built in; it is written anew by `vldv formats --markdown > docs/formats.md`.
TEST_F(ProgramTest, ThePageOfFormatsIsThatOfTheRegistry)
{
    const program_result page = vldv({"formats", "--markdown"});
    EXPECT_EQ(page.status, 0);
    const auto root = std::filesystem::path(VLDV_TEST_DATA).parent_path().parent_path().parent_path();
    EXPECT_TRUE(page.out == file_content(root / "docs/formats.md"));
    const program_result list = vldv({"formats"});
    EXPECT_THAT(list.out, HasSubstr("RHK SPM32               Smena files              *.sm2\n"));
}

} // namespace
