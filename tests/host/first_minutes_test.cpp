// What a user meets first: the start page, tools, prompts and their keys, help.
#include "document/examples/examples.h"
#include "host/dialogs/FailuresDialog.h"
#include "host/dialogs/FormDialog.h"
#include "host/dialogs/HelpWindow.h"
#include "host/dialogs/ListChooserDialog.h"
#include "host/dialogs/VariableDialog.h"
#include "host/dialogs/WindowsDialog.h"
#include "host/dialogs/about.h"
#include "host/peer/command_icon.h"
#include "host/peer/qt_cursors.h"
#include "host/peer/trash.h"
#include "host/window/BoxStyle.h"
#include "host/window/window_places.h"
#include "platform/dialogs/ListChooser.h"
#include "platform/files/paths.h"
#include "view/scale/CustomPaletteDialog.h"
#include "workstation_fixture.h"

#include <QColorDialog>
#include <QDockWidget>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPushButton>
#include <QScreen>
#include <QStyleOption>
#include <QTableWidget>
#include <QTextBrowser>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <gtest/gtest.h>

namespace {

class FirstMinutes : public MainWindowTest<> {
protected:
    FirstMinutes()
    {
        qputenv("XDG_DATA_HOME", QByteArray::fromStdString(folder.path.string()));
        window.resize(1000, 700);
        settle();
    }
    std::wstring example()
    {
        document::example made = document::make_grains();
        CStorageDoc document;
        EXPECT_TRUE(document.addRecording(made.content));
        const std::wstring path = (folder / "a.spm").wstring();
        EXPECT_TRUE(document.DoSave(path.c_str(), false));
        return path;
    }
    QToolBar& tools() { return *window.findChild<QToolBar*>(QStringLiteral("main")); }
    QAction* tool(unsigned id)
    {
        for (QAction* const action : tools().actions())
            if (action->data().toUInt() == id) return action;
        return nullptr;
    }
    QFrame& page() { return *window.findChild<QFrame*>(QStringLiteral("start")); }
};

TEST_F(FirstMinutes, ToolsHavePicturesAndThePaletteStaysInItsPlace)
{
    const auto named = [&](const char* text) {
        return std::ranges::count_if(tools().actions(), [text](const QAction* each) { return each->text() == text; });
    };
    const auto strip = [&]() -> QRect {
        for (QAction* const action : tools().actions())
            if (action->text() == "Palette") return tools().actionGeometry(action);
        return {};
    };
    EXPECT_EQ(named("Open"), 1);
    const QRect before = strip();
    EXPECT_FALSE(before.isEmpty());
    app.OpenDocumentFile(example().c_str());
    settle();
    EXPECT_EQ(named("Open"), 1);
    EXPECT_EQ(strip(), before);
    ASSERT_TRUE(tool(6009));
    EXPECT_EQ(tool(6009)->statusTip(), "Select column") << "a sentence in the status bar";
    EXPECT_EQ(tool(6009)->toolTip(), "Column selection") << "a word beside the button";
    EXPECT_EQ(tool(57601)->toolTip(), "Open (Ctrl+O)");
    app.closeAllFrames();
    settle();
    EXPECT_EQ(strip(), before);
}

/// How much of a picture is drawn on, and the mean brightness there.
std::pair<double, double> coverage(const QIcon& icon, QIcon::Mode mode = QIcon::Normal)
{
    const QImage picture = icon.pixmap(QSize(48, 48), mode).toImage();
    double covered = 0.0, light = 0.0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) {
            const QColor color = picture.pixelColor(x, y);
            covered += color.alphaF();
            light += color.alphaF() * color.lightnessF();
        }
    return {covered / (picture.width() * picture.height()), covered > 0.0 ? light / covered : 0.0};
}

TEST_F(FirstMinutes, EveryToolHasAPictureInTheColourOfTheTheme)
{
    const QPalette before = QApplication::palette();
    for (const unsigned menu : menu_resource_ids())
        for (const unsigned id : toolbar_resource(menu)) {
            if (id == 0 || id == 10012) continue; // separator, strip
            QPalette theme;
            theme.setColor(QPalette::ButtonText, Qt::black);
            QApplication::setPalette(theme);
            const auto [covered, onLight] = coverage(host::command_icon(id));
            EXPECT_GT(covered, 0.03) << id;
            EXPECT_LT(covered, 0.8) << id;
            theme.setColor(QPalette::ButtonText, Qt::white);
            QApplication::setPalette(theme);
            EXPECT_GT(coverage(host::command_icon(id)).second, onLight + 0.1) << id;
            theme.setColor(QPalette::Disabled, QPalette::ButtonText, Qt::gray);
            EXPECT_LT(coverage(host::command_icon(id), QIcon::Disabled).first, covered) << id << ": steps back";
        }
    QApplication::setPalette(before);
    EXPECT_TRUE(host::command_icon(1).isNull());
}

TEST_F(FirstMinutes, TheStartPageOffersRecentFilesAndExamples)
{
    ASSERT_TRUE(page().isVisible());
    const auto button = [&](const QString& name) -> QPushButton* {
        for (auto* const each : page().findChildren<QPushButton*>())
            if (each->accessibleName() == name) return each;
        return nullptr;
    };
    ASSERT_TRUE(button("Grains on a tilted plane"));
    EXPECT_FALSE(button("a.spm"));
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(button("Grains on a tilted plane"), &enter);
    settle();
    ASSERT_EQ(app.frames().size(), 1u);
    EXPECT_TRUE(waits_for([&] { return page().isHidden(); }));
    app.OpenDocumentFile(example().c_str());
    app.closeAllFrames();
    EXPECT_TRUE(waits_for([&] { return page().isVisible(); }));
    ASSERT_TRUE(button("a.spm"));
    EXPECT_EQ(button("a.spm")->toolTip().toStdWString(), (folder / "a.spm").wstring());
    app.AddToRecentFileList((folder / "other" / "a.spm").wstring());
    const QString home = QString::fromStdString(folder.path.string());
    EXPECT_TRUE(waits_for([&] { return button("a.spm in " + home + "/other/") && button("a.spm in " + home + "/"); }));
    app.RemoveFromRecentFileList((folder / "other" / "a.spm").wstring());
    EXPECT_TRUE(waits_for([&] { return button("a.spm") != nullptr; }));
    button("a.spm")->click();
    settle();
    ASSERT_EQ(app.frames().size(), 1u);
    EXPECT_EQ(app.frames()[0]->GetWindowText().substr(0, 2), L"a[");
}

TEST_F(FirstMinutes, TheStartPageHasTheKeysAlsoBesideTheOutputPane)
{
    constexpr unsigned save = 57603, print = 57607, copy = 57634;
    const auto isPossible = [this](unsigned id) {
        CCmdUI ui{.m_nID = id};
        return window.route(id, &ui) && ui.enabled;
    };
    auto* const lines = window.findChild<QDockWidget*>(QStringLiteral("output"))->widget();
    lines->parentWidget()->show();
    settle();
    EXPECT_TRUE(page().isAncestorOf(window.focusWidget())) << "at the start";
    lines->setFocus();
    for (const unsigned id : {save, print, copy}) EXPECT_FALSE(isPossible(id)) << id << ": the pane is empty";
    window.addOutput("a line");
    for (const unsigned id : {save, print, copy}) EXPECT_TRUE(isPossible(id)) << id;
    app.OpenDocumentFile(example().c_str());
    EXPECT_TRUE(waits_for([&] { return page().isHidden(); }));
    app.closeAllFrames();
    EXPECT_TRUE(waits_for([&] { return page().isVisible(); }));
    EXPECT_TRUE(page().isAncestorOf(window.focusWidget())) << "the last window was closed";
    for (const unsigned id : {save, print, copy}) EXPECT_FALSE(isPossible(id)) << id;
}

void press(QWidget& widget, int key)
{
    QWidget* const focused = widget.focusWidget();
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(focused ? focused : &widget, &event);
}

/// Shows a dialog, presses a key and tells how it ended: 1 accepted, 0 rejected, -1 it stands.
int ended(QDialog& dialog, int key)
{
    dialog.show();
    settle();
    press(dialog, key);
    settle();
    return dialog.isVisible() ? -1 : dialog.result();
}

TEST_F(FirstMinutes, ReturnAndEscapeEndEveryDialog)
{
    for (const int key : {int{Qt::Key_Return}, int{Qt::Key_Enter}, int{Qt::Key_Escape}}) {
        const int wanted = key == Qt::Key_Escape ? QDialog::Rejected : QDialog::Accepted;
        CListChooser chooser;
        chooser.sources = {{"First", {"a"}, ""}};
        host::CListChooserDialog lists(chooser, nullptr);
        EXPECT_EQ(ended(lists, key), wanted) << "lists";
        host::CWindowsDialog windows({L"a"}, 0, nullptr);
        EXPECT_EQ(ended(windows, key), wanted) << "windows";
        host::CFailuresDialog failures({{L"/x/a", "/x/a: broken"}, {L"/x/b", "gone"}}, nullptr);
        EXPECT_EQ(ended(failures, key), wanted) << "failures";
        host::CHelpWindow help(nullptr);
        if (key == Qt::Key_Escape) { EXPECT_EQ(ended(help, key), wanted) << "help"; }

        declared_dialog width{"width(Width),int"};
        host::CVariableDialog variables(width.model, nullptr);
        EXPECT_EQ(ended(variables, key), wanted) << "variables, from the field with the focus";

        color_table table(4);
        CCustomPaletteDialog palette(table, nullptr, nullptr);
        host::CFormDialog form(palette, nullptr);
        form.show();
        settle();
        press(form, key);
        settle();
        EXPECT_FALSE(form.isVisible()) << "form";
        EXPECT_EQ(palette.result(), key == Qt::Key_Escape ? CDialog::resultCancel : CDialog::resultOk);
    }
}

TEST_F(FirstMinutes, ReturnInThePreviewOfASheetAsksToPrint)
{
    bool isAsked = false;
    QTimer::singleShot(0, [&] {
        auto* const preview = qobject_cast<QPrintPreviewDialog*>(QApplication::activeModalWidget());
        ASSERT_TRUE(preview);
        QTimer::singleShot(0, [&] {
            auto* const asked = qobject_cast<QPrintDialog*>(QApplication::activeModalWidget());
            isAsked = asked != nullptr;
            if (asked) asked->reject();
        });
        press(*preview, Qt::Key_Return);
        preview->reject();
    });
    machine.previewPrint({L"a", [](CDC&, int) { return false; }, true});
    EXPECT_TRUE(isAsked);
}

TEST_F(FirstMinutes, TheListOfFailuresNamesFilesAndReasons)
{
    host::CFailuresDialog dialog({{L"/x/a.spm", "/x/a.spm: main.xml is missing"}, {L"/x/b", "File /x/b is empty."}},
                                 nullptr);
    auto* const table = dialog.findChild<QTableWidget*>();
    ASSERT_EQ(table->rowCount(), 2);
    EXPECT_EQ(table->item(0, 0)->text(), "a.spm");
    EXPECT_EQ(table->item(0, 1)->text(), "main.xml is missing");
    EXPECT_EQ(table->item(1, 1)->text(), "File /x/b is empty.");
}

TEST_F(FirstMinutes, HelpComesWithF1AndAboutTellsWhatTheProgramIs)
{
    EXPECT_TRUE(window.route(10206, nullptr));
    settle();
    auto* const help = window.findChild<host::CHelpWindow*>();
    ASSERT_TRUE(help && help->isVisible());
    auto* const pages = help->findChild<QListWidget*>();
    auto* const text = help->findChild<QTextBrowser*>();
    for (int row = 0; row < pages->count(); ++row) {
        text->clear();
        pages->setCurrentRow(row == 0 ? 1 : 0);
        pages->setCurrentRow(row);
        EXPECT_GT(text->toPlainText().size(), 500) << row;
    }
    EXPECT_TRUE(window.route(10206, nullptr));
    EXPECT_EQ(window.findChildren<host::CHelpWindow*>().size(), 1);
    for (const char* part : {VLDV_TEST_VERSION, "GNU General Public License", "Qt 6", "libpng 1.", "FFTW 3"})
        EXPECT_TRUE(host::about_text().contains(part)) << part;
}

TEST_F(FirstMinutes, PlacesAreKept)
{
    auto* const output = window.findChild<QDockWidget*>(QStringLiteral("output"));
    EXPECT_TRUE(output->isHidden());
    window.addOutput("a line");
    window.addDockWidget(Qt::RightDockWidgetArea, output);
    window.resize(900, 640);
    settle();
    host::keep_places(window, profile);

    host::CMainWindow next(app);
    EXPECT_TRUE(host::restore_places(next, profile));
    EXPECT_EQ(next.size(), QSize(900, 640));
    auto* const restored = next.findChild<QDockWidget*>(QStringLiteral("output"));
    EXPECT_FALSE(restored->isHidden());
    EXPECT_EQ(next.dockWidgetArea(restored), Qt::RightDockWidgetArea);
    const QRect screen = next.screen()->availableGeometry();
    next.setGeometry(QRect(QPoint(20, 20), screen.size() + QSize(400, 300)));
    next.show();
    host::fit_to_screen(next);
    settle();
    EXPECT_TRUE(screen.contains(next.frameGeometry())) << "of another scale";
    CProfileStore empty(folder / "other");
    EXPECT_FALSE(host::restore_places(next, empty));
}

TEST_F(FirstMinutes, ColoursHaveASwatchAndAPicker)
{
    SPMVar rows[2];
    rows[0].Init("background(Background Color),int,0,(1<<25)-1,hex(##)");
    rows[1].Init("SelColor(Selection Color),int");
    rows[1].from_string("0x0064c800)");
    SPMVarList list;
    list.set_variables(rows, 2);
    CVarListDlg model;
    model.CreateModalDlg(&list, nullptr, platform::optionsLayout, nullptr);
    host::CVariableDialog dialog(model, &window);
    dialog.show();
    settle();
    for (int row = 0; row < 2; ++row) {
        auto* const swatch = dialog.findChildren<QToolButton*>().at(row);
        QTimer::singleShot(0, [&] {
            auto* const picker = qobject_cast<QColorDialog*>(QApplication::activeModalWidget());
            ASSERT_TRUE(picker);
            picker->setCurrentColor(QColor(0x12, 0x34, 0x56));
            picker->accept();
        });
        swatch->click();
        EXPECT_EQ(int(list.get_var(static_cast<unsigned>(row))), 0x563412) << "red in the low byte";
        settle();
        const QImage shown = swatch->icon().pixmap(swatch->iconSize()).toImage();
        EXPECT_EQ(shown.pixelColor(shown.width() / 2, shown.height() / 2), QColor(0x12, 0x34, 0x56));
    }
    auto* const digits = dialog.findChildren<QLineEdit*>().at(1);
    EXPECT_EQ(digits->text(), "#123456");
    for (const auto& [typed, kept] : {std::pair{"#0a0b0c", 0x0c0b0a}, {"0x0000ff", 0xff}, {"#nonsense", 0xff}}) {
        digits->setText(typed);
        digits->setModified(true);
        emit digits->editingFinished();
        EXPECT_EQ(int(list.get_var(1)), kept) << typed;
    }
    EXPECT_EQ(digits->text(), "#nonsense") << "stays to be mended";
    dialog.reject();
}

TEST(Boxes, AreSeenOnADarkGround)
{
    host::CBoxStyle style;
    QPalette dark;
    dark.setColor(QPalette::Window, QColor(0x2b, 0x2b, 0x2b));
    dark.setColor(QPalette::Base, QColor(0x23, 0x23, 0x23));
    dark.setColor(QPalette::WindowText, Qt::white);
    QStyleOptionButton box;
    box.rect = QRect(0, 0, 13, 13);
    box.palette = dark;
    box.state = QStyle::State_Enabled | QStyle::State_Off;
    QImage picture(13, 13, QImage::Format_RGB32);
    picture.fill(dark.color(QPalette::Window));
    QPainter painter(&picture);
    style.drawPrimitive(QStyle::PE_IndicatorCheckBox, &box, &painter, nullptr);
    for (const QPoint at : {QPoint(0, 6), QPoint(12, 6), QPoint(6, 0), QPoint(6, 12)})
        EXPECT_GT(picture.pixelColor(at).lightness(), 0x2b + 80) << at.x() << ' ' << at.y();
}

TEST(Cursors, EachModeHasItsOwnSign)
{
    std::vector<QImage> seen;
    for (auto shape = cursor_shape::crossPlus; shape <= cursor_shape::crossIsoline;
         shape = static_cast<cursor_shape>(static_cast<int>(shape) + 1)) {
        const QImage picture = host::qt_cursor(shape).pixmap().toImage();
        ASSERT_FALSE(picture.isNull());
        EXPECT_EQ(host::qt_cursor(shape).hotSpot(), QPoint(11, 11));
        for (const QImage& other : seen) EXPECT_NE(picture, other) << static_cast<int>(shape);
        seen.push_back(picture);
    }
}

TEST(Trash, IsMadeWhereTheUserHasNoDataFolder)
{
    const temporary_folder folder;
    qputenv("XDG_DATA_HOME", (folder / "no/such").c_str());
    std::ofstream(folder / "night.di") << "data";
    const bool moved = host::move_to_trash((folder / "night.di").wstring());
    qunsetenv("XDG_DATA_HOME");
    ASSERT_TRUE(moved);
    EXPECT_EQ(file_content(folder / "no/such/Trash/files/night.di"), "data");
    EXPECT_FALSE(std::filesystem::exists(folder / "files")) << "none beside the file";
}

TEST(Trash, TakesNamesThatAreNoUtf8)
{
    const temporary_folder folder;
    qputenv("XDG_DATA_HOME", (folder / "data").c_str());
    const std::filesystem::path file = folder / "night\xFF.di";
    std::ofstream(file) << "data";
    const bool moved = host::move_to_trash(platform::to_wide(file));
    qunsetenv("XDG_DATA_HOME");
    ASSERT_TRUE(moved);
    EXPECT_EQ(file_content(folder / "data/Trash/files/night%FF.di"), "data");
}

} // namespace
