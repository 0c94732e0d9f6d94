#include "host/menus/qt_menus.h"

#include "host/menus/QtMenu.h"
#include "host/menus/command_help.h"
#include "resources/commands.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <algorithm>

namespace vldv::host {

namespace {

/// The rows below the popup at `index`, and the index behind them.
std::vector<menu_row> content_of(const std::vector<menu_row>& rows, std::size_t index, std::size_t& end)
{
    end = index + 1;
    while (end < rows.size() && rows[end].depth > rows[index].depth) ++end;
    return {rows.begin() + static_cast<std::ptrdiff_t>(index) + 1, rows.begin() + static_cast<std::ptrdiff_t>(end)};
}

/// Takes everything out of a menu and gives it back, submenus too. None of them may be running: see `after_commands`.
template <class Menu>
void clear_menu(Menu& menu)
{
    for (const QAction* const action : menu.actions())
        if (QMenu* const inside = action->menu()) inside->deleteLater();
    menu.clear();
}

/// Fills one menu from its top; what separates appears only between entries.
class menu_filling {
public:
    menu_filling(QMenu& menu_, const menu_source& source_) : menu(menu_), source(source_) {}

    void rows(const std::vector<menu_row>& all)
    {
        for (std::size_t i = 0; i < all.size(); ++i) {
            const menu_row& row = all[i];
            switch (row.kind) {
            case menu_kind::separator:
                separates = true;
                break;
            case menu_kind::command:
                command(row.id, QString::fromUtf8(row.text), row.shortcut, {});
                break;
            case menu_kind::dynamic:
                supplied(row.id);
                break;
            case menu_kind::popup: {
                std::size_t end = i;
                const std::vector<menu_row> inside = content_of(all, i, end);
                popup(QString::fromUtf8(row.text), [&](menu_filling& filling) { filling.rows(inside); });
                i = end - 1;
                break;
            }
            }
        }
    }

private:
    void items(const std::vector<menu_item>& all)
    {
        for (const menu_item& item : all) {
            if (item.kind == menu_kind::separator) separates = true;
            if (item.kind == menu_kind::command)
                command(item.id, QString::fromStdString(item.text), "", QString::fromStdString(item.hint));
            if (item.kind == menu_kind::popup)
                popup(QString::fromStdString(item.text), [&](menu_filling& filling) { filling.items(item.children); });
        }
    }

    void supplied(unsigned first)
    {
        std::vector<menu_item> entries;
        if (source.items(first, entries)) items(entries);
    }

    template <class Fill>
    void popup(const QString& text, const Fill& fill)
    {
        auto* const inside = new CQtMenu(text, &menu);
        menu_filling filling(*inside, source);
        fill(filling);
        if (inside->isEmpty()) {
            delete inside;
            return;
        }
        separate();
        menu.addMenu(inside);
    }

    void command(unsigned id, const QString& text, const char* shortcut, const QString& hint)
    {
        CCmdUI state{.m_nID = id};
        if (!source.route(id, &state)) return;
        separate();
        QAction* const action = menu.addAction(state.text ? QString::fromStdString(*state.text) : text);
        action->setEnabled(state.enabled);
        set_command_help(*action, id, shortcut);
        if (!hint.isEmpty()) action->setStatusTip(hint);
        if (state.checked) {
            action->setCheckable(true);
            action->setChecked(true);
        }
        auto* const pictures = dynamic_cast<CQtMenu*>(&menu);
        if (pictures && id >= commands::firstPalette && id <= commands::lastPalette) pictures->addPalette(*action, id);
        if (*shortcut) action->setText(action->text() + "\t" + QString::fromLatin1(shortcut));
        QObject::connect(action, &QAction::triggered, &menu, [route = source.route, id] { route(id, nullptr); });
    }

    void separate()
    {
        if (separates && !menu.isEmpty()) menu.addSeparator();
        separates = false;
    }

    QMenu& menu;
    const menu_source& source;
    bool separates = false;
};

/// Whether a popup of a bar will have content, asking no further than the first row that is handled. What the program
/// supplies is asked for when the popup opens and not before.
bool has_content(const std::vector<menu_row>& rows, const menu_source& source)
{
    return std::ranges::any_of(rows, [&](const menu_row& row) {
        CCmdUI probe{.m_nID = row.id};
        return row.kind == menu_kind::dynamic || (row.kind == menu_kind::command && source.route(row.id, &probe));
    });
}

} // namespace

void fill_menu(QMenu& menu, const std::vector<menu_row>& rows, const menu_source& source)
{
    menu_filling(menu, source).rows(rows);
}

void fill_menu_bar(QMenuBar& bar, const std::vector<menu_row>& rows, const menu_source& source)
{
    clear_menu(bar);
    for (std::size_t i = 0; i < rows.size();) {
        std::size_t end = i + 1;
        const std::vector<menu_row> inside = content_of(rows, i, end);
        if (has_content(inside, source)) {
            auto* const popup = new CQtMenu(QString::fromUtf8(rows[i].text), &bar);
            bar.addMenu(popup);
            QObject::connect(popup, &QMenu::aboutToShow, popup, [popup, inside, source] {
                clear_menu(*popup);
                fill_menu(*popup, inside, source);
            });
        }
        i = end;
    }
}

} // namespace vldv::host
