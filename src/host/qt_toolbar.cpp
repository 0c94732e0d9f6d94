#include "host/qt_toolbar.h"

#include "resources/strings.h"
#include "view/PaletteBar.h"

#include <QAction>
#include <QToolBar>
#include <map>

namespace {

/// What menus call a command, without mnemonic and dots.
QString command_text(unsigned id)
{
    static const std::map<unsigned, QString> texts = [] {
        std::map<unsigned, QString> out;
        for (const unsigned menu : menu_resource_ids())
            for (const menu_row& row : menu_resource(menu))
                if (row.kind == menu_kind::command)
                    out.emplace(row.id, QString::fromUtf8(row.text).remove('&').remove("..."));
        return out;
    }();
    const auto found = texts.find(id);
    return found == texts.end() ? QString() : found->second;
}

void show_state(QAction& action, const CCmdUI& state)
{
    action.setEnabled(state.enabled);
    action.setCheckable(state.checked || action.isCheckable());
    action.setChecked(state.checked);
}

} // namespace

namespace host {

void fill_toolbar(QToolBar& bar, std::span<const unsigned> ids, const command_route& route, QAction* palettes)
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
        if (command_text(id).isEmpty() || !route(id, &state)) continue;
        auto* const action = new QAction(command_text(id), &bar);
        action->setData(id);
        show_state(*action, state);
        action->setStatusTip(QString::fromUtf8(string_resource(id)));
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
    QFont font = QToolBar().font();
    if (!large) font.setPointSizeF(font.pointSizeF() * smaller);
    bar.setFont(font);
}

} // namespace host
