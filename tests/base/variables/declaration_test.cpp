#include "base/variables/declaration.h"

#include "base/SPMDataStream.h"

#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

struct parsed_line {
    const char* text;
    SPMVarType type;
    const char* name;
    const char* label;
    double minimum, maximum, step;
    const char* options;
};

class DeclarationLine : public testing::TestWithParam<parsed_line> {};

TEST_P(DeclarationLine, IsTakenApart)
{
    const parsed_line& expected = GetParam();
    const base::declaration found = base::parse_declaration(expected.text);
    EXPECT_EQ(found.type, expected.type);
    EXPECT_EQ(found.name, expected.name);
    EXPECT_EQ(found.label, expected.label);
    EXPECT_EQ(found.minimum, expected.minimum);
    EXPECT_EQ(found.maximum, expected.maximum);
    EXPECT_EQ(found.step, expected.step);
    EXPECT_EQ(found.options, expected.options);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, DeclarationLine,
    testing::Values(
        parsed_line{"ZScale(Z Scale),double,0.01,1.0", SPM_VAR_DOUBLE, "ZScale", "Z Scale", 0.01, 1.0, 0, ""},
        parsed_line{"Angle(Rotation),double", SPM_VAR_DOUBLE, "Angle", "Rotation", -infinity, infinity, 0, ""},
        parsed_line{"light.distance(Light Distance),double,0.0,5.0,,5.0-##", SPM_VAR_DOUBLE, "light.distance",
                    "Light Distance", 0, 5, 0, "5.0-##"},
        parsed_line{"scale_x(Left margin, %),double,0.0,1.0,,100*##,min(1-#scale_width,##)", SPM_VAR_DOUBLE, "scale_x",
                    "Left margin, %", 0, 1, 0, "100*##,min(1-#scale_width,##)"},
        parsed_line{"brush_radius(Mask brush radius),int,0,,##*2+1", SPM_VAR_INT, "brush_radius", "Mask brush radius",
                    0, infinity, 0, "##*2+1"},
        parsed_line{"ShowMarks(Show Marks), boolean", SPM_VAR_BOOLEAN, "ShowMarks", "Show Marks", -infinity, infinity,
                    0, ""},
        parsed_line{"ShowZScale,boolean,,#ShowZScaleOpt", SPM_VAR_BOOLEAN, "ShowZScale", "", -infinity, infinity, 0,
                    ",#ShowZScaleOpt"},
        parsed_line{"path(Target Path),string,filepath(\"AVI Files (*.avi)|*.avi\",1)", SPM_VAR_STRING, "path",
                    "Target Path", -infinity, infinity, 0, "filepath(\"AVI Files (*.avi)|*.avi\",1)"},
        parsed_line{"light.ambient(Ambient),int,0,(1 << 25)-1,hex(##)", SPM_VAR_INT, "light.ambient", "Ambient", 0,
                    33554431, 0, "hex(##)"},
        parsed_line{"half,double,-min(2,3),1/4,2^-3,,##", SPM_VAR_DOUBLE, "half", "", -2, 0.25, 0.125, ",##"},
        parsed_line{"free,int,#unknown,,,min(##,#a)", SPM_VAR_INT, "free", "", 0, infinity, 0, ",min(##,#a)"},
        parsed_line{"a(b(c)d),int,-5", SPM_VAR_INT, "a", "b(c)d", -5, infinity, 0, ""},
        parsed_line{"x(never closed,double", SPM_VAR_NONE, "x", "", -infinity, infinity, 0, ""},
        parsed_line{"x(label),quadruple", SPM_VAR_NONE, "x", "label", -infinity, infinity, 0, ""},
        parsed_line{"x(label),double,low,1", SPM_VAR_NONE, "x", "label", -infinity, infinity, 0, ""},
        parsed_line{"", SPM_VAR_NONE, "", "", -infinity, infinity, 0, ""}));

TEST(Declaration, ALabelWithoutATypeIsAHeading)
{
    for (const char* text : {"marks(Marks)", " ZScale(Y Scale)  ", "light.scene(Light, scene (all))"}) {
        std::string problem;
        const base::declaration heading = base::parse_declaration(text, &problem);
        EXPECT_EQ(problem, "") << text;
        EXPECT_EQ(heading.type, SPM_VAR_NONE);
        EXPECT_EQ(base::parse_declaration(base::write_declaration(heading)), heading) << text;
        SPMVar variable;
        variable.Init(text);
        EXPECT_TRUE(base::is_heading(variable)) << text;
        EXPECT_FALSE(variable.from_string("1")) << "it has no value";
        EXPECT_EQ(std::string(variable.description().c_str()), base::write_declaration(heading));
    }
    const auto under = [](const char* heading, const char* name) {
        SPMVar above, below;
        above.Init(heading);
        below.Init((std::string(name) + "(Label),int").c_str());
        return base::stands_under(above, below);
    };
    EXPECT_TRUE(under("marks(Marks)", "marks_mode"));
    EXPECT_TRUE(under("ZScale(Y Scale)", "ZScale.Scaling.fixed.value"));
    EXPECT_FALSE(under("ZScale(Y Scale)", "ZScale"));
    EXPECT_FALSE(under("marks(Marks)", "marksman"));
    EXPECT_FALSE(under("marks(Marks)", "Values"));
}

TEST(Declaration, SaysWhyItWasNotUnderstood)
{
    const std::pair<const char*, const char*> cases[] = {
        {"x(never closed,double", "the label does not end with \")\""},
        {"x", "no comma before the type"},
        {"x,quadruple", "unknown type \"quadruple\""},
        {"x,int,0,%d", "unreadable maximum \"%d\", column 1: a value is missing"},
        {"x,double,0,1,ln(-1)", "unreadable step \"ln(-1)\""},
        {"x,array,many", "unreadable length \"many\""},
        {"x,array,1,big", "unreadable element \"big\""},
    };
    for (const auto& [text, reason] : cases) {
        std::string problem;
        EXPECT_EQ(base::parse_declaration(text, &problem).type, SPM_VAR_NONE) << text;
        EXPECT_EQ(problem, reason);
    }
}

struct item_line {
    const char* text;
    std::vector<base::declared_item> items;
    const char* options;
};

TEST(Declaration, ReadsItemsKeysAndLabels)
{
    const std::vector<item_line> lines = {
        {"m,enum,sbs(Side by Side),dblmon(Two monitors)", {{"sbs", "Side by Side"}, {"dblmon", "Two monitors"}}, ""},
        {"s,enum,def(As main),Small", {{"def", "As main"}, {"Small", "Small"}}, ""},
        {"z(Axis Z),enum,0", {{"0", "0"}}, ""},
        {"p,enum,Top left,Bottolm right", {{"Top left", "Top left"}, {"Bottolm right", "Bottolm right"}}, ""},
        {"AxisX(Axis X),enum", {}, ""},
        {"c,enum,None,call_function(\"vldv:GetCodecs*Free\"),,",
         {{"None", "None"}, {"call_function(\"vldv:GetCodecs*Free\")", "call_function(\"vldv:GetCodecs*Free\")"}},
         ","},
        {"e,enum,A,,#other", {{"A", "A"}}, ",#other"},
    };
    for (const item_line& line : lines) {
        const base::declaration found = base::parse_declaration(line.text);
        EXPECT_EQ(found.type, SPM_VAR_ENUM) << line.text;
        EXPECT_EQ(found.items, line.items) << line.text;
        EXPECT_EQ(found.options, line.options) << line.text;
    }
}

/// Texts out of the characters that the grammar uses itself.
std::string awkward_text(std::mt19937& random)
{
    static const std::string alphabet = "ab,()\"\\ #%;&<\n\t7é\x7f";
    std::string text;
    for (auto length = random() % 9; length > 0; --length) text += alphabet[random() % alphabet.size()];
    return text;
}

TEST(Declaration, WritingAndParsingAreInverse)
{
    std::mt19937 random(7);
    const double limits[] = {-infinity, -1.5, 0.0, 0.1, 1e300, infinity};
    for (int round = 0; round < 20000; ++round) {
        base::declaration source;
        source.name = awkward_text(random);
        source.label = awkward_text(random);
        source.type = static_cast<SPMVarType>(1 + random() % 6);
        source.options = awkward_text(random);
        if (source.type == SPM_VAR_DOUBLE || source.type == SPM_VAR_INT) {
            source.minimum = limits[random() % 6];
            source.maximum = limits[random() % 6];
            if (source.type == SPM_VAR_DOUBLE) source.step = random() % 2 ? 0.25 : 0.0;
        }
        if (source.type == SPM_VAR_ENUM)
            for (auto i = random() % 4; i > 0; --i)
                source.items.push_back({awkward_text(random), awkward_text(random)});
        if (source.type == SPM_VAR_ARRAY) {
            source.length = static_cast<unsigned>(random() % 1000);
            source.elementSize = static_cast<unsigned>(1 + random() % 8);
            source.elementType = static_cast<SPMVarArrayType>(random() % 11);
            if (random() % 2) source.shape = "subimage " + base::encode_word(awkward_text(random));
        }
        const std::string text = base::write_declaration(source);
        ASSERT_EQ(base::parse_declaration(text), source) << text;
    }
}

TEST(Declaration, AnyTextIsAccepted)
{
    std::mt19937 random(11);
    for (int round = 0; round < 20000; ++round) {
        std::string text = "n";
        const char* const pieces[] = {",", "enum", "array", "int", "(", ")", "\\\"", "\"", "1", " ", "void", "\\", "x"};
        for (auto i = random() % 12; i > 0; --i) text += pieces[random() % std::size(pieces)];
        const base::declaration once = base::parse_declaration(text);
        if (once.type != SPM_VAR_NONE) {
            ASSERT_EQ(base::parse_declaration(base::write_declaration(once)), once) << text;
        }
    }
}

} // namespace
