#pragma once
#include "vldv_api.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

/// How one command shows in menus and toolbars; a handler that updates it changes what is not as usual.
struct CCmdUI {
    unsigned m_nID = 0;
    bool enabled = true;
    bool checked = false;
    bool radio = false;                ///< the check is one of a group
    std::optional<std::string> text{}; ///< replaces the row's own

    void Enable(bool on = true) noexcept { enabled = on; }
    void SetCheck(bool on = true) noexcept { checked = on; }
    void SetRadio(bool on = true) noexcept { checked = radio = on; }
    void SetText(const char* replacement) { text = replacement; }
};

namespace vldv {
struct menu_item;
}

/// What takes commands: views, documents, the application.
class VLDV_API CCmdTarget {
public:
    virtual ~CCmdTarget() = default;

    /// Runs a command or, with `ui`, tells how it shows now. A disabled command is not run.
    /// \return false when nobody here knows the command
    virtual bool OnCmdMsg(unsigned id, CCmdUI* ui);
    /// Appends the entries for which the dynamic row of a menu stands whose commands begin with `first`. Asked once
    /// each time the menu opens; their state is then asked of `OnCmdMsg`.
    /// \return false when nobody here knows the row
    virtual bool AppendMenuItems(unsigned first, std::vector<vldv::menu_item>& items);
};

namespace vldv {

/// One line of a class's command table: a command, or a range of them, with what runs it and what updates it.
template <class Target>
struct command_row {
    unsigned first, last;
    void (Target::*run)() = nullptr;
    void (Target::*runId)(unsigned id) = nullptr;
    void (Target::*update)(CCmdUI& ui) = nullptr; ///< null: always enabled

    constexpr command_row(unsigned id, void (Target::*run_)(), void (Target::*update_)(CCmdUI&) = nullptr)
        : first(id), last(id), run(run_), update(update_)
    {
    }
    constexpr command_row(unsigned first_, unsigned last_, void (Target::*run_)(unsigned),
                          void (Target::*update_)(CCmdUI&) = nullptr)
        : first(first_), last(last_), runId(run_), update(update_)
    {
    }
};

/// Looks a command up in a class's table and runs or updates it. \return false when it is not there
template <class Target>
bool dispatch_command(Target& target, std::span<const command_row<Target>> rows, unsigned id, CCmdUI* ui)
{
    for (const command_row<Target>& row : rows) {
        if (id < row.first || id > row.last) continue;
        CCmdUI probe{.m_nID = id};
        CCmdUI& state = ui ? *ui : probe;
        if (row.update) (target.*row.update)(state);
        if (ui || !state.enabled) return true;
        if (row.run)
            (target.*row.run)();
        else
            (target.*row.runId)(id);
        return true;
    }
    return false;
}

} // namespace vldv
