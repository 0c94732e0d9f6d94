#include "base/SPMVarList.h"
#include "base/variables/option_functions.h"
#include "support/allocation_count.h"

#include <cstdlib>
#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <stdexcept>

namespace {

SPMVar declared(const char* declaration, const char* value = nullptr)
{
    SPMVar variable;
    variable.Init(declaration);
    EXPECT_TRUE(!value || variable.from_string(value)) << declaration;
    return variable;
}

SPMVarList list_of(std::initializer_list<std::pair<const char*, const char*>> rows)
{
    std::vector<SPMVar> variables;
    for (const auto& [declaration, value] : rows) variables.push_back(declared(declaration, value));
    SPMVarList list;
    list.set_variables(variables.data(), static_cast<unsigned>(variables.size()));
    return list;
}

/// Writes down who is told, and does what the test asks for.
struct recording_handler : SPMVarListHandler {
    void OnFireVariableChange(int index, const SPMVarList* list) override
    {
        told.push_back(list->get_var(static_cast<unsigned>(index)).get_name());
        if (onChange) onChange(told.back());
    }
    std::vector<std::string> told;
    std::function<void(const std::string&)> onChange;
};

TEST(OptionList, HiddenVariablesFollowTheOnesTheyRead)
{
    SPMVarList list =
        list_of({{"ShowLegend(Show Legend),boolean", "true"},
                 {"highlight,boolean", "false"},
                 {"ShowZScaleOpt(Show Z Scale),boolean", "true"},
                 {"ShowZScale,boolean,,if(#ShowLegend,if(#highlight,false,#ShowZScaleOpt),false)", "false"},
                 {"RightMargin,int,0,,,if(#ShowZScale,65,0)+#RightMarginOpt", "0"},
                 {"RightMarginOpt(Right Margin),int,0", "5"},
                 {"ShowZScaleEmpty,boolean,,", "true"}});
    EXPECT_TRUE(list["ShowZScale"]) << "settled when the list is set up";
    EXPECT_EQ(int(list["RightMargin"]), 70);
    recording_handler handler;
    list.AddFireVariableChangeHandler(&handler);
    list.set_var("highlight", "true");
    EXPECT_FALSE(list["ShowZScale"]);
    EXPECT_EQ(int(list["RightMargin"]), 5);
    EXPECT_EQ(handler.told, (std::vector<std::string>{"highlight", "ShowZScale", "RightMargin"}));
    handler.told.clear();
    list.set_var("ShowLegend", "false");
    EXPECT_EQ(handler.told, std::vector<std::string>{"ShowLegend"}) << "nothing else moves";
    EXPECT_TRUE(list["ShowZScaleEmpty"]);

    SPMVar margin = list["RightMargin"];
    margin.set_options(",#RightMarginOpt*2");
    margin.update_timestamp();
    list.set_var(margin);
    EXPECT_EQ(int(list["RightMargin"]), 10) << "expressions attached afterwards";
    list.set_var(declared("later,int,,,,#RightMarginOpt"));
    EXPECT_EQ(int(list["later"]), 5);
}

TEST(OptionList, KeepsAValueWithinWhatAnotherLeavesFree)
{
    SPMVarList list = list_of({{"scale_width(Width, %),double,0.0,1.0,,100.0*##", "0.02"},
                               {"scale_x(Left margin, %),double,0.0,1.0,,100*##,min(1-#scale_width,##)", "0.96"},
                               {"broken,int,,,,min(", "3"},
                               {"infinite,double,,,,,1/0", "4"},
                               {"quarter,double,0,1,0.25,,0.4", nullptr},
                               {"mode,enum,a,b,7(seven),,#pick", "a"},
                               {"pick,int", "7"}});
    EXPECT_EQ(double(list["scale_x"]), 0.96);
    list.set_var("scale_width", "0.5");
    EXPECT_EQ(double(list["scale_x"]), 0.5);
    EXPECT_EQ(int(list["broken"]), 3);
    EXPECT_EQ(double(list["infinite"]), 4.0);
    EXPECT_EQ(double(list["quarter"]), 0.5) << "limits and step apply to what is evaluated";
    EXPECT_STREQ(list["mode"].as_string().c_str(), "7");
    list.set_var("pick", "1");
    EXPECT_STREQ(list["mode"].as_string().c_str(), "b");
    list.set_var("pick", "5");
    EXPECT_STREQ(list["mode"].as_string().c_str(), "b") << "no item has that number";
}

TEST(OptionList, CyclesEndAfterAsManyRoundsAsVariables)
{
    SPMVarList list = list_of({{"a,int,,,,#b+1", nullptr}, {"b,int,,,,#a+1", nullptr}, {"c,int", "0"}});
    // Three rounds: a, b = 1, 2; 3, 4; 5, 6.
    EXPECT_EQ(int(list["a"]), 5);
    EXPECT_EQ(int(list["b"]), 6);
    // A chain against the order of declaration needs one round a link.
    SPMVarList chain =
        list_of({{"a,int,,,,#b", nullptr}, {"b,int,,,,#c", nullptr}, {"c,int,,,,#d", nullptr}, {"d,int", "9"}});
    EXPECT_EQ(int(chain["a"]), 9);
}

TEST(OptionList, OnlyWhatDiffersAfterSettlingIsTold)
{
    SPMVarList list = list_of({{"a,int", "0"},
                               {"y,int,,,,#a", nullptr},
                               {"x,int,,,,#y-#z", nullptr}, // moves to 1 before z follows, then back to 0
                               {"text,string,,if(#x,\"apart\",\"equal\")", nullptr},
                               {"z,int,,,,#a", nullptr}});
    recording_handler handler;
    list.AddFireVariableChangeHandler(&handler);
    const std::uint64_t before = list["x"].timestamp;
    list.set_var("a", "1");
    EXPECT_EQ(handler.told, (std::vector<std::string>{"a", "y", "z"}));
    EXPECT_EQ(list["x"].timestamp, before);
    EXPECT_STREQ(list["text"].as_string().c_str(), "equal");
}

/// TextVertSpace is bound by a margin that follows its own option, as in views of curves.
SPMVarList bound_list()
{
    return list_of({{"TextVertSpace(Text Vertical Space),int,20,,,min(##,#BottomMargin)", "20"},
                    {"BottomMargin,int,0,,,#BottomMarginOpt", "0"},
                    {"BottomMarginOpt(Bottom Margin),int,20", "45"},
                    {"other(Other),int", "0"}});
}

TEST(OptionList, ABatchSettlesOnceAndTellsOnce)
{
    SPMVarList list = bound_list();
    recording_handler handler;
    list.AddFireVariableChangeHandler(&handler);
    list.batch([&] {
        list.set_var("TextVertSpace", "60");
        list.set_var("other", "1");
        list.batch([&] { list.set_var("BottomMarginOpt", "50"); });
        list.set_var("BottomMarginOpt", "80");
        EXPECT_EQ(int(list["TextVertSpace"]), 60) << "not settled yet";
        EXPECT_EQ(int(list["BottomMargin"]), 45);
        EXPECT_TRUE(handler.told.empty());
    });
    EXPECT_EQ(int(list["TextVertSpace"]), 60) << "one by one it would be 45";
    EXPECT_EQ(int(list["BottomMargin"]), 80);
    EXPECT_EQ(handler.told, (std::vector<std::string>{"TextVertSpace", "BottomMargin", "BottomMarginOpt", "other"}));

    handler.told.clear();
    list.batch([&] { list.set_var(SPMVar(list["other"])); });
    EXPECT_TRUE(handler.told.empty()) << "the same stamp";
    EXPECT_THROW(list.batch([&] {
        list.set_var("BottomMarginOpt", "30");
        throw std::runtime_error("half way");
    }),
                 std::runtime_error);
    EXPECT_EQ(int(list["TextVertSpace"]), 30) << "what was changed until then holds";
    EXPECT_EQ(handler.told, (std::vector<std::string>{"TextVertSpace", "BottomMargin", "BottomMarginOpt"}));
}

TEST(OptionList, AShorterListForgetsTheChangesOfALongerOne)
{
    const SPMVar longer[] = {declared("a(A),int"), declared("b(B),int"), declared("c(C),int")};
    const SPMVar shorter[] = {declared("a(A),int"), declared("b(B),int,,,,#a+1")};
    SPMVarList list;
    list.set_variables(longer, 3);
    list.set_var("c", "5");
    list.set_variables(shorter, 2);
    recording_handler handler;
    list.AddFireVariableChangeHandler(&handler);
    list.set_var("a", "4");
    EXPECT_EQ(int(list["b"]), 5);
    EXPECT_EQ(handler.told, (std::vector<std::string>{"a", "b"}));
}

TEST(OptionList, AHandlersBatchIsToldAfterTheHandler)
{
    SPMVarList list = bound_list();
    recording_handler handler;
    list.AddFireVariableChangeHandler(&handler);
    handler.onChange = [&](const std::string& name) {
        if (name != "other") return;
        list.batch([&] {
            list.set_var("TextVertSpace", "70");
            list.set_var("BottomMarginOpt", "90");
        });
        EXPECT_EQ(handler.told.size(), 1u);
    };
    list.set_var("other", "2");
    EXPECT_EQ(handler.told, (std::vector<std::string>{"other", "TextVertSpace", "BottomMargin", "BottomMarginOpt"}));
    EXPECT_EQ(int(list["TextVertSpace"]), 70);
}

TEST(OptionList, AHandlerMayChangeTheListAgain)
{
    SPMVarList list = list_of({{"a,int", "0"}, {"b,int", "0"}, {"c,int,,,,#b*2", nullptr}});
    recording_handler handler;
    list.AddFireVariableChangeHandler(&handler);
    handler.onChange = [&](const std::string& name) {
        if (name != "a") return;
        list.set_var("b", "4");
        EXPECT_EQ(int(list["c"]), 8) << "settled at once";
    };
    list.set_var("a", "1");
    EXPECT_EQ(handler.told, (std::vector<std::string>{"a", "b", "c"}));

    handler.told.clear();
    handler.onChange = [&](const std::string& name) { list.set_var(name == "a" ? "b" : "a", "1"); };
    list.set_var("a", "2");
    EXPECT_EQ(handler.told.size(), 3000u) << "handlers that never end are stopped";

    recording_handler other;
    handler.told.clear();
    handler.onChange = [&](const std::string&) {
        list.RemoveFireVariableChangeHandler(&handler);
        list.AddFireVariableChangeHandler(&other);
    };
    list.set_var("a", "3");
    list.set_var("b", "3");
    EXPECT_EQ(handler.told, std::vector<std::string>{"a"});
    EXPECT_EQ(other.told, (std::vector<std::string>{"a", "b", "c"}));

    other.onChange = [&](const std::string&) {
        const SPMVar replacement = declared("z,int", "1");
        list.set_variables(&replacement, 1);
    };
    list.set_var("b", "5");
    EXPECT_EQ(list.get_size(), 1u) << "what was pending died with the old list";
}

TEST(OptionList, ShownValueIsEvaluatedAndDisplayed)
{
    SPMVarList list =
        list_of({{"free,double", "0.5"}, {"faces,string,strlistval(##,0),font_list(##)", "\"Mono\",\"Sans\""}});
    const auto shown = [&](const char* declaration, const char* value) {
        return std::string(list.evaluate_var(declared(declaration, value)).as_string().c_str());
    };
    EXPECT_EQ(shown("x(X),double,0,1,,100*##,min(#free,##)", "0.75"), "50")
        << "the limits do not apply to what is shown";
    EXPECT_EQ(shown("radius(R),int,0,100,##*2+1", "60"), "121");
    EXPECT_EQ(shown("color(C),int,0,(1<<25)-1,hex(##)", "0x008000"), "0x8000");
    EXPECT_EQ(shown("plain(P),int", "3"), "3");
    EXPECT_EQ(shown("odd(O),int,,,((", "3"), "3");
    EXPECT_STREQ(list.evaluate_var(list["faces"]).as_string().c_str(), "Mono");
    EXPECT_EQ(int(list.evaluate_var(declared("color,int,,,hex(##)", "255"))), 255)
        << "the text still reads as the number";
}

TEST(OptionList, SettlingNumbersAllocatesNothing)
{
    std::vector<SPMVar> variables;
    for (int i = 0; i < 60; ++i) {
        const std::string name = "option" + std::to_string(i), before = "option" + std::to_string(i ? i - 1 : 0);
        variables.push_back(
            declared((name + ",double,,,,,if(" + std::to_string(i) + "==0,##,#" + before + "+1)").c_str()));
    }
    SPMVarList list;
    list.set_variables(variables.data(), 60);
    list.set_var("option0", "1"); // brings the lists of work to their size
    const std::size_t before = allocation_count();
    list.set_var("option0", "2");
    EXPECT_EQ(allocation_count(), before);
    EXPECT_EQ(double(list["option59"]), 61.0);
}

int freed = 0;
char* copied(const char* text) { return strdup(text); }
void free_text(char* text)
{
    ++freed;
    std::free(text);
}
char* cameras() { return copied("(1:Cam (USB), left) , (2:x:y)"); }
char* codecs() { return copied("(x264: fast),(MJPEG)"); }
char* has_config(int codec) { return copied(codec == 2 ? "1" : "0"); }
char* difference(int a, int b) { return copied(std::to_string(a - b).c_str()); }
char* nothing() { return nullptr; }
const char* answer = "";
char* answered() { return copied(answer); }

class OptionFunctions : public testing::Test {
protected:
    OptionFunctions()
    {
        add("Free", reinterpret_cast<base::any_function>(free_text));
        add("Cameras", reinterpret_cast<base::any_function>(cameras));
        add("Codecs", reinterpret_cast<base::any_function>(codecs));
        add("HasConfig", reinterpret_cast<base::any_function>(has_config));
        add("Difference", reinterpret_cast<base::any_function>(difference));
        add("Nothing", reinterpret_cast<base::any_function>(nothing));
        freed = 0;
    }
    ~OptionFunctions() override
    {
        for (const std::string& name : names) base::register_option_function("vldv", name, nullptr);
    }
    void add(const char* name, base::any_function function)
    {
        base::register_option_function("vldv", name, function);
        names.emplace_back(name);
    }
    std::vector<std::string> names;
};

TEST_F(OptionFunctions, SupplyItemsAloneOrBehindFixedOnes)
{
    const SPMVar camera = declared("camera(Source),enum,call_function(\"vldv:Cameras*Free\"),,");
    ASSERT_EQ(camera.get_enum_size(), 2u);
    EXPECT_STREQ(camera.get_enum_key(0), "1");
    EXPECT_STREQ(camera.get_enum_label(0), "Cam (USB), left");
    EXPECT_STREQ(camera.get_enum_label(1), "x:y");
    const SPMVar codec = declared("codec(Codec),enum,None,call_function(\"vldv:Codecs*Free\"),,", "MJPEG");
    ASSERT_EQ(codec.get_enum_size(), 3u);
    EXPECT_EQ(int(codec), 2);
    EXPECT_STREQ(codec.get_enum_key(1), "x264: fast");
    EXPECT_EQ(freed, 2) << "each text is given back";
    EXPECT_STREQ(codec.description().c_str(), "codec(Codec),enum,None,call_function(\"vldv:Codecs*Free\"),,")
        << "the declaration keeps the function, not what it said today";
    EXPECT_EQ(declared("gone,enum,call_function(\"vldv:Gone*Free\"),,").get_enum_size(), 0u);
}

TEST_F(OptionFunctions, EvaluateWithNumbersAndAlwaysFree)
{
    SPMVarList list = list_of({{"codec,enum,None,call_function(\"vldv:Codecs*Free\"),,", "MJPEG"},
                               {"codec_config,boolean,,call_function(#codec,\"vldv:HasConfig@d*Free\")", "false"},
                               {"difference,int,,,,call_function(7,2.9,\"vldv:Difference@d*Free\")", nullptr},
                               {"kept,string,,call_function(\"vldv:Codecs*Missing\")", "kept"},
                               {"other,string,,call_function(\"libc:getenv*Free\")", "kept"},
                               {"null,string,,call_function(\"vldv:Nothing*Free\")", "text"}});
    EXPECT_TRUE(list["codec_config"]);
    EXPECT_EQ(int(list["difference"]), 5);
    EXPECT_STREQ(list["kept"].as_string().c_str(), "kept") << "a text that could not be freed is not asked for";
    EXPECT_STREQ(list["other"].as_string().c_str(), "kept");
    EXPECT_STREQ(list["null"].as_string().c_str(), "");
    EXPECT_EQ(freed, 3) << "items, evaluation and difference; a null text needs no release";
    list.set_var("codec", "None");
    EXPECT_FALSE(list["codec_config"]);
}

TEST_F(OptionFunctions, AreAskedAgainAfterEachChange)
{
    answer = "true";
    SPMVarList list = list_of({{"other,int", "0"}, {"has,boolean,,call_function(\"vldv:Answered*Free\")", nullptr}});
    EXPECT_FALSE(list["has"]) << "not registered yet";
    add("Answered", reinterpret_cast<base::any_function>(answered));
    list.set_var("other", "1");
    EXPECT_TRUE(list["has"]);
    answer = "false";
    list.set_var("other", "2");
    EXPECT_FALSE(list["has"]);
}

} // namespace
