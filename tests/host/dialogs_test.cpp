// Widgets of dialogs, driven as a user does, and paper.
#include "host/WorkstationApp.h"
#include "host/dialogs/ListChooserDialog.h"
#include "host/dialogs/WindowsDialog.h"
#include "host/dialogs/file_dialog.h"
#include "host/peer/qt_printing.h"
#include "host/window/preview_pane.h"
#include "host/window/tiling.h"
#include "platform/draw/DC.h"
#include "resources/strings.h"
#include "workstation_fixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPrinter>
#include <QPushButton>
#include <QRegion>
#include <QTimer>

namespace {

TEST(ListChooserDialog, ButtonsMoveEntriesBetweenTheLists)
{
    CListChooser model;
    model.title = "Choose";
    model.chosenHeading = "Chosen";
    model.sources = {{"First", {"a", "b"}, ""}, {"Second", {"c"}, " (2)"}};
    host::CListChooserDialog dialog(model, nullptr);
    dialog.show();
    auto* const first = dialog.findChild<QListWidget*>(QStringLiteral("First"));
    auto* const chosen = dialog.findChild<QListWidget*>(QStringLiteral("Chosen"));
    ASSERT_TRUE(first && chosen);
    const auto press = [&dialog](const char* text, int which = 0) {
        for (QPushButton* button : dialog.findChildren<QPushButton*>())
            if (button->text() == text && which-- == 0) return button->click();
        FAIL() << text;
    };
    first->item(1)->setSelected(true);
    press(">");
    press(">>", 1);
    ASSERT_EQ(chosen->count(), 2);
    EXPECT_EQ(chosen->item(1)->text(), "c (2)");
    chosen->setCurrentRow(1);
    press("Up");
    EXPECT_EQ(chosen->item(0)->text(), "c (2)");
    EXPECT_EQ(chosen->currentRow(), 0);
    chosen->clearSelection();
    chosen->item(1)->setSelected(true);
    press("<");
    EXPECT_EQ(model.chosen, (std::vector<CListChooser::entry>{{1, "c"}}));
}

TEST(WindowsDialog, ActivatesOneOrClosesSeveral)
{
    const std::vector<std::wstring> titles = {L"a", L"b", L"c"};
    const auto press = [](const host::CWindowsDialog& dialog, const char* text) {
        for (QPushButton* button : dialog.findChildren<QPushButton*>())
            if (button->text() == text) button->click();
    };
    host::CWindowsDialog first(titles, 1, nullptr);
    press(first, "&Activate");
    EXPECT_EQ(first.choice().activated, 1u) << "the active one is chosen already";
    host::CWindowsDialog second(titles, titles.size(), nullptr);
    auto* const list = second.findChild<QListWidget*>();
    list->item(0)->setSelected(true);
    list->item(2)->setSelected(true);
    press(second, "&Close windows");
    EXPECT_EQ(second.choice().closed, (std::vector<std::size_t>{0, 2}));
    EXPECT_GE(second.choice().activated, titles.size());
}

TEST(WorkstationApp, WhatAHandlerThrowsIsToldOnceAndEndsNothing)
{
    struct thrower : QObject {
        bool event(QEvent* event) override
        {
            if (event->type() == QEvent::User) throw std::bad_alloc();
            return QObject::event(event);
        }
    } receiver;
    auto& toolkit = dynamic_cast<host::CWorkstationApp&>(*qApp);
    std::vector<std::string> told;
    toolkit.onFailure = [&](const std::string& reason) { told.push_back(reason); };
    for (int i = 0; i < 3; ++i) QApplication::postEvent(&receiver, new QEvent(QEvent::User));
    EXPECT_TRUE(waits_for([&] { return !told.empty(); }));
    EXPECT_EQ(told, std::vector<std::string>{"There is not enough memory for this."});
    QApplication::postEvent(&receiver, new QEvent(QEvent::User));
    EXPECT_TRUE(waits_for([&] { return told.size() == 2; })) << "the next one is told again";
    toolkit.onFailure = nullptr;
}

TEST(Host, AQuestionWhileTheProgramIsBusyHasAPointerToAnswerWith)
{
    const temporary_folder folder;
    CProfileStore profile(folder / "profile");
    host::CQtHost machine(profile);
    const auto shape = [] { return QApplication::overrideCursor() ? QApplication::overrideCursor()->shape() : -1; };
    machine.waitCursor(true);
    int asked = -1;
    QTimer::singleShot(0, [&] {
        asked = shape();
        QApplication::activeModalWidget()->close();
    });
    machine.messageBox("It could not be saved.", message_icon::warning);
    EXPECT_EQ(asked, Qt::ArrowCursor);
    EXPECT_EQ(shape(), Qt::WaitCursor);
    machine.waitCursor(false);
    EXPECT_EQ(shape(), -1);
}

TEST(PreviewPane, ShowsTheFileOnWhichTheUserStays)
{
    const temporary_folder folder;
    write_file(folder / "a.spm", "x");
    write_file(folder / "b.spm", "x");
    std::vector<std::wstring> asked;
    open_prompt prompt;
    prompt.preview = [&](const std::wstring& path) {
        asked.push_back(path);
        return file_preview{{2, 1}, {0xFF0000, 0x0000FF}, "two pixels"};
    };
    QFileDialog dialog(nullptr, {}, QString::fromStdString(folder.path.string()));
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    host::add_preview(dialog, prompt);
    auto* const text = dialog.findChild<QLabel*>(QStringLiteral("preview.text"));
    auto* const picture = dialog.findChild<QLabel*>(QStringLiteral("preview.picture"));
    ASSERT_TRUE(text && picture);
    emit dialog.currentChanged(QString::fromStdString((folder / "a.spm").string()));
    emit dialog.currentChanged(QString::fromStdString((folder / "b.spm").string()));
    ASSERT_TRUE(waits_for([&] { return !text->text().isEmpty(); }));
    EXPECT_EQ(text->text(), "two pixels");
    EXPECT_EQ(asked, std::vector<std::wstring>{(folder / "b.spm").wstring()});
    const QImage shown = picture->pixmap().toImage();
    ASSERT_EQ(shown.size(), QSize(220, 110)); // as large as the pane holds
    EXPECT_EQ(shown.pixelColor(109, 0), QColor(Qt::red));
    EXPECT_EQ(shown.pixelColor(110, 109), QColor(Qt::blue));
    auto* const name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    ASSERT_TRUE(name);
    name->setText(QStringLiteral("a.sp"));
    ASSERT_TRUE(waits_for([&] { return text->text().isEmpty(); })) << "no file yet";
    name->setText(QStringLiteral("a.spm"));
    ASSERT_TRUE(waits_for([&] { return !text->text().isEmpty(); }));
    EXPECT_EQ(asked.back(), (folder / "a.spm").wstring());
    dialog.findChild<QCheckBox*>()->setChecked(false);
    EXPECT_TRUE(text->text().isEmpty());
}

TEST(Tiling, CoversTheAreaWithoutOverlap)
{
    EXPECT_EQ(host::tiles(2, {101, 50}, true), (std::vector<QRect>{{0, 0, 50, 50}, {50, 0, 51, 50}}));
    EXPECT_EQ(host::tiles(2, {100, 50}, false), (std::vector<QRect>{{0, 0, 100, 25}, {0, 25, 100, 25}}));
    for (int count = 1; count < 12; ++count) {
        int covered = 0;
        QRegion all;
        for (const QRect& tile : host::tiles(count, {97, 53}, count % 2 == 0)) {
            covered += tile.width() * tile.height();
            all += tile;
        }
        EXPECT_EQ(covered, 97 * 53) << count;
        EXPECT_EQ(all, QRegion(0, 0, 97, 53)) << count;
    }
}

TEST(FileDialog, TypesAreNamedWithoutAllTheirPatterns)
{
    QFileDialog dialog;
    host::prepare_file_dialog(dialog, string_resource(1025));
    const auto* const types = dialog.findChild<QComboBox*>(QStringLiteral("fileTypeCombo"));
    ASSERT_TRUE(types);
    EXPECT_EQ(types->itemText(0), "All known formats");
    for (int i = 0; i < types->count(); ++i) EXPECT_LT(types->itemText(i).size(), 40) << i;
    EXPECT_TRUE(dialog.nameFilters().front().contains("*.ibw")) << "which it still looks for";
}

TEST(Printing, WritesTheSheetAndTellsWhenItCannot)
{
    const temporary_folder folder;
    CSize sheet, dots;
    const print_job job{L"a[Height]",
                        [&](CDC& dc, int page) {
                            EXPECT_TRUE(dc.IsPrinting());
                            sheet = dc.deviceSize();
                            dots = dc.dotsPerInch();
                            dc.TextOut(10, 10, L"Roughness");
                            return page < 2;
                        },
                        true};
    QPrinter printer;
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setPageSize(QPageSize(QPageSize::A4));
    printer.setResolution(300);
    printer.setOutputFileName(QString::fromStdString((folder / "page.pdf").string()));
    EXPECT_TRUE(host::draw_job(printer, job));
    EXPECT_EQ(dots, (CSize{300, 300}));
    EXPECT_NEAR(sheet.cx, 210 / 25.4 * 300, 2) << "the whole sheet";
    EXPECT_NEAR(sheet.cy, 297 / 25.4 * 300, 2);
    const std::string pdf = file_content(folder / "page.pdf");
    EXPECT_TRUE(pdf.starts_with("%PDF"));
    EXPECT_NE(pdf.find("/Count 3"), std::string::npos) << "as long as pages follow";
    EXPECT_NE(pdf.find("/Font"), std::string::npos) << "text stays text";
    printer.setOutputFileName(QString::fromStdString((folder / "no" / "page.pdf").string()));
    EXPECT_FALSE(host::draw_job(printer, job));
}

} // namespace
