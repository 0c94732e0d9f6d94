#include "host/window/window_places.h"

#include "platform/app/Host.h"

#include <QMainWindow>
#include <QScreen>
#include <QStatusBar>
#include <QWindow>
#include <algorithm>

namespace vldv::host {

namespace {

constexpr const char *section = "Workstation", *geometryKey = "Geometry", *stateKey = "State",
                     *statusBarKey = "StatusBar";
constexpr int layoutVersion = 1; ///< another number forgets where docks and toolbars were

QByteArray read(const IProfile& profile, const char* key)
{
    const auto kept = profile.readBinary(section, key);
    return kept ? QByteArray(reinterpret_cast<const char*>(kept->data()), static_cast<qsizetype>(kept->size()))
                : QByteArray();
}

void write(IProfile& profile, const char* key, const QByteArray& bytes)
{
    profile.writeBinary(section, key,
                        std::as_bytes(std::span(bytes.constData(), static_cast<std::size_t>(bytes.size()))));
}

} // namespace

bool restore_places(QMainWindow& window, const IProfile& profile)
{
    const bool isPlaced = window.restoreGeometry(read(profile, geometryKey));
    window.restoreState(read(profile, stateKey), layoutVersion);
    window.statusBar()->setVisible(profile.readInt(section, statusBarKey).value_or(1) != 0);
    return isPlaced;
}

void fit_to_screen(QWidget& window)
{
    // The widget hears of a size from the command line only when the window system tells of it.
    QWindow* const shown = window.windowHandle();
    if (!shown || window.isMaximized() || window.isFullScreen()) return;
    const QRect available = window.screen()->availableGeometry();
    const QMargins frame = shown->frameMargins();
    const QSize fitting = shown->size().boundedTo(available.marginsRemoved(frame).size());
    if (fitting == shown->size()) return;
    QRect place(shown->position(), fitting);
    place.moveRight(std::min(place.right(), available.right() - frame.right()));
    place.moveBottom(std::min(place.bottom(), available.bottom() - frame.bottom()));
    shown->setGeometry(place);
}

void keep_places(const QMainWindow& window, IProfile& profile)
{
    const CProfileBatch together(profile);
    write(profile, geometryKey, window.saveGeometry());
    write(profile, stateKey, window.saveState(layoutVersion));
    const auto* const status = window.findChild<QStatusBar*>();
    profile.writeInt(section, statusBarKey, !status || !status->isHidden());
}

} // namespace vldv::host
