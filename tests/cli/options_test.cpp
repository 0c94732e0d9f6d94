// vldv options as a module author meets it.
#include "program_fixture.h"

#include <cstdlib>

namespace {

using json = nlohmann::json;

constexpr const char* goodTable = "light.distance(Light Distance),double,0.0,5.0,,5.0-##\t1.0\r\n"
                                  "\n"
                                  "scale_width(Width, %),double,0.0,1.0,,100.0*##\t0.02\n"
                                  "scale_x(Left margin, %),double,0.0,1.0,0.01,100*##,min(1-#scale_width,##)\t0.99\n"
                                  "light.ambient(Ambient),int,0,(1 << 25)-1,hex(##)\t0x333333\n"
                                  "mode(Display mode),enum,sbs(Side by Side),Other\tsbs\n"
                                  "ShowZ,boolean,,#mode==1\n";

TEST_F(ProgramTest, OptionsAreSettledAndShown)
{
    write_file(folder / "table.txt", goodTable);
    const program_result result = vldv({"options", "table.txt", "--json"});
    ASSERT_EQ(result.status, 0) << result.err;
    const json variables = json::parse(result.out)["variables"];
    ASSERT_EQ(variables.size(), 6u);
    EXPECT_EQ(variables[0], (json{{"name", "light.distance"},
                                  {"label", "Light Distance"},
                                  {"type", "double"},
                                  {"value", "1"},
                                  {"shown", "4"},
                                  {"minimum", 0.0},
                                  {"maximum", 5.0},
                                  {"step", nullptr},
                                  {"items", json::array()}}));
    EXPECT_EQ(variables[2]["value"], "0.98") << "no more than the other leaves free";
    expect_fields(variables[2], {{"shown", "98"}, {"step", 0.01}});
    expect_fields(variables[3], {{"maximum", 33554431.0}, {"shown", "0x333333"}});
    expect_fields(
        variables[4],
        {{"items", (json{{{"key", "sbs"}, {"label", "Side by Side"}}, {{"key", "Other"}, {"label", "Other"}}})},
         {"shown", "Side by Side"},
         {"minimum", nullptr}});
    expect_fields(variables[5], {{"value", "false"}, {"maximum", nullptr}});

    const program_result set =
        vldv({"options", "table.txt", "--json", "--set", "mode=Other", "--set", "scale_width=0.5"});
    const json changed = json::parse(set.out)["variables"];
    EXPECT_EQ(changed[5]["value"], "true");
    EXPECT_EQ(changed[2]["shown"], "50");
    EXPECT_THAT(vldv({"options", "table.txt"}).out,
                HasSubstr("light.ambient   Ambient         int      3355443  0x333333"));
}

TEST_F(ProgramTest, NumbersOfOptionsAreFinite)
{
    write_file(folder / "table.txt",
               "a(A),double,0,1,1/0\nb(B),int,,,0/0*##\nc(C),int," + std::string(5000, '(') + "\n");
    const program_result result = vldv({"options", "table.txt", "--set", "b=inf"});
    EXPECT_EQ(result.status, 1);
    for (const char* told : {"line 1: unreadable step \"1/0\"", "--set b=inf: no value of \"b\""})
        EXPECT_THAT(result.err, HasSubstr(told));
    EXPECT_LT(result.err.size(), 1000u) << "a long expression is quoted by its start";
    EXPECT_EQ(result.out.find("-nan"), std::string::npos) << result.out;
}

TEST_F(ProgramTest, HeadingsArePartOfATable)
{
    write_file(folder / "table.txt", "marks(Marks)\nmarks_mode(Mode),enum,Lines,None\tNone\n");
    const program_result result = vldv({"options", "table.txt", "--json"});
    ASSERT_EQ(result.status, 0) << result.err;
    const json variables = json::parse(result.out)["variables"];
    expect_fields(variables[0], {{"type", "heading"}, {"label", "Marks"}, {"value", ""}});
    EXPECT_EQ(variables[1]["value"], "None");
}

TEST_F(ProgramTest, BadDeclarationsAreNamedWithLineAndReason)
{
    write_file(folder / "bad.txt", "a,int,0,5\tmany\n"
                                   "b(label,double\n"
                                   "c,number\n"
                                   "\n"
                                   "d,double,,,,2*\n"
                                   "e,boolean,,sin(1)\n"
                                   "f,int,5,1\n"
                                   "(label),int\n");
    const program_result result = vldv({"options", "bad.txt", "--json", "--set", "a=9", "--set", "z=1", "--set", "a"});
    EXPECT_EQ(result.status, 1);
    for (const char* problem :
         {"bad.txt: line 1: the default \"many\" is no value of \"a\"", "line 2: the label does not end",
          "line 3: unknown type \"number\"", "line 5: display \"2*\": column 3: a value is missing",
          "line 6: evaluation \"sin(1)\": column 1: unknown function", "line 7: the minimum is above the maximum",
          "line 8: there is no name", "--set z=1: there is no variable", "--set a: name=value expected"})
        EXPECT_THAT(result.err, HasSubstr(problem));
    const json variables = json::parse(result.out)["variables"];
    ASSERT_EQ(variables.size(), 1u) << "the good ones are done";
    EXPECT_EQ(variables[0]["value"], "5");
    EXPECT_EQ(vldv({"options", "missing.txt"}).status, 1);
    EXPECT_EQ(vldv({"options"}).status, 2);
}

TEST_F(ProgramTest, HostileDeclarationsAreNamedAndTheRestIsDone)
{
    using namespace std::string_literals;
    write_file(folder / "hostile.txt", "\xef\xbb\xbf"
                                       "first(First),int\t3\n"
                                       "big(Big),array,4294967295,4294967295\n"
                                       "large(Large),array,3000000000,1\n"
                                       "zero(Ze\0ro),int\n"
                                       "a b(Blank),int\n"
                                       "gr\xc3\xb6\xc3\x9f,int\n"
                                       "last,array,2,2\n"s);
    const program_result result = vldv({"options", "hostile.txt", "--json"});
    EXPECT_EQ(result.status, 1);
    for (const char* problem :
         {"line 2: the array is larger than 64 MiB", "line 3: the array is larger than 64 MiB", "line 4: a zero byte",
          "line 5: the name \"a b\" holds more than letters, digits, \"_\" and \".\"", "line 6: the name \"gr"})
        EXPECT_THAT(result.err, HasSubstr(problem));
    ASSERT_TRUE(json::accept(result.out)) << result.out;
    const json variables = json::parse(result.out)["variables"];
    ASSERT_EQ(variables.size(), 2u);
    expect_fields(variables[0], {{"name", "first"}, {"value", "3"}});
    EXPECT_EQ(variables[1]["value"], "00000000");
}

TEST_F(ProgramTest, ATableComesFromStandardInput)
{
    write_file(folder / "t.txt", "a(A),int\t7\n");
    const program_result piped = run_vldv(folder.path, {"options", "-"}, {}, folder / "t.txt");
    EXPECT_EQ(piped.status, 0) << piped.err;
    EXPECT_EQ(piped.out, vldv({"options", "t.txt"}).out);
}

TEST_F(ProgramTest, WrongCallsNameTheOptionAndTheNearestOne)
{
    const struct {
        std::vector<std::string> call;
        const char* told;
    } cases[] = {
        {{"stats", "--jsn", "x"}, "vldv stats has no option --jsn; the nearest is --json\nRun vldv stats --help"},
        {{"histogram", "--bar=7", "x"}, "vldv histogram has no option --bar; the nearest is --bars\n"},
        {{"stats", "--unheard-of", "x"}, "vldv stats has no option --unheard-of\n"},
        {{"stats"}, "vldv stats needs a file or more\n"},
        {{"isoline", "--at", "1,1"}, "vldv isoline needs a file\n"},
        {{"isoline", "a", "b", "--at", "1,1"}, "vldv isoline takes no further word: \"b\"\n"},
        {{"render", "x"}, "vldv render needs --output\n"},
        {{"histogram", "x", "--bars"}, "vldv histogram: --bars needs a value\n"},
        {{"stats", "x", "--csv"}, "vldv stats: --csv needs a value\n"},
        {{"stats", "x", "--csv", "--json"}, "vldv stats: --csv: needs a value before --json\n"},
        {{"render", "x", "-o", "--image", "0"}, "vldv render: --output: needs a value before --image\n"},

        {{"stats", "x", "--sub", "0", "--sub", "1"}, "vldv stats: --sub may be given once only\n"},
        {{"fourier", "x", "--zero-inner", "--scale", "2"},
         "vldv fourier takes one of --zero-inner, --zero-outer, --scale, not several\n"},
        {{"fourier", "x"}, "vldv fourier: -o, --spectrum or --peaks is needed, or several of them\n"},
        {{"curve", "x", "--op", "trend", "--mode", "max"},
         "vldv curve: --mode: expected power or magnitude, not \"max\"\n"},
        {{}, "vldv needs a sub-command\nRun vldv --help"},
    };
    for (const auto& [call, told] : cases) {
        const program_result result = vldv(call);
        EXPECT_EQ(result.status, 2) << told;
        EXPECT_TRUE(result.err.starts_with(told)) << result.err << "instead of\n" << told;
    }
}

TEST_F(ProgramTest, ResultsGoToTheHomeFolderAndToStandardOutputByName)
{
    write_file(folder / "m.txt", smallMatrix);
    const std::string home = std::getenv("HOME") ? std::getenv("HOME") : "";
    std::filesystem::create_directories(folder / "home");
    setenv("HOME", (folder / "home").c_str(), 1);
    const program_result converted = vldv({"convert", "m.txt", "--to=~/c"});
    const program_result table = vldv({"stats", "m.txt", "--csv=~/t.csv"});
    setenv("HOME", home.c_str(), 1);
    EXPECT_EQ(converted.status, 0) << converted.err;
    EXPECT_TRUE(std::filesystem::exists(folder / "home/c/m.txt.spm"));
    EXPECT_FALSE(std::filesystem::exists(folder / "~"));
    EXPECT_EQ(table.status, 0) << table.err;
    EXPECT_EQ(file_content(folder / "home/t.csv"), vldv({"stats", "m.txt", "--csv", "-"}).out);
    EXPECT_EQ(vldv({"stats", "m.txt", "--csv", "/dev/stdout"}).out, file_content(folder / "home/t.csv"));
    EXPECT_EQ(vldv({"stats", "m.txt", "--json", "--csv=/dev/stdout"}).status, 2) << "two texts on one output";
}

} // namespace
