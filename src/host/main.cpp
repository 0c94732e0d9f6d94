// velmira: the workstation.
#include "base/text.h"
#include "base/variables/option_functions.h"
#include "entry/Application.h"
#include "entry/open_files.h"
#include "host/QtHost.h"
#include "host/WorkstationApp.h"
#include "host/peer/path_text.h"
#include "host/termination.h"
#include "host/window/BoxStyle.h"
#include "host/window/MainWindow.h"
#include "host/window/command_door.h"
#include "host/window/window_places.h"
#include "paint/qt_fonts.h"
#include "platform/files/paths.h"
#include "platform/profile/profile_store.h"
#include "recovery/state_path.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QIcon>
#include <QImage>
#include <QImageWriter>
#include <QPixmap>
#include <QScreen>
#include <QTimer>
#include <algorithm>
#include <clocale>
#include <iostream>
#include <string_view>

using namespace vldv;

namespace {

constexpr int storeInterval = 2000; // milliseconds
constexpr int keepInterval = 25;    // milliseconds; the copy of unsaved work is behind by not much more
constexpr QSize usualSize(1280, 860);
constexpr int endedBySystem = 128 + 15; // as shells tell of SIGTERM
constexpr int settleTime = 1500;        // milliseconds until everything is laid out and rendered

/// A dark-to-light strip with a step: heights in colours.
QIcon program_icon()
{
    constexpr int side = 64;
    QImage picture(side, side, QImage::Format_RGB32);
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x) {
            const int height = (x + 2 * (y > side / 2 ? side - y : y)) * 255 / (2 * side);
            picture.setPixel(x, y, qRgb(std::min(255, height * 2), height, height * height / 255 / 2));
        }
    return QIcon(QPixmap::fromImage(picture));
}

constexpr const char* screenshot = "screenshot";

void declare(QCommandLineParser& options)
{
    options.setApplicationDescription(QStringLiteral("Opens what a scanning-probe microscope recorded."));
    options.addHelpOption();
    options.addVersionOption();
    options.addOption({screenshot, QStringLiteral("Saves a picture of the window and ends."), QStringLiteral("FILE")});
    options.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("Files to open"), QStringLiteral("[FILE...]"));
}

/// Help and version need no display, and without one the toolkit would end the program first.
void tell_and_end_when_asked(int count, char** arguments)
{
    constexpr std::string_view questions[] = {"-h", "--help", "--help-all", "-v", "--version"};
    char** const end = arguments + count;
    if (std::find_first_of(arguments, end, std::begin(questions), std::end(questions)) == end) return;
    QCoreApplication plain(count, arguments);
    QCoreApplication::setApplicationName(QStringLiteral("velmira"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VLDV_VERSION));
    QCommandLineParser options;
    declare(options);
    options.process(plain);
}

/// The toolkit aborts without a display and says so in words of its own.
bool has_display(int count, char** arguments)
{
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        if (!qEnvironmentVariableIsEmpty(name)) return true;
    return std::find(arguments, arguments + count, std::string_view("-platform")) != arguments + count;
}

/// The files of a call in full: opening one changes the current folder.
std::vector<std::wstring> full_paths(const QStringList& named)
{
    std::vector<std::wstring> files;
    for (const QString& path : named)
        files.push_back(platform::full_path(platform::expanded_home(host::path_of_text(path))));
    return files;
}

/// Saves a picture of the window once it shows what was opened, and ends.
void take_screenshot(host::CMainWindow& window, const QString& path)
{
    QTimer::singleShot(settleTime, &window, [&window, path] {
        QImageWriter writer(path);
        const bool isSaved = writer.write(window.grab().toImage());
        if (!isSaved)
            std::cerr << "velmira: " << path.toStdString() << ": " << writer.errorString().toStdString() << '\n';
        QApplication::exit(isSaved ? 0 : 1);
    });
}

} // namespace

int main(int count, char** arguments)
{
    tell_and_end_when_asked(count, arguments);
    if (!has_display(count, arguments)) {
        std::cerr << "velmira: there is no display; vldv tells, measures and draws without one\n";
        return 1;
    }
    // Moving a window that lies under another one, the toolkit would copy the pixels of both.
    qputenv("QT_NO_FAST_MOVE", "1");
    host::CWorkstationApp toolkit(count, arguments);
    QApplication::setStyle(new host::CBoxStyle);
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setApplicationName(QStringLiteral("velmira"));
    QApplication::setApplicationVersion(QStringLiteral(VLDV_VERSION));
    QApplication::setWindowIcon(program_icon());
    CProfileStore profile(platform::profile_path());
    paint::register_fonts();
    host::CQtHost machine(profile);
    CVldvApp app(machine);
    host::CMainWindow window(app);
    machine.setMainWindow(&window);
    toolkit.onFailure = [&machine](const std::string& reason) { machine.messageBox(reason, message_icon::error); };
    if (!host::restore_places(window, profile)) window.resize(usualSize.boundedTo(window.screen()->availableSize()));
    window.show();
    host::fit_to_screen(window);
    constexpr int untilFramed = 300; // milliseconds: a window manager tells of its frame when the window is up
    QTimer::singleShot(untilFramed, &window, [&window] { host::fit_to_screen(window); });
    const auto keep = [&window, &profile] {
        host::keep_places(window, profile);
        profile.flush();
    };
    // Sessions end without asking.
    host::on_termination(window, [keep, &app] {
        keep();
        app.leaveWork();
        QApplication::exit(endedBySystem);
    });
    QCommandLineParser options;
    declare(options);
    QStringList words; // the toolkit's own list has lost bytes that are no UTF-8
    for (int i = 0; i < count; ++i) words << host::text_of_path(base::widen(arguments[i]));
    options.process(words);
    const std::vector<std::wstring> files = full_paths(options.positionalArguments());
    QTimer::singleShot(0, &window, [&] {
        app.keepWork(recovery::state_path());
        host::run_named("Open", [&] { entry::open_files(app, files); });
        window.rebuildMenus();
    });
    if (options.isSet(screenshot)) take_screenshot(window, QFileInfo(options.value(screenshot)).absoluteFilePath());
    // Changes are collected and stored together, soon after they were made.
    QTimer keeper;
    QObject::connect(&keeper, &QTimer::timeout, [&profile] { profile.flush(); });
    keeper.start(storeInterval);
    QTimer copier;
    QObject::connect(&copier, &QTimer::timeout, [&app] { app.stepKeeping(); });
    copier.start(keepInterval);
    if (!profile.error().empty()) machine.output(profile.error());
    const int status = QApplication::exec();
    machine.interfaceQueue()->close();
    toolkit.onFailure = nullptr;
    keep();
    app.closeAllFrames();
    machine.setMainWindow(nullptr);
    return status;
}
