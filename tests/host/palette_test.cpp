// The colour scale, its menu and its editor in the real main window.
#include "host/dialogs/FormDialog.h"
#include "host/menus/QtMenu.h"
#include "host/peer/QtPeer.h"
#include "view/scale/PaletteBar.h"
#include "workstation_fixture.h"

#include <QMenuBar>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>
#include <QToolBar>
#include <gtest/gtest.h>

namespace {

void mouse(QWidget& target, QEvent::Type type, QPoint at, Qt::MouseButtons held)
{
    QMouseEvent event(type, at, target.mapToGlobal(at), type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, held,
                      Qt::NoModifier);
    QApplication::sendEvent(&target, &event);
}

void drag(QWidget& target, QPoint from, QPoint to)
{
    mouse(target, QEvent::MouseMove, from, Qt::NoButton);
    mouse(target, QEvent::MouseButtonPress, from, Qt::LeftButton);
    mouse(target, QEvent::MouseMove, to, Qt::LeftButton);
    mouse(target, QEvent::MouseButtonRelease, to, Qt::NoButton);
    settle();
}

/// A main window with a surface that rises from 0 to 6300 to the right.
class PaletteWindowTest : public WorkstationTest {
protected:
    PaletteWindowTest() { open("a.spm"); }
    QWidget& strip(CWnd& scale) { return *host::widget_of(&scale); }
    /// Colour of the picture at a place between 0, left, and 63.
    QColor shown(int column)
    {
        view().flushTimers();
        const CPoint corner = view().displayRect.TopLeft();
        return host::widget_of(&view())->grab().toImage().pixelColor(corner.x + 8 * column + 4, corner.y + 100);
    }
};

TEST_F(PaletteWindowTest, TheBarInTheToolbarLeadsAndTheStripBesideTheImageFollows)
{
    CScale& leader = *CScale::GetStaticScale();
    QWidget& bar = strip(leader);
    EXPECT_NE(qobject_cast<QToolBar*>(bar.parentWidget()), nullptr);
    EXPECT_TRUE(bar.isVisible());
    EXPECT_EQ(bar.size(), QSize(CPaletteBar::length, CPaletteBar::width));
    EXPECT_EQ(bar.grab().toImage().pixelColor(0, 13), QColor(22, 0, 0)) << "brown begins so";
    window.rebuildMenus();
    settle();
    EXPECT_TRUE(bar.isVisible()) << "it joins the new tools";

    QWidget& own = strip(view().getScale());
    EXPECT_EQ(own.parentWidget(), host::widget_of(&view()));
    EXPECT_EQ(own.focusPolicy(), Qt::NoFocus) << "a click leaves the focus with the view";
    EXPECT_TRUE(view().hasFocus());
    EXPECT_TRUE(app.routeCommand(12002, nullptr));
    EXPECT_TRUE(app.routeCommand(10152, nullptr));
    EXPECT_EQ(shown(0), QColor(Qt::black));
    EXPECT_GT(own.grab().toImage().pixelColor(8, 2).lightness(), 240);
    // Handles at a quarter and three quarters of 502: half the distance halves the window, from the top of the strip.
    drag(own, {8, 125}, {8, 251});
    EXPECT_DOUBLE_EQ(leader.getFixedSize(), 6300.0 / 2.0) << "the press took the range of the data";
    EXPECT_FALSE(leader.hasCapture());
}

TEST_F(PaletteWindowTest, ThePaletteMenuShowsEachPaletteAsAPicture)
{
    QMenu* palette = nullptr;
    for (QAction* const action : window.menuBar()->actions())
        if (action->text() == "&Palette") palette = action->menu();
    ASSERT_NE(palette, nullptr);
    palette->popup({0, 0});
    settle();
    ASSERT_GE(palette->actions().size(), 8);
    EXPECT_EQ(palette->actions()[1]->text(), "&Gray");
    const QRect item = palette->actionGeometry(palette->actions()[1]);
    const QImage picture = palette->grab().toImage();
    EXPECT_GT(picture.pixelColor(item.right() - 8, item.center().y()).lightness(), 230);
    EXPECT_EQ(picture.pixelColor(item.right() - 8, item.center().y()).saturation(), 0);
    const QRect blue = palette->actionGeometry(palette->actions()[2]);
    EXPECT_GT(picture.pixelColor(blue.right() - 40, blue.center().y()).saturation(), 60);
    palette->actions()[2]->trigger();
    palette->hide();
    EXPECT_EQ(view().getScale().GetPaletteId(), 2);
}

TEST_F(PaletteWindowTest, ThePictureFollowsWhileTheOutputPaneHasTheKeys)
{
    window.addOutput("a line");
    settle();
    window.findChild<QPlainTextEdit*>()->setFocus();
    settle();
    ASSERT_FALSE(host::widget_of(&view())->hasFocus());
    EXPECT_TRUE(window.route(12002, nullptr));
    EXPECT_EQ(view().getScale().GetPaletteId(), 1);
    EXPECT_EQ(shown(0), QColor(Qt::black));
    EXPECT_EQ(shown(60).saturation(), 0) << "gray, as the strip is";
}

TEST_F(PaletteWindowTest, TheEditorIsDrawnInAndCancelled)
{
    bool wasShown = false;
    QTimer::singleShot(0, [&] {
        auto* const dialog = dynamic_cast<host::CFormDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        wasShown = true;
        QWidget* lines = nullptr;
        for (QWidget* const child : dialog->findChildren<QWidget*>())
            if (child->accessibleName() == "Lines") lines = child;
        ASSERT_NE(lines, nullptr);
        const QPoint low(0, lines->height() - 1), high(lines->width() - 1, 0);
        const QColor begun = shown(60);
        drag(*lines, low, high); // red rises from 0 to 255
        const QColor left = shown(2), right = shown(60);
        EXPECT_LT(left.red() + 100, right.red());
        EXPECT_EQ(right.green(), begun.green()) << "of the palette that was in use";
        const QImage picture = lines->grab().toImage();
        EXPECT_EQ(picture.pixelColor(lines->width() / 2, 3), QColor(Qt::white));
        for (QPushButton* const button : dialog->findChildren<QPushButton*>())
            if (button->text() == "Cancel") button->click();
    });
    EXPECT_TRUE(app.routeCommand(12001, nullptr));
    EXPECT_TRUE(wasShown);
    EXPECT_EQ(CScale::GetStaticScale()->GetPaletteId(), 3);
    settle();
    EXPECT_EQ(view().getScale().GetPaletteId(), 3);
}

} // namespace
