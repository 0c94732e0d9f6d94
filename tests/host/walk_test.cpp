// Walks all that the program declares: whoever adds a row of a menu, a toolbar or a table of options learns here what
// it still lacks.
#include "base/SPMVarList.h"
#include "resources/commands.h"
#include "resources/frame_templates.h"
#include "resources/menus.h"
#include "view/DCView.h"
#include "view/panes/TextView.h"
#include "vldv.h"
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
    /// Another value that the variable may have; its own for texts and for enums of one item.
    static std::string otherText(const SPMVar& variable)
    {
        switch (variable.type) {
        case SPM_VAR_BOOLEAN:
            return static_cast<bool>(variable) ? "false" : "true";
        case SPM_VAR_DOUBLE:
        case SPM_VAR_INT:
            return static_cast<int>(variable) == 1 ? "2" : "1";
        case SPM_VAR_ENUM:
            if (const int next = static_cast<int>(variable) == 0 ? 1 : 0;
                static_cast<unsigned>(next) < variable.get_enum_size())
                return variable.get_enum_key(static_cast<unsigned>(next));
            [[fallthrough]];
        default:
            return variable.as_string().c_str();
        }
    }
    /// Each option of a list is given another value and its own again. \return how many took the other one
    static unsigned walkOptions(SPMVarList& list)
    {
        unsigned changed = 0;
        for (unsigned i = 0; i < list.get_size(); ++i) {
            const SPMVar before = list.get_var(i);
            const std::string name = before.name, text = before.as_string().c_str();
            EXPECT_NE(before.type, SPM_VAR_NONE) << name;
            EXPECT_TRUE(list.set_var(name.c_str(), otherText(before).c_str())) << name;
            settle();
            changed += list.get_var(name.c_str()).as_string() != text.c_str();
            EXPECT_TRUE(list.set_var(name.c_str(), text.c_str())) << name;
            settle();
            EXPECT_EQ(std::string(list.get_var(name.c_str()).as_string().c_str()), text) << name;
        }
        return changed;
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
    // What this does is not there yet, and menus leave it out.
    const std::set<unsigned> awaited{commands::macros};
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
    vldvSurfaceTemplate.QuickViewOpenDocumentFile((folder / "a.spm").wstring().c_str(), 1);
    std::set<std::string> kinds;
    for (const auto& frame : app.frames())
        if (auto* const shown = dynamic_cast<CDCView*>(frame->GetActiveView())) {
            EXPECT_GT(walkOptions(shown->options), shown->options.get_size() / 2) << shown->GetViewSection();
            kinds.insert(shown->GetViewSection());
        }
    EXPECT_EQ(kinds, (std::set<std::string>{"SurfMathView", "QuickView"}));
}

TEST_F(Walk, EverySettingCanBeChangedWhileWindowsAreOpen)
{
    openAll();
    VLGlobalVarList* const settings = VLGlobalVarList::GetVarList("global_options");
    EXPECT_GE(walkOptions(*settings), 7u) << "all but folder and language";
    settings->ReleaseList();
}

} // namespace
