// The box that tells how far a slow read is, on the toolkit's offscreen platform.
#include "host/QtHost.h"
#include "host/peer/QtPeer.h"
#include "platform/profile/profile_store.h"
#include "support/temporary_folder.h"

#include <QApplication>
#include <QMouseEvent>
#include <QProgressBar>
#include <QProgressDialog>
#include <QPushButton>
#include <QThread>
#include <QTimer>
#include <gtest/gtest.h>

namespace {

QProgressDialog* box() { return qobject_cast<QProgressDialog*>(QApplication::activeModalWidget()); }

class ReadProgressTest : public testing::Test {
protected:
    /// Reads on until the box is there. \return false when it was cancelled
    bool readsOn()
    {
        bool goesOn = true;
        for (int i = 0; i < 100 && goesOn && !box(); ++i) {
            QThread::msleep(20);
            goesOn = machine.progress(0.25);
        }
        return goesOn;
    }
    void press(QWidget& button)
    {
        const QPointF middle = QRectF(button.rect()).center();
        for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease})
            QApplication::postEvent(&button,
                                    new QMouseEvent(type, middle, button.mapToGlobal(middle), Qt::LeftButton,
                                                    type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                                                    Qt::NoModifier));
    }

    temporary_folder folder;
    CProfileStore profile{folder / "profile"};
    host::CQtHost machine{profile};
};

TEST_F(ReadProgressTest, AQuickReadShowsNothing)
{
    machine.waitCursor(true);
    EXPECT_TRUE(machine.progress(0.1));
    EXPECT_TRUE(machine.progress(0.9));
    EXPECT_EQ(box(), nullptr);
    machine.waitCursor(false);
}

TEST_F(ReadProgressTest, ASlowOneCanBeCancelledAndNothingElseHappensMeanwhile)
{
    struct painted_widget : QWidget {
        int paints = 0;
        void paintEvent(QPaintEvent*) override { ++paints; }
    } window; // as the main window is when a file named on the command line is read: shown, not yet painted
    window.show();
    struct painted_window : CWnd {
        int paints = 0;
        void OnPaint(CDC&) override { ++paints; }
    } view;
    auto* const content = new QWidget(&window);
    content->setGeometry(0, 0, 50, 50);
    content->show();
    host::CQtPeer peer(view, content);
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] { ++ticks; });
    timer.start(0);

    machine.waitCursor(true);
    machine.waitCursor(true); // the document's inside that of the template
    ASSERT_TRUE(readsOn());
    ASSERT_NE(box(), nullptr);
    EXPECT_EQ(box()->findChild<QProgressBar*>()->value(), box()->maximum() / 4);
    EXPECT_GT(window.paints, 0) << "the window is painted meanwhile";
    EXPECT_EQ(view.paints, 0) << "a view is not: its document may be half read";
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::ArrowCursor);
    press(*box()->findChild<QPushButton*>());
    bool goesOn = true;
    for (int i = 0; i < 10 && goesOn; ++i) {
        QThread::msleep(20);
        goesOn = machine.progress(0.5);
    }
    EXPECT_FALSE(goesOn);
    EXPECT_FALSE(machine.progress(0.6)) << "it stays cancelled";
    EXPECT_EQ(ticks, 0);
    machine.waitCursor(false);
    EXPECT_EQ(box(), nullptr) << "gone when the read has ended, before its failure is told";
    EXPECT_TRUE(window.updatesEnabled());
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    machine.waitCursor(false);

    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    QApplication::processEvents();
    EXPECT_GT(ticks, 0);
    EXPECT_GT(view.paints, 0) << "what was put off";
    machine.waitCursor(true);
    EXPECT_TRUE(machine.progress(0.1)) << "the next one begins anew";
    EXPECT_EQ(box(), nullptr);
    machine.waitCursor(false);
}

} // namespace
