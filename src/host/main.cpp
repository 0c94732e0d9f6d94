// velmira: the workstation.
#include "base/variables/option_functions.h"
#include "entry/Application.h"
#include "entry/open_files.h"
#include "host/QtHost.h"
#include "host/WorkstationApp.h"
#include "host/menus/command_door.h"
#include "host/program_call.h"
#include "host/termination.h"
#include "host/window/BoxStyle.h"
#include "host/window/MainWindow.h"
#include "host/window/window_places.h"
#include "paint/qt_fonts.h"
#include "platform/files/paths.h"
#include "platform/profile/profile_store.h"
#include "recovery/state_path.h"

#include <QIcon>
#include <QImage>
#include <QImageWriter>
#include <QPixmap>
#include <QScreen>
#include <QTimer>
#include <algorithm>
#include <clocale>
#include <iostream>

using namespace vldv;

namespace {

constexpr int storeInterval = 2000; // milliseconds
constexpr int keepInterval = 25;    // milliseconds; the copy of unsaved work is behind by not much more
constexpr int untilFramed = 300;    // milliseconds: a window manager tells of its frame when the window is up
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

void set_up_toolkit()
{
    QApplication::setStyle(new host::CBoxStyle);
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setApplicationName(QStringLiteral("velmira"));
    QApplication::setApplicationVersion(QStringLiteral(VLDV_VERSION));
    QApplication::setWindowIcon(program_icon());
    paint::register_fonts();
}

void show_where_it_was(host::CMainWindow& window, const IProfile& profile)
{
    if (!host::restore_places(window, profile)) window.resize(usualSize.boundedTo(window.screen()->availableSize()));
    window.show();
    host::fit_to_screen(window);
    QTimer::singleShot(untilFramed, &window, [&window] { host::fit_to_screen(window); });
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

/// What was called for is done in the event loop, which runs with it.
void do_once_running(const host::program_call& call, CVldvApp& app, host::CMainWindow& window)
{
    QTimer::singleShot(0, &window, [&] {
        app.keepWork(recovery::state_path());
        host::run_named("Open", [&] { entry::open_files(app, call.files); });
        window.rebuildMenus();
    });
    if (!call.screenshot.isEmpty()) take_screenshot(window, call.screenshot);
}

/// Changes of the profile are stored together, soon after they were made; unsaved work is kept all the time.
int run_keeping(CVldvApp& app, CProfileStore& profile)
{
    QTimer keeper, copier;
    QObject::connect(&keeper, &QTimer::timeout, [&profile] { profile.flush(); });
    keeper.start(storeInterval);
    QObject::connect(&copier, &QTimer::timeout, [&app] { app.stepKeeping(); });
    copier.start(keepInterval);
    return QApplication::exec();
}

} // namespace

int main(int count, char** arguments)
{
    host::tell_and_end_when_asked(count, arguments, QStringLiteral(VLDV_VERSION));
    if (!host::has_display(count, arguments)) {
        std::cerr << "velmira: there is no display; vldv tells, measures and draws without one\n";
        return 1;
    }
    // Moving a window that lies under another one, the toolkit would copy the pixels of both.
    qputenv("QT_NO_FAST_MOVE", "1");
    host::CWorkstationApp toolkit(count, arguments);
    set_up_toolkit();
    CProfileStore profile(platform::profile_path());
    host::CQtHost machine(profile);
    CVldvApp app(machine);
    host::CMainWindow window(app);
    machine.setMainWindow(&window);
    toolkit.onFailure = [&machine](const std::string& reason) { machine.messageBox(reason, message_icon::error); };
    show_where_it_was(window, profile);
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
    const host::program_call call = host::read_call(count, arguments);
    do_once_running(call, app, window);
    if (!profile.error().empty()) machine.output(profile.error());
    const int status = run_keeping(app, profile);
    machine.interfaceQueue()->close();
    toolkit.onFailure = nullptr;
    keep();
    app.closeAllFrames();
    machine.setMainWindow(nullptr);
    return status;
}
