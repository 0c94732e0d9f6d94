#include "paint/windowless_toolkit.h"

#include <QGuiApplication>

namespace vldv::paint {

void start_windowless_toolkit()
{
    if (QGuiApplication::instance()) return;
    // For the rest of the program: fonts outlive a picture, and the toolkit keeps references to count and arguments.
    static char program[] = "vldv", option[] = "-platform", platform[] = "offscreen";
    static char* arguments[] = {program, option, platform, nullptr};
    static int count = 3;
    // Notes about the session's folders are of no use to a program without windows.
    const auto before = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    static const QGuiApplication toolkit(count, arguments);
    qInstallMessageHandler(before);
}

} // namespace vldv::paint
