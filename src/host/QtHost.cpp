#include "host/QtHost.h"

#include "base/text.h"
#include "host/dialogs/FailuresDialog.h"
#include "host/dialogs/FormDialog.h"
#include "host/dialogs/ListChooserDialog.h"
#include "host/dialogs/PictureChooserDialog.h"
#include "host/dialogs/VariableDialog.h"
#include "host/dialogs/WindowsDialog.h"
#include "host/dialogs/file_dialog.h"
#include "host/dialogs/file_dialog_options.h"
#include "host/menus/QtMenu.h"
#include "host/menus/command_door.h"
#include "host/menus/qt_menus.h"
#include "host/peer/QtScreen.h"
#include "host/peer/path_text.h"
#include "host/peer/trash.h"
#include "host/window/MainWindow.h"
#include "host/window/QtFrame.h"
#include "host/window/QtGridPane.h"
#include "host/window/QtPanes.h"
#include "host/window/preview_pane.h"
#include "platform/app/WinApp.h"

#include <QApplication>
#include <QFileDialog>
#include <QMdiArea>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <algorithm>

namespace vldv::host {

namespace {

constexpr QSize openDialogSize(960, 560); // names, sizes and dates; beside them the preview

/// What a prompt stands over: the dialog that asks, a view in full screen, else the main window.
QWidget* prompt_parent(QWidget* main)
{
    if (QWidget* const dialog = QApplication::activeModalWidget()) return dialog;
    QWidget* const active = QApplication::activeWindow();
    return active ? active : main;
}

/// While something is read or saved the pointer is busy; what comes up meanwhile needs one to answer with.
class answering_pointer {
public:
    answering_pointer() : isBusy(QApplication::overrideCursor() != nullptr)
    {
        if (isBusy) QApplication::setOverrideCursor(Qt::ArrowCursor);
    }
    answering_pointer(const answering_pointer&) = delete;
    answering_pointer& operator=(const answering_pointer&) = delete;
    ~answering_pointer()
    {
        if (isBusy) QApplication::restoreOverrideCursor();
    }

private:
    bool isBusy;
};

} // namespace

CQtHost::CQtHost(IProfile& profile_) : store(profile_), clips(make_clipboard()), display(make_screen())
{
    interfaceQueue()->open(
        [this] { QMetaObject::invokeMethod(this, [this] { interfaceQueue()->runNext(); }, Qt::QueuedConnection); });
}

// First the queue: other threads wake this object.
CQtHost::~CQtHost() { interfaceQueue()->close(); }

void CQtHost::messageBox(const std::string& text, message_icon icon)
{
    const answering_pointer pointer;
    const QMessageBox::Icon shown = icon == message_icon::error     ? QMessageBox::Critical
                                    : icon == message_icon::warning ? QMessageBox::Warning
                                                                    : QMessageBox::Information;
    QMessageBox box(shown, QStringLiteral("Velmira"), QString::fromStdString(text), QMessageBox::Ok,
                    prompt_parent(main));
    box.exec();
}

bool CQtHost::askYesNo(const std::string& text)
{
    const answering_pointer pointer;
    return QMessageBox::question(prompt_parent(main), QStringLiteral("Velmira"), QString::fromStdString(text)) ==
           QMessageBox::Yes;
}

void CQtHost::showFailures(const std::vector<file_failure>& failures)
{
    const answering_pointer pointer;
    CFailuresDialog dialog(failures, prompt_parent(main));
    dialog.exec();
}

std::optional<std::size_t> CQtHost::ask(const question& asked)
{
    const answering_pointer pointer;
    QMessageBox box(QMessageBox::Question, QStringLiteral("Velmira"), QString::fromStdString(asked.text),
                    QMessageBox::NoButton, prompt_parent(main));
    std::vector<QPushButton*> buttons;
    for (const std::string& answer : asked.answers)
        buttons.push_back(box.addButton(QString::fromStdString(answer), QMessageBox::ActionRole));
    if (!buttons.empty()) {
        box.setDefaultButton(buttons.front());
        box.setEscapeButton(buttons[std::min(asked.escape.value_or(buttons.size() - 1), buttons.size() - 1)]);
    }
    box.exec();
    const auto chosen = std::ranges::find(buttons, box.clickedButton(),
                                          [](QPushButton* each) { return static_cast<QAbstractButton*>(each); });
    if (chosen == buttons.end()) return std::nullopt;
    return static_cast<std::size_t>(chosen - buttons.begin());
}

bool CQtHost::moveToTrash(const std::wstring& path) { return move_to_trash(path); }

std::vector<std::wstring> CQtHost::askOpenPaths(const open_prompt& prompt)
{
    const answering_pointer pointer;
    QFileDialog dialog(prompt_parent(main), QStringLiteral("Open"), QString::fromStdWString(prompt.folder));
    dialog.setFileMode(prompt.several ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile);
    prepare_file_dialog(dialog, prompt.filter);
    const int previewWidth = add_preview(dialog, prompt);
    add_open_options(dialog, prompt);
    size_file_dialog(dialog, openDialogSize + QSize(previewWidth, 0));
    if (dialog.exec() != QDialog::Accepted) return {};
    std::vector<std::wstring> paths;
    for (const QString& path : dialog.selectedFiles()) paths.push_back(path_of_text(path));
    return paths;
}

std::optional<std::wstring> CQtHost::askSavePath(const save_prompt& prompt)
{
    const answering_pointer pointer;
    QFileDialog dialog(prompt_parent(main), QString::fromStdString(prompt.title));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    if (!prompt.asksToReplace) dialog.setOption(QFileDialog::DontConfirmOverwrite);
    prepare_file_dialog(dialog, prompt.filter);
    if (!prompt.extension.empty()) dialog.setDefaultSuffix(QString::fromStdString(prompt.extension));
    dialog.selectFile(QString::fromStdWString(prompt.suggestedPath));
    const std::unique_ptr<filter_choice> choice = add_filter_choice(dialog, prompt);
    size_file_dialog(dialog, dialog.sizeHint());
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    if (choice && prompt.filters->taken) prompt.filters->taken(choice->chosen());
    return path_of_text(dialog.selectedFiles().front());
}

void CQtHost::runDialog(CDialog& dialog)
{
    const answering_pointer pointer;
    CFormDialog window(dialog, prompt_parent(main));
    window.exec();
}

void CQtHost::runVariableDialog(CVarListDlg& dialog)
{
    const answering_pointer pointer;
    CVariableDialog window(dialog, prompt_parent(main));
    window.exec();
}

bool CQtHost::showVariableDialog(CVarListDlg& dialog)
{
    auto* const window = new CVariableDialog(dialog, main);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->show();
    return true;
}

window_choice CQtHost::chooseWindows(const std::vector<std::wstring>& titles)
{
    const CWinApp* const app = AfxGetApp();
    std::size_t active = titles.size();
    for (std::size_t i = 0; app && i < app->frames().size(); ++i)
        if (app->frames()[i].get() == app->activeFrame()) active = i;
    CWindowsDialog window(titles, active, prompt_parent(main));
    window.exec();
    return window.choice();
}

bool CQtHost::runListChooser(CListChooser& chooser)
{
    CListChooserDialog window(chooser, main);
    return window.exec() == QDialog::Accepted;
}

bool CQtHost::runPictureChooser(CPictureChooser& chooser)
{
    CPictureChooserDialog window(chooser, prompt_parent(main));
    return window.exec() == QDialog::Accepted;
}

void CQtHost::runPageSetup(CRect& margins) { printer.setUp(margins, main); }

void CQtHost::print(const print_job& job)
{
    if (!printer.print(job, main))
        messageBox("\"" + base::narrow(job.title) + "\" could not be printed.", message_icon::warning);
}

void CQtHost::previewPrint(const print_job& job) { printer.preview(job, main); }

// Not QApplication::quit, which closes the windows first and so asks a second time what to save.
void CQtHost::quit()
{
    QMetaObject::invokeMethod(qApp, [] { QApplication::exit(); }, Qt::QueuedConnection);
}

void CQtHost::trackPopupMenu(const std::vector<menu_row>& rows, CPoint point, CCmdTarget& target)
{
    CQtMenu menu(main);
    const auto route = [&](unsigned id, CCmdUI* ui) {
        const auto send = [&] { return target.OnCmdMsg(id, ui); };
        return ui ? send() : run_command(id, send);
    };
    const auto supply = [&](unsigned first, std::vector<menu_item>& items) {
        return target.AppendMenuItems(first, items);
    };
    fill_menu(menu, rows, {.route = route, .items = supply});
    if (!menu.isEmpty()) menu.exec(QPoint(point.x, point.y));
}

void CQtHost::refreshLooks()
{
    if (main) main->rebuildMenus();
}

void CQtHost::setStatusText(const std::wstring& text)
{
    if (main) main->showStatus(QString::fromStdWString(text));
}

void CQtHost::output(const std::string& line)
{
    if (main) main->addOutput(QString::fromStdString(line));
}

std::unique_ptr<IWindowPeer> CQtHost::createWindow(CWnd& logic, CWnd* parent, window_kind kind)
{
    QWidget* const inside = widget_of(parent);
    switch (kind) {
    case window_kind::frame:
        if (!main) return nullptr;
        return std::make_unique<CQtFrame>(logic, main->area());
    case window_kind::text:
        return std::make_unique<CQtTextPane>(logic, inside);
    case window_kind::table:
        return std::make_unique<CQtTablePane>(logic, inside);
    case window_kind::grid:
        return std::make_unique<CQtGridPane>(logic, inside);
    case window_kind::overlay: {
        auto* const widget = new QWidget(inside);
        widget->setAttribute(Qt::WA_TransparentForMouseEvents);
        widget->hide();
        return std::make_unique<CQtPeer>(logic, widget);
    }
    default: {
        auto* const widget = new QWidget(inside, kind == window_kind::popup ? Qt::Tool : Qt::Widget);
        // What the logic does not paint is erased by the logic, and nothing by the toolkit.
        widget->setAttribute(Qt::WA_OpaquePaintEvent);
        // A click into a control is one into its view, which keeps the focus.
        widget->setFocusPolicy(kind == window_kind::child ? Qt::NoFocus : Qt::StrongFocus);
        widget->show();
        return std::make_unique<CQtPeer>(logic, widget);
    }
    }
}

IClipboard* CQtHost::clipboard() { return clips.get(); }
IScreen* CQtHost::screen() { return display.get(); }

CRect CQtHost::frameArea() const
{
    if (!main) return {};
    const QWidget* const inside = main->area().viewport();
    const QPoint corner = inside->mapToGlobal(QPoint(0, 0));
    return CRect({corner.x(), corner.y()}, CSize{inside->width(), inside->height()});
}

int CQtHost::systemDpi() const
{
    const QScreen* const first = QApplication::primaryScreen();
    return first ? qRound(first->logicalDotsPerInch()) : 0;
}

void CQtHost::waitCursor(bool on)
{
    if (on) {
        interfaceQueue()->hold(); // progress delivers events, and what is read may be half there
        reading.begin();
        QApplication::setOverrideCursor(Qt::WaitCursor);
    } else {
        reading.end(); // first: it has a cursor of its own on top
        QApplication::restoreOverrideCursor();
        interfaceQueue()->resume();
    }
}

bool CQtHost::progress(double done) { return reading.tell(done, prompt_parent(main)); }

} // namespace vldv::host
