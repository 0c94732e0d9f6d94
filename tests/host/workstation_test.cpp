// What the workstation shows and does.
#include "workstation_fixture.h"

#include "host/dialogs/VariableDialog.h"
#include "host/dialogs/VariableGrid.h"
#include "host/peer/qt_cursors.h"
#include "resources/commands.h"
#include "view/ChildFrame.h"
#include "vldv.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>
#include <QPushButton>
#include <QTabBar>
#include <QTableWidget>
#include <QTimer>
#include <QToolButton>
#include <QWheelEvent>

namespace {

TEST_F(WorkstationTest, ShowsTheSurfaceTheRightWayUpAndSwitchesSubImages)
{
    ASSERT_NE(open("a.spm"), nullptr);
    EXPECT_EQ(view().displayRect.Size(), (CSize{512, 512}));
    QImage picture = shown();
    EXPECT_EQ(host::widget_of(&view())->size(), QSize(50 + 512 + 25 + 65, 10 + 512 + 25 + 40));
    ASSERT_EQ(picture.size(), QSize(512, 512));
    EXPECT_LT(picture.pixelColor(10, 256).lightness() + 50, picture.pixelColor(500, 256).lightness());
    EXPECT_EQ(picture.pixelColor(256, 10), picture.pixelColor(256, 500));

    auto& frame = dynamic_cast<host::CQtFrame&>(*app.frames()[0]->getPeer());
    auto* const tabs = frame.content()->findChild<QTabBar*>();
    ASSERT_NE(tabs, nullptr);
    EXPECT_TRUE(tabs->isVisible());
    EXPECT_EQ(tabs->tabText(1), "Reverse");
    EXPECT_EQ(tabs->height(), 20);
    QMouseEvent other(QEvent::MouseButtonPress, tabs->tabRect(1).center(), tabs->mapToGlobal(tabs->tabRect(1).center()),
                      Qt::RightButton, Qt::RightButton, Qt::NoModifier);
    QApplication::sendEvent(tabs, &other);
    EXPECT_EQ(view().getSubImageNumber(), 0u) << "only what moves the tabs";
    QWheelEvent wheel(tabs->rect().center(), tabs->mapToGlobal(QPointF(tabs->rect().center())), {}, QPoint(0, -120),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(tabs, &wheel);
    EXPECT_EQ(tabs->currentIndex(), 1);
    settle();
    picture = shown();
    EXPECT_GT(picture.pixelColor(256, 10).lightness(), picture.pixelColor(256, 500).lightness() + 50)
        << "row 0 is the lowest";
    EXPECT_EQ(app.frames()[0]->GetWindowText(), L"a[Height:Reverse](800%)");
}

TEST_F(WorkstationTest, TheWheelZoomsWithShiftAndTheMenuCommandsAct)
{
    open("a.spm");
    QWidget* const widget = host::widget_of(&view());
    QWheelEvent wheel(QPointF(256, 256), widget->mapToGlobal(QPointF(256, 256)), {}, QPoint(0, -120), Qt::NoButton,
                      Qt::ShiftModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &wheel);
    settle();
    EXPECT_EQ(view().displayRect.Size(), (CSize{427, 427})) << "512 / 1.2";
    EXPECT_TRUE(app.routeCommand(10121, nullptr));
    settle();
    EXPECT_EQ(widget->size(), QSize(50 + 64 + 25 + 65, 10 + 64 + 25 + 40));
}

TEST_F(WorkstationTest, DraggingACornerKeepsThePictureSquare)
{
    open("a.spm");
    auto& frame = dynamic_cast<host::CQtFrame&>(*app.frames()[0]->getPeer());
    QMdiSubWindow& sub = *frame.subWindow();
    auto& logic = dynamic_cast<CChildFrame&>(*app.frames()[0]);
    const auto mouse = [&](QEvent::Type type, const QPoint& at, Qt::MouseButtons held) {
        QMouseEvent event(type, at, sub.mapToGlobal(at), type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                          held, Qt::NoModifier);
        QApplication::sendEvent(&sub, &event);
        settle();
    };
    const QPoint corner(sub.width() - 1, sub.height() - 1);
    mouse(QEvent::MouseMove, corner, Qt::NoButton);
    mouse(QEvent::MouseButtonPress, corner, Qt::LeftButton);
    EXPECT_TRUE(logic.isSizing());
    mouse(QEvent::MouseMove, corner - QPoint(100, 30), Qt::LeftButton);
    const CSize picture = view().displayRect.Size();
    EXPECT_NE(picture, (CSize{512, 512}));
    EXPECT_EQ(picture.cx, picture.cy) << "as square as before";
    mouse(QEvent::MouseButtonRelease, corner - QPoint(100, 30), Qt::NoButton);
    EXPECT_FALSE(logic.isSizing());
}

TEST_F(WorkstationTest, PlainViewsOpenAtAUsableSizeAndClosingLeadsBack)
{
    for (const char* name : {"a.spm", "b.spm", "c.spm"}) open(name);
    app.frames()[1]->ActivateFrame();
    runCommand(10041);
    const QWidget* const table = host::widget_of(app.frames().back()->GetActiveView());
    EXPECT_GT(table->width(), 300);
    EXPECT_GT(table->height(), 200);
    runCommand(57602);
    ASSERT_EQ(app.frames().size(), 3u);
    EXPECT_EQ(app.activeFrame(), app.frames()[1].get()) << "where it was opened from";
}

TEST_F(WorkstationTest, QuittingDoesNotAskASecondTime)
{
    CDocument* const document = open("a.spm");
    document->SetModifiedFlag(true); // the window's own closing would ask
    QTimer::singleShot(0, &window, [&] { machine.quit(); });
    EXPECT_EQ(QApplication::exec(), 0);
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(WorkstationTest, FramesTileAndClose)
{
    open("a.spm");
    open("b.spm");
    EXPECT_EQ(window.area().subWindowList().size(), 2);
    EXPECT_TRUE(app.routeCommand(57634, nullptr)) << "the last one is active";
    runCommand(57652);
    const QList<QMdiSubWindow*> tiled = window.area().subWindowList();
    const QSize whole = window.area().viewport()->size();
    EXPECT_EQ(tiled[0]->geometry() | tiled[1]->geometry(), QRect({0, 0}, whole));
    EXPECT_EQ(tiled[0]->height(), whole.height()) << "side by side";
    runCommand(57651);
    EXPECT_EQ(tiled[0]->width(), whole.width()) << "under each other";
    EXPECT_NE(view(0).displayRect.Size(), (CSize{512, 512})) << "the view follows its frame";
    EXPECT_EQ(view(0).image.width(), view(0).displayRect.Width());
    window.area().closeAllSubWindows();
    settle();
    app.freeClosed();
    settle();
    EXPECT_TRUE(app.frames().empty());
    EXPECT_TRUE(window.area().subWindowList().isEmpty());
    EXPECT_TRUE(vldvSurfaceTemplate.documents().empty());
}

TEST_F(WorkstationTest, ACascadeKeepsSizesThatFit)
{
    for (const char* name : {"a.spm", "b.spm", "c.spm"}) open(name);
    window.resize(1300, 1000);
    settle();
    QList<QMdiSubWindow*> frames = window.area().subWindowList();
    frames[1]->resize(300, 250);
    settle();
    const auto arranged = [&] {
        app.frames()[0]->ActivateFrame();
        runCommand(commands::cascade);
    };
    const QSize usual = frames[2]->size();
    arranged();
    EXPECT_EQ(frames[1]->geometry(), QRect(0, 0, 300, 250)) << "the lowest one";
    EXPECT_EQ(frames[2]->geometry(), QRect(QPoint(28, 28), usual));
    EXPECT_EQ(frames[0]->geometry(), QRect(QPoint(56, 56), usual)) << "in front";

    window.resize(700, 500);
    settle();
    frames[0]->showMaximized();
    settle();
    arranged();
    const QRect area(QPoint(0, 0), window.area().viewport()->size());
    ASSERT_LT(area.height(), usual.height());
    for (const QMdiSubWindow* const frame : frames) EXPECT_TRUE(area.contains(frame->geometry()));
    EXPECT_EQ(frames[1]->size(), QSize(300, 250));
    const CSize picture = view(2).displayRect.Size();
    EXPECT_EQ(picture.cx, picture.cy) << "as square as before";
    EXPECT_GT(picture.cx, 200);
}

TEST_F(WorkstationTest, FileDialogsFitTheScreen)
{
    const QRect screen = window.screen()->availableGeometry();
    ASSERT_LT(screen.width(), 1180) << "narrower than the dialog likes";
    const auto atOnce = [&](const std::function<void()>& ask) {
        bool isInside = false;
        QTimer::singleShot(0, [&] {
            auto* const asked = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(asked, nullptr);
            isInside = asked->width() <= screen.width() && asked->height() <= screen.height();
            asked->reject();
        });
        ask();
        return isInside;
    };
    open_prompt prompt;
    prompt.filter = "All (*.*)|*.*||";
    prompt.several = true;
    prompt.preview = [](const std::wstring&) { return file_preview(); };
    EXPECT_TRUE(atOnce([&] { machine.askOpenPaths(prompt); }));
    EXPECT_TRUE(
        atOnce([&] { machine.askSavePath({.suggestedPath = L"a.spm", .filter = prompt.filter, .extension = "spm"}); }));
}

TEST_F(WorkstationTest, TheVariableDialogTakesWhatIsTyped)
{
    declared_dialog declared{"width(Width, %),double,0,1,,100*##", "mode(Mode),enum,a(First),b(Second)", "hidden,int"};
    host::CVariableDialog dialog(declared.model, &window);
    dialog.show();
    ASSERT_EQ(dialog.grid()->rowCount(), 2);
    auto* const line = qobject_cast<QLineEdit*>(dialog.grid()->cellWidget(0, 1));
    ASSERT_NE(line, nullptr);
    auto* const box = qobject_cast<QComboBox*>(dialog.grid()->cellWidget(1, 1));
    ASSERT_NE(box, nullptr);
    emit box->textActivated("Second");
    EXPECT_EQ(int(declared.list["mode"]), 1);
    settle();
    line->setFocus();
    line->selectAll();
    for (const char key : {'2', '5'}) {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, QString(QChar(key)));
        QApplication::sendEvent(line, &press);
    }
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(line, &enter);
    EXPECT_EQ(double(declared.list["width"]), 0.25);
    EXPECT_EQ(declared.model.result(), CVarListDlg::resultOk) << "the key takes the value and is OK";
}

TEST_F(WorkstationTest, ADialogOfManyFilesShowsThemAndGrows)
{
    constexpr unsigned count = 12;
    const QString name = QStringLiteral("a recording of a long night, sample 7.spm");
    std::vector<SPMVar> rows(count);
    for (unsigned i = 0; i < count; ++i)
        rows[i].Init(std::to_string(i).c_str(), name.toUtf8().constData(), SPM_VAR_BOOLEAN);
    SPMVarList list;
    list.set_variables(rows.data(), count);
    CVarListDlg model;
    model.CreateModalDlg(&list, nullptr, platform::saveFilesLayout, nullptr);
    host::CVariableDialog dialog(model, &window);
    dialog.show();
    settle();
    QTableWidget& grid = *dialog.grid();
    EXPECT_GE(grid.columnWidth(0), grid.fontMetrics().horizontalAdvance(name));
    EXPECT_GE(grid.viewport()->height(), grid.rowViewportPosition(count - 1) + grid.rowHeight(count - 1));
    const auto* const exit = dialog.findChild<QPushButton*>();
    const int gap = exit->x() - grid.geometry().right();
    const QSize before = grid.size();
    dialog.resize(dialog.size() + QSize(70, 50));
    settle();
    EXPECT_EQ(grid.size(), before + QSize(70, 50));
    EXPECT_EQ(exit->x() - grid.geometry().right(), gap) << "beside the grid as before";
}

/// Runs at the scales of the screen that the build lists.
TEST_F(WorkstationTest, ScreenScaleKeepsDataCrispAndScalesTheHandles)
{
    open("a.spm");
    EXPECT_TRUE(app.routeCommand(10121, nullptr));
    settle();
    const int scale = std::max(1, qEnvironmentVariableIntValue("QT_SCALE_FACTOR"));
    ASSERT_EQ(window.devicePixelRatioF(), scale);
    EXPECT_EQ(host::qt_cursor(cursor_shape::crossPlus).pixmap().size(), QSize(24, 24) * scale) << "pointers, too";
    const QImage picture = shown();
    ASSERT_EQ(picture.size(), QSize(64, 64) * scale);
    const auto sample = [&](int x, int y) { return picture.pixel(x * scale, y * scale); };
    int blurred = 0;
    for (int y = 0; y < 64 * scale; ++y)
        for (int x = 0; x < 64 * scale; ++x) blurred += picture.pixel(x, y) != sample(x / scale, y / scale);
    EXPECT_EQ(blurred, 0) << "a sample is a block of the screen's pixels";
    for (int x = 1; x < 64; ++x) EXPECT_NE(sample(x - 1, 0), sample(x, 0)) << x;

    EXPECT_TRUE(app.routeCommand(10152, nullptr));
    settle();
    const QImage bar = host::widget_of(CScale::GetStaticScale())->grab().toImage();
    ASSERT_EQ(bar.size(), QSize(256, 27) * scale);
    const auto hasWhite = [&](int column) {
        for (int y = 0; y < bar.height(); ++y)
            if (bar.pixelColor(column, y) == QColor(Qt::white)) return true;
        return false;
    };
    // The first handle stands at a quarter of the strip, one logical pixel wide.
    EXPECT_FALSE(hasWhite(64 * scale - 1));
    for (int i = 0; i < scale; ++i) EXPECT_TRUE(hasWhite(64 * scale + i)) << i;
    EXPECT_FALSE(hasWhite(65 * scale));
}

TEST_F(WorkstationTest, WhatIsNoNumberStaysInItsFieldAndKeepsTheDialog)
{
    declared_dialog declared({"step(Step),double", "count(Count),int,0"}, false);
    const QPointer<host::CVariableDialog> dialog = window.findChild<host::CVariableDialog*>();
    ASSERT_NE(dialog, nullptr);
    const auto buttons = dialog->findChildren<QPushButton*>();
    const auto isOk = [](const QPushButton* button) { return button->text() == "OK"; };
    ASSERT_TRUE(std::ranges::any_of(buttons, isOk));
    QPushButton* const ok = *std::ranges::find_if(buttons, isOk);
    dialog->activateWindow();
    settle();
    const auto type = [&](int row, const char* text) {
        auto* const field = qobject_cast<QLineEdit*>(dialog->grid()->cellWidget(row, 1));
        field->setFocus();
        field->setText(text);
        field->setModified(true);
        ok->click();
        settle();
        return field;
    };
    for (const char* const typed : {"1,5", "12x", "", "1e"}) EXPECT_EQ(type(0, typed)->text(), typed);
    EXPECT_EQ(double(declared.list["step"]), 0.0);
    ASSERT_TRUE(dialog && dialog->isVisible()) << "each is to be mended first";
    EXPECT_TRUE(dialog->grid()->cellWidget(0, 1)->hasFocus());
    type(0, " 1.5e-2 ");
    EXPECT_FALSE(dialog && dialog->isVisible());
    EXPECT_EQ(double(declared.list["step"]), 0.015);
}

TEST_F(WorkstationTest, TheGridKeepsItsEditorsWhileValuesChange)
{
    declared_dialog declared({"a(A),int", "b(B),int,,,,#a*2", "color(Color),int,0,(1<<25)-1,hex(##)"}, false);
    auto* const dialog = window.findChild<host::CVariableDialog*>();
    ASSERT_NE(dialog, nullptr);
    const QPointer<host::CVariableDialog> alive(dialog);
    auto* const first = qobject_cast<QLineEdit*>(dialog->grid()->cellWidget(0, 1));
    auto* const second = qobject_cast<QLineEdit*>(dialog->grid()->cellWidget(1, 1));
    ASSERT_TRUE(first && second);
    dialog->activateWindow();
    settle();
    EXPECT_TRUE(first->hasFocus()) << "typing may begin at once";
    const auto tab = [](QWidget& field, Qt::Key key) {
        QKeyEvent press(QEvent::KeyPress, key, key == Qt::Key_Tab ? Qt::NoModifier : Qt::ShiftModifier);
        QApplication::sendEvent(&field, &press);
    };
    tab(*first, Qt::Key_Tab);
    EXPECT_TRUE(second->hasFocus());
    EXPECT_EQ(second->selectedText(), second->text()) << "what is typed replaces it";
    tab(*second, Qt::Key_Backtab);
    EXPECT_TRUE(first->hasFocus());
    first->setText("21");
    first->setModified(true);
    emit first->editingFinished();
    settle();
    EXPECT_EQ(second->text(), "42") << "follows at once";
    EXPECT_EQ(dialog->grid()->cellWidget(0, 1), first);
    EXPECT_TRUE(first->hasFocus());
    second->setText("4");
    second->setModified(true); // is being typed
    declared.list.set_var("color", "0x0000ff");
    settle();
    EXPECT_EQ(second->text(), "4");
    auto* const patch = dialog->grid()->cellWidget(2, 1)->findChild<QToolButton*>();
    ASSERT_NE(patch, nullptr);
    const QImage color = patch->icon().pixmap(patch->iconSize()).toImage();
    EXPECT_EQ(color.pixelColor(color.rect().center()), QColor(Qt::red)) << "red in the low byte";
    declared.declare({"new(New),boolean"});
    declared.model.grid().Refresh();
    settle();
    ASSERT_EQ(dialog->grid()->rowCount(), 1) << "other rows, other editors";
    EXPECT_NE(qobject_cast<QCheckBox*>(dialog->grid()->cellWidget(0, 1)), nullptr);
    declared.model.EndDialog(CVarListDlg::resultOk);
    EXPECT_FALSE(dialog->isVisible()) << "the window goes with its dialog";
    settle();
    EXPECT_TRUE(alive.isNull());
}

TEST_F(WorkstationTest, APathIsAskedForWithItsFilter)
{
    declared_dialog declared{"path(Target Path),string,filepath(\"AVI Files (*.avi)|*.avi\",1)"};
    host::CVariableDialog dialog(declared.model, &window);
    QStringList filters;
    QTimer::singleShot(0, [&] {
        auto* const asked = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(asked, nullptr);
        filters = asked->nameFilters();
        EXPECT_EQ(asked->acceptMode(), QFileDialog::AcceptSave);
        EXPECT_EQ(asked->defaultSuffix(), "avi");
        asked->selectFile(QString::fromStdString((folder / "film").string()));
        QMetaObject::invokeMethod(asked, "accept");
    });
    dialog.grid()->cellWidget(0, 1)->findChild<QToolButton*>()->click();
    EXPECT_EQ(filters, QStringList{"AVI Files (*.avi)"});
    EXPECT_EQ(std::string(declared.list["path"].as_string().c_str()), (folder / "film.avi").string());
}

} // namespace
