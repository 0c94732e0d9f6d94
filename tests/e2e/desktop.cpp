#include "e2e/desktop.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QPixmap>
#include <QProcessEnvironment>
#include <QScreen>
#include <QThread>
#include <csignal>
#include <string>
#include <unistd.h>

namespace {

pid_t display = 0;
constexpr int patience = 30'000, settling = 3'000, breath = 100; // milliseconds

/// True when no thread of a process runs.
bool is_waiting(qint64 process)
{
    const QDir threads(QStringLiteral("/proc/%1/task").arg(process));
    for (const QString& thread : threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile status(threads.filePath(thread + "/stat"));
        if (!status.open(QIODevice::ReadOnly)) continue;
        const QByteArray text = status.readAll();
        if (text.isEmpty()) continue;                                   // the thread has just ended
        const char state = text.mid(text.lastIndexOf(')') + 2).front(); // "NUMBER (NAME) STATE …"
        if (state == 'R' || state == 'D') return false;
    }
    return true;
}

} // namespace

bool desktop::start_display()
{
    int ends[2];
    if (pipe(ends) != 0) return false;
    display = fork();
    if (display == 0) {
        const std::string number = std::to_string(ends[1]);
        close(ends[0]);
        if (!freopen("/dev/null", "w", stderr)) _exit(1);
        execlp("Xvfb", "Xvfb", "-displayfd", number.c_str(), "-screen", "0", "1280x900x24", "-nolisten", "tcp",
               nullptr);
        _exit(1);
    }
    close(ends[1]);
    std::string number;
    for (char c = 0; read(ends[0], &c, 1) == 1 && c != '\n';) number += c;
    close(ends[0]);
    if (number.empty()) return false;
    qputenv("DISPLAY", (":" + number).c_str());
    qputenv("QT_QPA_PLATFORM", "xcb");
    return true;
}

void desktop::stop_display()
{
    if (display > 0) kill(display, SIGTERM);
}

desktop::desktop(const QString& folder, const QStringList& files)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_CONFIG_HOME", folder);
    environment.insert("XDG_DATA_HOME", folder);
    environment.insert("XDG_STATE_HOME", folder); // or one test recovers what another has left
    environment.insert("QT_SCALE_FACTOR", "1");
    program.setProcessEnvironment(environment);
    program.setProcessChannelMode(QProcess::ForwardedChannels);
    program.start(VLDV_VELMIRA, QStringList{"-geometry", "1280x900+0+0"} + files);
    program.waitForStarted();
}

desktop::~desktop()
{
    if (program.state() == QProcess::NotRunning) return;
    program.kill();
    program.waitForFinished();
}

QImage desktop::look() const
{
    return QGuiApplication::primaryScreen()->grabWindow(0).toImage().convertToFormat(QImage::Format_RGB32);
}

bool desktop::sees(const char* name, const std::function<bool(const QImage&)>& expected) const
{
    QElapsedTimer clock;
    clock.start();
    QImage screen = look();
    bool held = false;
    // Twice in a row: what just appears may be half drawn.
    for (int times = 0; times < 2 && clock.elapsed() < patience;) {
        times = expected(screen) ? times + 1 : 0;
        held = times == 2;
        QThread::msleep(breath);
        screen = look();
    }
    QDir().mkpath(VLDV_PICTURES);
    screen.save(QStringLiteral(VLDV_PICTURES "/%1.png").arg(name));
    return held;
}

bool desktop::act(const QStringList& what) const
{
    const bool done = QProcess::execute("xdotool", what) == 0;
    settle();
    return done;
}

void desktop::settle() const
{
    constexpr int looks = 5;
    QElapsedTimer clock;
    clock.start();
    for (int calm = 0; calm < looks && clock.elapsed() < settling;) {
        QThread::msleep(breath / looks);
        calm = is_waiting(program.processId()) && is_waiting(display) ? calm + 1 : 0;
    }
}

void desktop::takeFocus() const
{
    // A dialog that is just closing can end under the eyes of the search.
    for (int tries = 0; tries < 5 && !act({"search", "--name", "^Velmira$", "windowfocus"}); ++tries) continue;
}

void desktop::moveTo(QPoint at) const { act({"mousemove", QString::number(at.x()), QString::number(at.y())}); }

void desktop::click(QPoint at) const
{
    moveTo(at);
    act({"click", "1"});
}

void desktop::turnWheel(QPoint at, int notches, const QString& modifier) const
{
    moveTo(at);
    act({"keydown", modifier});
    act({"click", "--repeat", QString::number(std::abs(notches)), notches > 0 ? "4" : "5"});
    act({"keyup", modifier});
}

int desktop::waitForEnd() { return program.waitForFinished(patience) ? program.exitCode() : -1; }

int desktop::terminate()
{
    program.terminate();
    return waitForEnd();
}

void desktop::drag(QPoint from, QPoint to, const QString& modifier) const
{
    moveTo(from);
    if (!modifier.isEmpty()) act({"keydown", modifier});
    act({"mousedown", "1"});
    moveTo((from + to) / 2);
    moveTo(to);
    act({"mouseup", "1"});
    if (!modifier.isEmpty()) act({"keyup", modifier});
}
