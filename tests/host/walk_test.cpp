// Walks all that the program declares: whoever adds a row of a menu, a toolbar or a table of options learns here what
// it still lacks.
#include "resources/commands.h"
#include "resources/frame_templates.h"
#include "resources/menus.h"
#include "view/DCView.h"
#include "view/panes/TextView.h"
#include "workstation_fixture.h"

#include <set>

namespace {

class Walk : public WorkstationTest {
protected:
    /// The windows that there are, each in a frame: a surface, its parameters, its texts.
    void openAll()
    {
        bool created = false;
        GetTextView(&created, open("a.spm"));
        app.setActiveFrame(app.frames().front().get());
        runCommand(commands::parameters);
    }
    bool isAnswered(unsigned id)
    {
        CCmdUI ui{.m_nID = id};
        return window.route(id, &ui);
    }
    /// Commands of the menu and the toolbar of a number.
    static std::set<unsigned> commandsOf(unsigned number)
    {
        std::set<unsigned> ids;
        for (const menu_row& row : menu_resource(number))
            if (row.kind == menu_kind::command) ids.insert(row.id);
        for (const unsigned id : toolbar_resource(number))
            if (id != 0 && id != commands::paletteStrip) ids.insert(id);
        return ids;
    }
};

TEST_F(Walk, EveryCommandOfAMenuIsAnsweredInSomeWindow)
{
    // What these do is not there yet, and menus leave them out.
    const std::set<unsigned> awaited{commands::exportView, commands::enumFeatures, commands::findSteps,
                                     commands::macros};
    openAll();
    std::set<unsigned> walked, unanswered;
    for (const unsigned number : {mainMenu, scalePopup, cursorModePopup, fileOperationsPopup})
        unanswered.merge(commandsOf(number));
    for (const auto& frame : app.frames()) {
        walked.insert(frame->menuId());
        unanswered.merge(commandsOf(frame->menuId()));
    }
    EXPECT_EQ(walked, (std::set<unsigned>{surfaceFrame, parametersFrame, textFrame}));
    for (const auto& frame : app.frames()) {
        app.setActiveFrame(frame.get());
        settle();
        std::erase_if(unanswered, [this](unsigned id) { return isAnswered(id); });
    }
    EXPECT_EQ(unanswered, awaited);
}

TEST_F(Walk, EveryOptionCanBeSetAndDrawn)
{
    openAll();
    unsigned options = 0;
    for (const auto& frame : app.frames()) {
        auto* const shown = dynamic_cast<CDCView*>(frame->GetActiveView());
        for (unsigned i = 0; shown && i < shown->options.get_size(); ++i, ++options) {
            const SPMVar before = shown->options.get_var(i);
            const std::string name = before.name, text = before.as_string().c_str();
            ASSERT_NE(before.type, SPM_VAR_NONE) << name;
            if (before.type == SPM_VAR_BOOLEAN) {
                EXPECT_TRUE(shown->setOption(name.c_str(), static_cast<bool>(before) ? "false" : "true")) << name;
            }
            settle();
            EXPECT_TRUE(shown->setOption(name.c_str(), text.c_str())) << name;
            settle();
            EXPECT_EQ(std::string(shown->options.get_var(name.c_str()).as_string().c_str()), text) << name;
        }
    }
    EXPECT_GT(options, 50u);
}

} // namespace
