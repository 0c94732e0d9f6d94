#include "base/variables/expression.h"

#include "base/SPMVarList.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

SPMVarList sample_list()
{
    SPMVarList list;
    for (const auto& [declaration, value] : std::initializer_list<std::pair<const char*, const char*>>{
             {"BottomMargin,int", "7"},
             {"stereo.focal_length,double", "3"},
             {"surface,enum,Wireframe,Color Map,Single Color", "Color Map"},
             {"size,enum,8,16(big),32", "16"},
             {"faces,string", "\"Arial\",\"Say \\\"hi\\\", B\",plain"},
             {"word,string", "Small"},
             {"on,boolean", "true"}}) {
        SPMVar variable;
        variable.Init(declaration);
        EXPECT_TRUE(variable.from_string(value)) << declaration;
        list.set_var(variable);
    }
    return list;
}

/// The expression's value with "##" being `own`, as text.
std::string evaluated(const std::string& text, const base::expression_value& own)
{
    static const SPMVarList list = sample_list();
    const auto rule = base::expression::compile(text);
    if (!rule) return "broken";
    std::vector<unsigned> positions;
    for (const std::string& name : rule->names()) positions.push_back(list.get_var_i(name));
    const auto value = rule->evaluate({own, list.all(), positions});
    return value ? value->asText() : "no value";
}

struct number_case {
    const char* text;
    double own, result;
};

TEST(Expression, ReckonsWithThePrioritiesOfC)
{
    const double e = std::exp(1.0);
    const number_case cases[] = {
        {"5.0-##", 1.5, 3.5},
        {"100*##", 0.25, 25.0},
        {"min(1-#nothing,##)", 3.0, 1.0},
        {"#stereo.focal_length/30.0", 0.0, 0.1},
        {"-ln(##+1.0)", e - 1.0, -1.0},
        {"##*2+1", 4.0, 9.0},
        {"min(##,#BottomMargin)", 20.0, 7.0},
        {"if(#surface==0,0,if(#surface==2,1,##))", 5.0, 5.0},
        {"if(#on,if(#surface,false,true),8)", 0.0, 0.0},
        {"if(0,0,#RightMarginOpt+if(true,65,0)+if(#a || #on,#BottomMargin,0))", 0.0, 72.0},
        {"(1 << 25)-1", 0.0, 33554431.0},
        {"1<<2+1", 0.0, 8.0},          // + before <<
        {"1.0-##^0.2", 32.0, -1.0},    // 32^0.2 = 2
        {"-2^2", 0.0, -4.0},           // power before the sign
        {"2*3^2", 0.0, 18.0},          // and before *
        {"2^3^2", 0.0, 512.0},         // from the right
        {"2^-1", 0.0, 0.5},            //
        {"10-4-3", 0.0, 3.0},          // from the left
        {"7%4+20/5/2", 0.0, 5.0},      //
        {"17>>2", 0.0, 4.0},           //
        {"-1>>1", 0.0, -1.0},          // rounds down, as on two's complement
        {"2+3==5", 0.0, 1.0},          //
        {"1<2==1", 0.0, 1.0},          // < before ==
        {"0&&0||1", 0.0, 1.0},         // && before ||
        {"1||1&&0", 0.0, 1.0},         //
        {"3!=3", 0.0, 0.0},            //
        {"!0+!5", 0.0, 1.0},           //
        {"2<=2", 0.0, 1.0},            //
        {"3>=4", 0.0, 0.0},            //
        {"- -+3", 0.0, 3.0},           //
        {"1.5e2+.5+0x10", 0.0, 166.5}, //
        {"max(exp(0),0.5)", 0.0, 1.0}, //
        {"#size*2", 0.0, 32.0},        // an item's number is its key when that is one
        {"#surface", 0.0, 1.0},        // else its place
        {"#word+1", 0.0, 1.0},         // a text that is no number
        {"#word==\"Small\"", 0.0, 1.0},
        {"#word!=\"Large\"", 0.0, 1.0},
    };
    for (const number_case& one : cases) {
        const auto rule = base::expression::compile(one.text);
        ASSERT_TRUE(rule) << one.text;
        const std::string text = evaluated(one.text, base::expression_value::of(one.own));
        EXPECT_NEAR(std::stod(text), one.result, 1e-12) << one.text;
    }
}

TEST(Expression, YieldsTexts)
{
    const auto own = base::expression_value::of(std::string("/tmp/a.avi"));
    const std::pair<const char*, const char*> cases[] = {
        {"hex(255)", "0xff"},
        {"hex(-16.9)", "-0x10"},
        {"filepath(\"AVI Files (*.avi)|*.avi\",1)", "/tmp/a.avi"},
        {"strlistval(#faces,0)", "Arial"},
        {"strlistval(#faces,1)", "Say \"hi\", B"},
        {"strlistval(#faces,2)", "plain"},
        {"strlistval(#faces,3)", ""},
        {"strlistval(#faces,-1)", ""},
        {"strlistval(##,0)", "/tmp/a.avi"},
        {"if(#on,\"yes\",\"no\")", "yes"},
        {"font_list(#faces)", "\"Arial\""}, // no machine behind it: the chosen one
        {"call_function(\"vldv:Unknown*Free\")", "no value"},
    };
    for (const auto& [text, result] : cases) EXPECT_EQ(evaluated(text, own), result) << text;
}

TEST(Expression, BrokenTextIsRefusedWithColumnAndReason)
{
    const std::pair<const char*, const char*> cases[] = {
        {"", "column 1: empty expression"},
        {"1+", "column 3: a value is missing"},
        {"(1", "column 3: \")\" expected"},
        {"min(1)", "column 7: wrong number of arguments of \"min\""},
        {"sin(1)", "column 1: unknown function \"sin\""},
        {"1 2", "column 3: unexpected \"2\""},
        {"1 $ 2", "column 3: cannot read \"$\""},
        {"\"open", "column 1: cannot read \"\"open\""},
        {"#", "column 1: cannot read \"\""},
        {"%d-##", "column 1: a value is missing"},
    };
    for (const auto& [text, reason] : cases) {
        std::string problem;
        EXPECT_FALSE(base::expression::compile(text, &problem)) << text;
        EXPECT_EQ(problem, reason);
    }
    EXPECT_FALSE(base::expression::compile(std::string(100000, '('))) << "nested too deeply for the stack";
    EXPECT_FALSE(base::expression::compile(std::string(100000, '-') + "1"));
    std::string chain = "1";
    for (int i = 0; i < 100000; ++i) chain += "^1";
    EXPECT_FALSE(base::expression::compile(chain));
}

} // namespace
