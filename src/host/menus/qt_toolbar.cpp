#include "host/menus/qt_toolbar.h"

#include "host/menus/command_door.h"
#include "host/menus/command_help.h"
#include "host/peer/command_icon.h"
#include "resources/commands.h"
#include "view/scale/PaletteBar.h"

#include <QAction>
#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <QToolBar>
#include <map>

namespace vldv::host {

namespace {

void show_state(QAction& action, const CCmdUI& state)
{
    action.setEnabled(state.enabled);
    action.setCheckable(state.checked || action.isCheckable());
    action.setChecked(state.checked);
}

QIcon icon_of(const button_picture& picture)
{
    const CSize size = picture.size;
    if (size.cx <= 0 || size.cy <= 0 ||
        picture.pixels.size() / static_cast<std::size_t>(size.cx) < static_cast<std::size_t>(size.cy))
        return {};
    const QImage shown(reinterpret_cast<const uchar*>(picture.pixels.data()), size.cx, size.cy,
                       size.cx * static_cast<qsizetype>(sizeof(std::uint32_t)), QImage::Format_ARGB32);
    return QIcon(QPixmap::fromImage(shown));
}

/// The key of a command; empty for none. Context menus name none.
const char* shortcut_of(unsigned id)
{
    static const std::map<unsigned, const char*> keys = [] {
        std::map<unsigned, const char*> out;
        for (const unsigned menu : menu_resource_ids())
            for (const menu_row& row : menu_resource(menu))
                if (*row.shortcut) out.emplace(row.id, row.shortcut);
        return out;
    }();
    const auto found = keys.find(id);
    return found == keys.end() ? "" : found->second;
}

/// What stands in a bar, entry by entry; what separates appears only between entries.
class bar_filling {
public:
    bar_filling(QToolBar& bar_, const command_route& route_) : bar(bar_), route(route_) {}

    void separator() { separates = true; }
    void entry(QAction* action)
    {
        if (separates && !bar.actions().isEmpty()) bar.addSeparator();
        separates = false;
        bar.addAction(action);
    }
    void command(unsigned id, unhandled others)
    {
        const QString text = QString::fromStdString(menu_text(command_name(id)));
        if (QAction* const action = add(id, text, command_icon(id), others))
            set_command_help(*action, id, shortcut_of(id));
    }
    void button(const toolbar_button& made)
    {
        QAction* const action =
            add(made.id, QString::fromStdString(made.text), icon_of(made.picture), unhandled::leftOut);
        if (!action) return;
        set_command_help(*action, made.id, "");
        if (!made.hint.empty()) action->setStatusTip(QString::fromStdString(made.hint));
    }

private:
    /// Null for a command that is left out.
    QAction* add(unsigned id, const QString& text, const QIcon& icon, unhandled others)
    {
        CCmdUI state{.m_nID = id};
        if (text.isEmpty()) return nullptr;
        if (!route(id, &state)) {
            if (others == unhandled::leftOut) return nullptr;
            state.enabled = false;
        }
        auto* const action = new QAction(icon, text, &bar);
        action->setData(id);
        show_state(*action, state);
        QObject::connect(action, &QAction::triggered, &bar, [sent = route, id] { sent(id, nullptr); });
        entry(action);
        return action;
    }

    QToolBar& bar;
    const command_route& route;
    bool separates = false;
};

} // namespace

void fill_toolbar(QToolBar& bar, std::span<const unsigned> ids, const command_route& route, QAction* palettes,
                  unhandled others)
{
    bar_filling filling(bar, route);
    for (const unsigned id : ids) {
        if (id == 0)
            filling.separator();
        else if (id == commands::paletteStrip && palettes)
            filling.entry(palettes);
        else
            filling.command(id, others);
    }
}

void add_buttons(QToolBar& bar, const std::vector<toolbar_button>& buttons, const command_route& route)
{
    bar_filling filling(bar, route);
    filling.separator();
    for (const toolbar_button& button : buttons) {
        if (button.id == 0)
            filling.separator();
        else
            filling.button(button);
    }
}

void clear_toolbar(QToolBar& bar)
{
    // Later: one of them may be what asked for it. The palette bar belongs to the main window and comes back.
    for (QAction* const action : bar.actions())
        if (action->parent() == &bar) action->deleteLater();
    bar.clear();
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

} // namespace vldv::host
