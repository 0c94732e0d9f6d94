#include "host/qt_toolbar.h"

#include "host/command_help.h"
#include "host/command_icon.h"
#include "view/PaletteBar.h"

#include <QAction>
#include <QToolBar>
#include <map>

namespace {

struct menu_text {
    QString text; ///< without mnemonic and dots
    const char* shortcut = "";
};

/// What menus say of a command.
menu_text menu_text_of(unsigned id)
{
    static const std::map<unsigned, menu_text> texts = [] {
        std::map<unsigned, menu_text> out;
        for (const unsigned menu : menu_resource_ids())
            for (const menu_row& row : menu_resource(menu)) {
                if (row.kind != menu_kind::command) continue;
                const QString text = QString::fromUtf8(row.text).remove('&').remove("...");
                menu_text& known = out.try_emplace(row.id, menu_text{text}).first->second;
                if (*row.shortcut) known.shortcut = row.shortcut; // context menus have none
            }
        return out;
    }();
    const auto found = texts.find(id);
    return found == texts.end() ? menu_text() : found->second;
}

void show_state(QAction& action, const CCmdUI& state)
{
    action.setEnabled(state.enabled);
    action.setCheckable(state.checked || action.isCheckable());
    action.setChecked(state.checked);
}

} // namespace

namespace host {

void fill_toolbar(QToolBar& bar, std::span<const unsigned> ids, const command_route& route, QAction* palettes,
                  unhandled others)
{
    bool separates = false;
    const auto add = [&](QAction* action) {
        if (separates && !bar.actions().isEmpty()) bar.addSeparator();
        separates = false;
        bar.addAction(action);
    };
    for (const unsigned id : ids) {
        if (id == 0) {
            separates = true;
            continue;
        }
        if (id == CPaletteBar::commandId && palettes) {
            add(palettes);
            continue;
        }
        CCmdUI state{.m_nID = id};
        const menu_text known = menu_text_of(id);
        if (known.text.isEmpty()) continue;
        if (!route(id, &state)) {
            if (others == unhandled::leftOut) continue;
            state.enabled = false;
        }
        auto* const action = new QAction(command_icon(id), known.text, &bar);
        action->setData(id);
        show_state(*action, state);
        set_command_help(*action, id, known.shortcut);
        QObject::connect(action, &QAction::triggered, &bar, [route, id] { route(id, nullptr); });
        add(action);
    }
}

void refresh_toolbar(QToolBar& bar, const command_route& route)
{
    for (QAction* const action : bar.actions()) {
        CCmdUI state{.m_nID = action->data().toUInt()};
        if (state.m_nID == 0) continue;
        if (!route(state.m_nID, &state)) state.enabled = false;
        show_state(*action, state);
    }
}

void size_toolbar(QToolBar& bar, bool large)
{
    constexpr double smaller = 0.8;
    constexpr int largeSide = 24, smallSide = 16; // pixels
    bar.setIconSize(QSize(1, 1) * (large ? largeSide : smallSide));
    QFont font = QToolBar().font();
    if (!large) font.setPointSizeF(font.pointSizeF() * smaller);
    bar.setFont(font);
}

} // namespace host
