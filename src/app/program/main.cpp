#include <QApplication>
#include <QCoreApplication>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "app/CommandLine.h"
#include "app/ConvertCommand.h"
#include "app/forms/ConvertOnScreen.h"
#include "app/forms/SubMain.h"
#include "common/Version.h"

namespace {

std::vector<std::string> ArgumentsOf(int argc, char** argv) {
    return {argv + 1, argv + argc};
}

void NameProgram() {
    QCoreApplication::setApplicationName("Marisonde");
    QCoreApplication::setApplicationVersion(
        QString::fromUtf8(marisonde::kVersion.data(), marisonde::kVersion.size()));
}

/// Scripts convert files on computers that have no display.
int ConvertWithoutDisplay(int argc, char** argv, const marisonde::CommandLine& line) {
    const QCoreApplication application(argc, argv);
    NameProgram();
    return marisonde::RunConversion(line);
}

QtMessageHandler usualMessages = nullptr;

/// Off screen the toolkit says of every dialog that there is no window manager to tell its size to.
void PassOverSizeHints(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (!text.contains(QLatin1String("propagateSizeHints"))) usualMessages(type, context, text);
}

/// Where there is no screen the toolkit advises to install it anew, and breaks off.
void EndWithoutScreen(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (type == QtFatalMsg && text.contains(QLatin1String("no Qt platform plugin could be initialized"))) {
        std::fputs("marisonde: There is no screen to show a window on. 'marisonde convert' needs none.\n",
                   stderr);
        std::_Exit(1);
    }
    PassOverSizeHints(type, context, text);
}

bool HasScreen() {
#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
#else
    return true;
#endif
}

void PassOverPlatformMessages(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (!QByteArray(context.category).startsWith("qt.qpa")) PassOverSizeHints(type, context, text);
}

/// A screen that is named may be gone, as after a remote login: the file is converted all the same.
int ConvertOnScreen(int argc, char** argv, const marisonde::CommandLine& line) {
    usualMessages = qInstallMessageHandler(PassOverPlatformMessages);
    QByteArray platform = qgetenv("QT_QPA_PLATFORM");
#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
    if (platform.isEmpty()) platform = qEnvironmentVariableIsEmpty("DISPLAY") ? "wayland" : "xcb";
#endif
    if (!platform.isEmpty()) qputenv("QT_QPA_PLATFORM", platform + ";offscreen");
    const QApplication application(argc, argv);
    NameProgram();
    QApplication::setQuitOnLastWindowClosed(false);
    return marisonde::RunConvertOnScreen(line.files);
}

}  // namespace

int main(int argc, char** argv) {
    using marisonde::CommandLine;
    const CommandLine line = marisonde::ParseCommandLine(ArgumentsOf(argc, argv));
    switch (line.mode) {
        case CommandLine::Mode::Help:
            std::fputs(marisonde::HelpText().c_str(), stdout);
            return 0;
        case CommandLine::Mode::Version:
            std::printf("marisonde %.*s\n", static_cast<int>(marisonde::kVersion.size()),
                        marisonde::kVersion.data());
            return 0;
        case CommandLine::Mode::Bad:
            std::fprintf(stderr, "marisonde: %s\nTry 'marisonde --help'.\n", line.message.c_str());
            return 2;
        case CommandLine::Mode::Convert:
            if (HasScreen()) return ConvertOnScreen(argc, argv, line);
            return ConvertWithoutDisplay(argc, argv, line);
        case CommandLine::Mode::ConvertFiles:
            return ConvertWithoutDisplay(argc, argv, line);
        default:
            break;
    }
    usualMessages = qInstallMessageHandler(EndWithoutScreen);
    QApplication application(argc, argv);
    NameProgram();
    QGuiApplication::setDesktopFileName("marisonde");
    QApplication::setQuitOnLastWindowClosed(false);
    return marisonde::SubMain(line);
}
