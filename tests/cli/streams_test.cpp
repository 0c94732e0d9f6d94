// Standard input and output, and what a call says when it is not understood.
#include "program_fixture.h"

#include <algorithm>
#include <cstdlib>

namespace {

/// Runs the program with a file as standard input.
program_result piped(const temporary_folder& folder, const std::vector<std::string>& arguments, const char* input)
{
    return run_vldv(folder.path, arguments, {}, folder / input);
}

/// One entry, pure red: RIFF, its size, "PAL ", "data", a size that is ignored, the colour.
std::string red_palette()
{
    const char red[] = "RIFF\x10\0\0\0PAL data\0\0\0\0\xff\0\0\0";
    return {red, sizeof red - 1};
}

TEST_F(ProgramTest, AMinusIsStandardInputAndOutput)
{
    write_file(folder / "m.txt", smallMatrix);
    EXPECT_EQ(piped(folder, {"dump", "-"}, "m.txt").out, smallMatrixRaw);
    const program_result told = piped(folder, {"info", "--json", "-"}, "m.txt");
    EXPECT_EQ(nlohmann::json::parse(told.out)["files"][0]["path"], "-");

    write_file(folder / "made.spm", piped(folder, {"convert", "-", "-o", "-"}, "m.txt").out);
    EXPECT_EQ(vldv({"dump", "made.spm"}).out, smallMatrixRaw);
    const std::string picture = piped(folder, {"render", "-", "-o", "-"}, "made.spm").out;
    ASSERT_EQ(vldv({"render", "made.spm", "-o", "named.png"}).status, 0);
    EXPECT_EQ(picture, file_content(folder / "named.png"));
    EXPECT_FALSE(std::filesystem::exists(folder / "-"));
}

TEST_F(ProgramTest, StandardStreamsTakeOneFile)
{
    write_file(folder / "m.txt", smallMatrix);
    write_file(folder / "none.txt", "");
    struct refusal {
        std::vector<std::string> arguments;
        const char *input, *reason;
    };
    const refusal refusals[] = {
        {{"info", "-"}, "none.txt", "-: standard input is empty"},
        {{"info", "-"}, "/dev/zero", "-: standard input is a device: only files and pipes are read"},
        {{"info", "-", "-"}, "m.txt", "-: standard input can be read only once"},
        {{"convert", "-", "m.txt", "-o", "-"}, "m.txt", "only one file can go to standard output"},
        {{"render", "-", "m.txt", "-o", "-"}, "m.txt", "only one picture can go to standard output"}};
    for (const refusal& each : refusals) {
        const program_result result = piped(folder, each.arguments, each.input);
        EXPECT_EQ(result.status, 1) << each.reason;
        EXPECT_THAT(result.err, HasSubstr(each.reason));
    }
    for (const std::vector<std::string>& call : {std::vector<std::string>{"features", "m.txt", "--csv", "-"},
                                                 {"steps", "m.txt", "-o", "-"},
                                                 {"fourier", "m.txt", "--spectrum", "-"}}) {
        tells(call, "not to standard output", 2);
        EXPECT_FALSE(std::filesystem::exists(folder / "-")) << "no folder of that name";
    }
    write_file(folder / "broken.spm", "PK\3\4");
    const std::string broken = piped(folder, {"info", "-"}, "broken.spm").err;
    EXPECT_TRUE(broken.starts_with("-: standard input: ")) << "not the name of a file of ours: " << broken;
}

TEST_F(ProgramTest, WhyStandardInputIsNotKeptIsTold)
{
    write_file(folder / "m.txt", std::string(smallMatrix) + std::string(100000, '\n'));
    const std::string command =
        "cd '" + folder.path.native() + "' && ( ulimit -f 8; '" VLDV_PROGRAM "' info - <m.txt 2>err )";
    EXPECT_NE(std::system(command.c_str()), 0);
    EXPECT_THAT(file_content(folder / "err"),
                HasSubstr("could not be kept in the folder for temporary files: File too large"));
}

TEST_F(ProgramTest, AClosedPipeEndsTheProgramWithoutAWord)
{
    examples(); // 512 x 512 numbers are far more than a pipe holds
    const std::string command = "cd '" + folder.path.native() +
                                "' && ( trap '' PIPE; '" VLDV_PROGRAM
                                "' dump ex/grains.spm 2>err; echo $? >status ) | true";
    ASSERT_EQ(std::system(command.c_str()), 0);
    EXPECT_EQ(file_content(folder / "err"), "");
    EXPECT_EQ(file_content(folder / "status"), "141\n") << "128 + SIGPIPE, though the parent ignores that signal";
}

TEST_F(ProgramTest, WhatIsAllowedIsSaidInWords)
{
    const std::pair<std::vector<std::string>, const char*> refusals[] = {
        {{"histgram"}, "\"histgram\"; the nearest is histogram"},
        {{"st"}, "the nearest is stats"},
        {{"m.txt"}, "vldv info m.txt tells"},
        {{"steps", "m.txt", "--gap", "0"}, "--gap: expected a whole number, 1 or more, not \"0\""},
        {{"dump", "m.txt", "--image", "99999999999"}, "--image: expected a whole number that is not above 2147483647"},
        {{"dump", "m.txt", "--image", "0x0"}, "--image: expected a whole number, 0 or more, not \"0x0\""},
        {{"render", "m.txt", "-o", "x.png", "--mode", "auto", "--fixed", "0,1,nm"}, "--fixed: is the window of --mode"},
        {{"render", "m.txt", "-o", "x.png", "--absolute"}, "--absolute: needs --fixed or --mode fixed"},
        {{"render", "m.txt", "-o", "x.png", "--roi", "1,2"}, "--roi: expected LEFT,TOP,RIGHT,BOTTOM, not \"1,2\""},
        {{"curve", "m.txt", "--op", "trend", "--mode", "power"}, "--mode: is of --op spectrum, not of --op trend"},
        {{"fourier", "m.txt", "--spectrum", "x.spm", "--elliptic"}, "--elliptic: needs --rect"},
        {{"features", "m.txt", "--mask", "x.jpg"}, "--mask: \"x.jpg\" is neither a picture (png) nor a folder"},
        {{"--nosuch"}, "vldv has no option --nosuch"},
        {{"force", "m.txt", "--slant-threshold", "inf"}, "--slant-threshold: expected a number, 0 or more"},
        {{"histogram", "m.txt", "--bars", "1"}, "--bars: expected a whole number from 2 to 16777216, not \"1\""},
        {{"render", "m.txt", "-o", "x.png", "--palette", "gren"}, "no palette \"gren\"; the nearest name is green"},
        {{"render", "m.txt", "-o", "x.png", "--palette", "m.txt"}, "\"m.txt\" is no palette file"},
        {{"render", "m.txt", "-o", "x.png", "--size", "65536x1"}, "expected WIDTHxHEIGHT, each from 1 to 32768"},
        {{"render", "m.txt", "-o", "x.png", "--fixed", "0,-1,nm"}, "expected START,SIZE,UNITS with a SIZE above 0"},
        {{"render", "m.txt", "-o", "x.png", "--mode", "bogus"},
         "--mode: expected fixed, auto, line or planefit, not \"bogus\""},
        {{"render", "m.txt", "-o", "x.png", "--legend", "1"}, "--legend: expected full, compact or none, not \"1\""},
        {{"steps", "m.txt", "--direction", "up"}, "--direction: expected ltr or rtl, not \"up\""},
        {{"curve", "m.txt", "--op", "trend", "--mode", "3"}, "--mode: expected power or magnitude, not \"3\""},
        {{"curve", "m.txt", "--op", "Fit"}, "--op: expected spectrum, trend, differentiate, autocorrelation, "},
        {{"fourier", "m.txt", "--mode", "x"}, "--mode: expected power or magnitude, not \"x\""},
        {{"render", "m.txt", "-o", "out.xyz"},
         "\"out.xyz\" is neither a picture (png, bmp, jpg, tif, pdf, svg) nor a folder"},
        {{"convert", "m.txt", "-o", ""}, "--to: expected a word, not \"\""},
        {{"steps", "m.txt", "-o", ""}, "--output: expected a word, not \"\""},
        {{"convert", "m.txt", "--to", "x.png"}, "x.png: is neither a name of a container (.spm) nor of a folder"}};
    write_file(folder / "m.txt", smallMatrix);
    for (const auto& [arguments, reason] : refusals) tells(arguments, reason, 2);
    EXPECT_FALSE(std::filesystem::exists(folder / "x.png"));
    const std::string help = vldv({"render", "--help"}).out;
    EXPECT_THAT(help, HasSubstr("--mode TEXT:fixed, auto, line or planefit"));
    EXPECT_EQ(vldv({"--version"}).out, "vldv " VLDV_VERSION "\n");
}

TEST_F(ProgramTest, PalettesHaveNames)
{
    write_file(folder / "m.txt", smallMatrix);
    write_file(folder / "red.pal", red_palette());
    const auto picture = [&](const char* palette) {
        EXPECT_EQ(vldv({"render", "m.txt", "-o", "x.bmp", "--palette", palette}).status, 0) << palette;
        return file_content(folder / "x.bmp");
    };
    EXPECT_EQ(picture("Zebra"), picture("5"));
    EXPECT_NE(picture("gray"), picture("blue"));
    const std::filesystem::path bundled =
        std::filesystem::path(VLDV_PROGRAM).parent_path() / "palettes" / "Even fire.pal";
    EXPECT_EQ(picture("even fire"), picture(bundled.c_str()));
    EXPECT_NE(picture("Even fire"), picture("brown"));
    EXPECT_THAT(vldv({"render", "--help"}).out, HasSubstr("multicolor-2, Blue to orange, Blue to yellow, "));
    const std::string reds = picture("red.pal");
    EXPECT_EQ(reds.substr(reds.size() - 8, 6), std::string("\0\0\xff\0\0\xff", 6)) << "blue, green, red of two pixels";
}

TEST_F(ProgramTest, PathsOfACallStandForWhatTheyDidWhenItWasMade)
{
    std::filesystem::create_directories(folder / "other");
    write_file(folder / "other/m.txt", smallMatrix);
    write_file(folder / "other/t.csv", "kept");
    write_file(folder / "red.pal", red_palette());
    const auto at = [&](const char* input, std::vector<std::string> call) {
        const program_result result = piped(folder, call, input);
        EXPECT_EQ(result.status, 0) << call[0] << ' ' << call[1] << ": " << result.err;
    };
    for (const char* input : {"other/m.txt", "-"}) {
        at("other/m.txt", {"stats", input, "--csv", "t.csv"});
        EXPECT_TRUE(file_content(folder / "t.csv").starts_with("file,image")) << input;
        EXPECT_EQ(file_content(folder / "other/t.csv"), "kept");
        std::filesystem::remove(folder / "t.csv");
        for (const char* legend : {"", "--legend=full", "--legend=compact"}) {
            std::vector<std::string> call = {"render", input, "-o", "named.bmp", "--palette", "red.pal"};
            if (*legend) call.emplace_back(legend);
            at("other/m.txt", call);
            call[3] = "full.bmp";
            call[5] = (folder / "red.pal").native();
            at("other/m.txt", call);
            EXPECT_TRUE(file_content(folder / "named.bmp") == file_content(folder / "full.bmp")) << legend << input;
        }
    }
}

TEST_F(ProgramTest, ALineEndInAPathBreaksNoLine)
{
    const std::string surface = "a\nb.txt", curve = "c\nb.txt";
    write_file(folder / surface, smallMatrix);
    write_file(folder / curve, "1 2\n2 3\n3 5\n4 7\n");
    for (const std::vector<std::string>& call : {std::vector<std::string>{"stats", surface},
                                                 {"histogram", surface},
                                                 {"features", surface},
                                                 {"steps", surface},
                                                 {"render", surface, "-o", "out/"},
                                                 {"convert", surface, "-o", "out"},
                                                 {"fourier", surface, "--spectrum", "out/"},
                                                 {"profile", curve, curve}}) {
        const std::string out = vldv(call).out;
        EXPECT_THAT(out, HasSubstr("\\nb.txt")) << call[0];
        EXPECT_EQ(out.find("\nb.txt"), std::string::npos) << call[0];
    }
    for (const std::vector<std::string>& call : {std::vector<std::string>{"features", surface, "--csv", surface},
                                                 {"convert", surface, "-o", surface + "/"},
                                                 {"isoline", surface, "--at", "1,0"},
                                                 {"info", "gone\nb.txt"}}) {
        const program_result result = vldv(call);
        EXPECT_EQ(std::ranges::count(result.err, '\n'), 1) << result.err;
        EXPECT_THAT(result.err, HasSubstr("\\nb.txt"));
    }
}

TEST_F(ProgramTest, WhatWasWrittenIsNamed)
{
    write_file(folder / "m.txt", smallMatrix);
    const std::string out = (std::filesystem::canonical(folder.path) / "out").native();
    EXPECT_EQ(vldv({"convert", "m.txt", "-o", "out"}).out, out + "/m.txt.spm\n");
    EXPECT_EQ(vldv({"render", "m.txt", "-o", "out/"}).out, out + "/m.txt-0-0.png\n");
    const program_result inFile = vldv({"render", "m.txt", "-o", "m.txt/new/"});
    EXPECT_EQ(inFile.status, 1);
    EXPECT_EQ(inFile.err.substr(inFile.err.find("m.txt")), "m.txt/new/: Not a directory\n")
        << "why there is no folder, not what lacks in it";
}

TEST_F(ProgramTest, WhatACommandCannotTreatInAFolderIsPassedOverAndCounted)
{
    std::filesystem::create_directories(folder / "night");
    write_file(folder / "night/a.txt", smallMatrix);
    write_file(folder / "night/curve.txt", "1 2\n2 3\n3 5\n4 7\n");
    for (const char* command : {"stats", "features", "steps", "histogram", "force", "profile"}) {
        const program_result result = vldv({command, "night"});
        EXPECT_EQ(result.status, 0) << command << result.err;
        const bool treatsBoth = std::string(command) == "histogram";
        EXPECT_EQ(result.err, treatsBoth ? "" : "1 of 2 files hold nothing to treat and were passed over\n") << command;
    }
    EXPECT_EQ(vldv({"stats", "night/curve.txt"}).status, 1) << "it was named";
    std::filesystem::remove(folder / "night/a.txt");
    EXPECT_EQ(vldv({"stats", "night"}).status, 1) << "nothing else is there";
    ASSERT_EQ(vldv({"convert", "night/curve.txt", "--to", "night/broken.spm"}).status, 0);
    std::filesystem::resize_file(folder / "night/broken.spm", 100);
    EXPECT_THAT(vldv({"info", "night"}).err, HasSubstr("broken.spm")) << "a damaged recording is told";
}

} // namespace
