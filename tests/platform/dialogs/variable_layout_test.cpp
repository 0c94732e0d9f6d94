#include "platform/dialogs/variable_layout.h"

#include "support/interface_file.h"

#include <gtest/gtest.h>
#include <sstream>

namespace {

using kind = platform::layout_button::kind;

TEST(VariableLayout, BuiltInOnesHoldTheirGridsAndButtons)
{
    const auto save = platform::load_variable_layout("layout-test-missing.xml", platform::saveFilesLayout);
    EXPECT_EQ(save.title, "Select files to save");
    EXPECT_EQ(save.grid, CRect({2, 2}, CSize{161, 80}));
    EXPECT_EQ(save.nameHeading, "File");
    EXPECT_EQ(save.valueHeading, "Save");
    ASSERT_EQ(save.buttons.size(), 4u);
    EXPECT_EQ(save.buttons[0].id, "select_all");
    EXPECT_EQ(save.buttons[0].name, "Select &all");
    EXPECT_EQ(save.buttons[0].place, CRect({167, 35}, CSize{50, 14}));
    EXPECT_EQ(save.buttons[1].id, "deselect_all");
    EXPECT_EQ(save.buttons[2].what, kind::ok);
    EXPECT_EQ(save.buttons[2].name, "Exit");
    EXPECT_EQ(save.buttons[3].what, kind::cancel);
    EXPECT_EQ(save.buttons[3].name, "");

    const auto options = platform::load_variable_layout("layout-test-missing.xml", platform::optionsLayout);
    EXPECT_EQ(options.grid, CRect({2, 2}, CSize{206, 100}));
    ASSERT_EQ(options.buttons.size(), 5u);
    EXPECT_EQ(options.buttons[2].id, "default");
    EXPECT_EQ(options.buttons[2].place, CRect({166, 104}, CSize{40, 12}));
}

TEST(VariableLayout, RefusesWhatIsNoLayout)
{
    const std::pair<const char*, const char*> cases[] = {
        {"<html/>", "the root is no \"varlist\""},
        {"<varlist/>", "there is no \"defaultvarlist\""},
        {"<varlist><defaultvarlist left=\"1\" top=\"2\" width=\"x\" height=\"4\"/></varlist>", "defaultvarlist: width"},
        {"<varlist><defaultvarlist left=\"1\" top=\"2\" height=\"4\"/></varlist>", "defaultvarlist: width"},
        {"<varlist><defaultvarlist left=\"1\" top=\"99999999999\" width=\"1\" height=\"4\"/></varlist>",
         "defaultvarlist: top"},
        {"<varlist><button left=\"1\" top=\"2\" width=\"3\" height=\"4\" type=\"help\"/></varlist>",
         "button: the type"},
        {"<varlist><userbutton left=\"1\" top=\"2\" width=\"3\" height=\"4\" name=\"x\"/></varlist>",
         "userbutton: the id"},
        {"<varlist><defaultvarlist", ""},
        {"", ""},
    };
    for (const auto& [text, reason] : cases) {
        std::istringstream in(text);
        std::string problem;
        EXPECT_FALSE(platform::parse_variable_layout(in, &problem)) << text;
        EXPECT_NE(problem.find(reason), std::string::npos) << problem;
        EXPECT_FALSE(problem.empty());
    }
}

TEST(VariableLayout, TheLanguagesFileComesFirstAndBrokenOnesFallBack)
{
    const std::string grid = "<defaultvarlist left=\"1\" top=\"2\" width=\"3\" height=\"4\"/></varlist>";
    const interface_file plain("layout-test.xml", "<varlist name=\"plain\">" + grid);
    const scoped_language language("layout-test-language");
    EXPECT_EQ(platform::load_variable_layout("layout-test.xml", platform::optionsLayout).title, "plain");
    {
        const interface_file own("layout-test.xml", "<varlist name=\"eigen\">" + grid, true);
        EXPECT_EQ(platform::load_variable_layout("layout-test.xml", platform::optionsLayout).title, "eigen");
    }
    const interface_file broken("layout-test-broken.xml", "<varlist name=\"broken\">");
    EXPECT_EQ(platform::load_variable_layout("layout-test-broken.xml", platform::saveFilesLayout).title,
              "Select files to save");
}

} // namespace
