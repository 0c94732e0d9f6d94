#include "host/qt_menus.h"

#include "host/QtMenu.h"
#include "host/command_help.h"

#include <QAction>
#include <QActionGroup>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>

namespace host {

namespace {

constexpr unsigned firstPalette = 12001, lastPalette = 12100;

/// The rows below the popup at `index`, and the index behind them.
std::vector<menu_row> content_of(const std::vector<menu_row>& rows, std::size_t index, std::size_t& end)
{
    end = index + 1;
    while (end < rows.size() && rows[end].depth > rows[index].depth) ++end;
    return {rows.begin() + static_cast<std::ptrdiff_t>(index) + 1, rows.begin() + static_cast<std::ptrdiff_t>(end)};
}

void add_command(QMenu& menu, unsigned id, const QString& text, const char* shortcut, const command_route& route)
{
    CCmdUI state{.m_nID = id};
    if (!route(id, &state)) return;
    QAction* const action = menu.addAction(state.text ? QString::fromStdString(*state.text) : text);
    action->setEnabled(state.enabled);
    set_command_help(*action, id, shortcut);
    if (state.checked) {
        action->setCheckable(true);
        action->setChecked(true);
    }
    auto* const pictures = dynamic_cast<CQtMenu*>(&menu);
    if (pictures && id >= firstPalette && id <= lastPalette) pictures->addPalette(*action, id);
    if (*shortcut) action->setText(action->text() + "\t" + QString::fromLatin1(shortcut));
    QObject::connect(action, &QAction::triggered, &menu, [route, id] { route(id, nullptr); });
}

/// Commands of a range that have a text of their own now.
void add_dynamic(QMenu& menu, const menu_row& row, const command_route& route)
{
    for (unsigned id = row.id; id <= row.lastId; ++id) {
        CCmdUI state{.m_nID = id};
        if (!route(id, &state) || !state.text) continue;
        add_command(menu, id, {}, "", route);
    }
}

} // namespace

void fill_menu(QMenu& menu, const std::vector<menu_row>& rows, const command_route& route)
{
    bool separates = false;
    const auto before = [&] {
        if (separates && !menu.isEmpty()) menu.addSeparator();
        separates = false;
    };
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const menu_row& row = rows[i];
        switch (row.kind) {
        case menu_kind::separator:
            separates = true;
            break;
        case menu_kind::command: {
            CCmdUI probe{.m_nID = row.id};
            if (!route(row.id, &probe)) break;
            before();
            add_command(menu, row.id, QString::fromUtf8(row.text), row.shortcut, route);
            break;
        }
        case menu_kind::dynamic: {
            QMenu content;
            add_dynamic(content, row, route);
            if (content.isEmpty()) break;
            before();
            add_dynamic(menu, row, route);
            break;
        }
        case menu_kind::popup: {
            std::size_t end = i;
            const std::vector<menu_row> inside = content_of(rows, i, end);
            i = end - 1;
            auto* const popup = new CQtMenu(QString::fromUtf8(row.text), &menu);
            fill_menu(*popup, inside, route);
            if (popup->isEmpty()) {
                delete popup;
                break;
            }
            before();
            menu.addMenu(popup);
            break;
        }
        }
    }
}

void fill_menu_bar(QMenuBar& bar, const std::vector<menu_row>& rows, const command_route& route)
{
    bar.clear();
    for (std::size_t i = 0; i < rows.size();) {
        std::size_t end = i + 1;
        const std::vector<menu_row> inside = content_of(rows, i, end);
        QMenu probe;
        fill_menu(probe, inside, route);
        if (!probe.isEmpty()) {
            auto* const popup = new CQtMenu(QString::fromUtf8(rows[i].text), &bar);
            bar.addMenu(popup);
            QObject::connect(popup, &QMenu::aboutToShow, popup, [popup, inside, route] {
                popup->clear();
                fill_menu(*popup, inside, route);
            });
        }
        i = end;
    }
}

} // namespace host
