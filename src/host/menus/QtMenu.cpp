#include "host/menus/QtMenu.h"

#include "host/peer/QtPeer.h"
#include "paint/QtDC.h"
#include "resources/commands.h"
#include "view/scale/PaletteMenuButton.h"

#include <QAction>
#include <QPaintEvent>
#include <QStyle>

namespace vldv::host {

namespace {

} // namespace

menu_metrics CQtMenu::metrics() const
{
    menu_metrics out;
    out.imageWidth = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    out.textMargin = style()->pixelMetric(QStyle::PM_MenuHMargin, nullptr, this) + out.textMargin;
    out.textHeight = fontMetrics().height();
    for (const QAction* action : actions())
        if (action->data().isValid())
            out.widestText = std::max(out.widestText, fontMetrics().horizontalAdvance(action->text()));
    return out;
}

void CQtMenu::addPalette(QAction& action, unsigned commandId)
{
    action.setData(commandId);
    const menu_metrics now = metrics();
    const CRect strip = CPaletteMenuButton::stripArea(CRect(0, 0, 0, 0), now);
    setMinimumWidth(strip.left + 2 * CPaletteMenuButton::OnCalculateSize(now).cx);
}

void CQtMenu::paintEvent(QPaintEvent* event)
{
    QMenu::paintEvent(event);
    const menu_metrics now = metrics();
    for (QAction* const action : actions()) {
        if (!action->data().isValid() || !event->rect().intersects(actionGeometry(action))) continue;
        const unsigned command = action->data().toUInt();
        const CPaletteMenuButton button(static_cast<int>(command - commands::firstPalette), command,
                                        action->text().toStdWString().c_str(), -1);
        paint::CQtDC dc(*this);
        button.OnDraw(dc, rect_of(actionGeometry(action)), now, true);
    }
}

} // namespace vldv::host
