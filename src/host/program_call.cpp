#include "host/program_call.h"

#include "base/text.h"
#include "host/peer/path_text.h"
#include "platform/files/paths.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFileInfo>
#include <algorithm>
#include <string_view>

namespace vldv::host {

namespace {

constexpr const char* screenshot = "screenshot";

void declare(QCommandLineParser& options)
{
    options.setApplicationDescription(QStringLiteral("Opens what a scanning-probe microscope recorded."));
    options.addHelpOption();
    options.addVersionOption();
    options.addOption({screenshot, QStringLiteral("Saves a picture of the window and ends."), QStringLiteral("FILE")});
    options.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("Files to open"), QStringLiteral("[FILE...]"));
}

} // namespace

void tell_and_end_when_asked(int count, char** arguments, const QString& version)
{
    constexpr std::string_view questions[] = {"-h", "--help", "--help-all", "-v", "--version"};
    char** const end = arguments + count;
    if (std::find_first_of(arguments, end, std::begin(questions), std::end(questions)) == end) return;
    QCoreApplication plain(count, arguments);
    QCoreApplication::setApplicationName(QStringLiteral("velmira"));
    QCoreApplication::setApplicationVersion(version);
    QCommandLineParser options;
    declare(options);
    options.process(plain);
}

bool has_display(int count, char** arguments)
{
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        if (!qEnvironmentVariableIsEmpty(name)) return true;
    return std::find(arguments, arguments + count, std::string_view("-platform")) != arguments + count;
}

program_call read_call(int count, char** arguments)
{
    QCommandLineParser options;
    declare(options);
    QStringList words; // the toolkit's own list has lost bytes that are no UTF-8
    for (int i = 0; i < count; ++i) words << text_of_path(base::widen(arguments[i]));
    options.process(words);
    program_call call;
    for (const QString& path : options.positionalArguments())
        call.files.push_back(platform::full_path(platform::expanded_home(path_of_text(path))));
    if (options.isSet(screenshot)) call.screenshot = QFileInfo(options.value(screenshot)).absoluteFilePath();
    return call;
}

} // namespace vldv::host
