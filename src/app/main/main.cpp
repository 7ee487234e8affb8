#include "app/Application.h"
#include "app/CommandLine.h"
#include "app/ConsoleTour.h"
#include "app/Demonstration.h"
#include "app/EndRequest.h"
#include "app/TextIds.h"
#include "core/base/AppPaths.h"
#include "core/base/CoreDumps.h"
#include "core/base/FileLock.h"
#include "core/base/ProgramLog.h"
#include "core/settings/Settings.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSourceImpl.h"
#include "core/widgets/ReadableSelection.h"
#include "dao/base/FileAccess.h"

#include <QApplication>
#include <QFileInfo>
#include <QIcon>
#include <QMessageBox>
#include <cstdio>

namespace {

constexpr int Failed = 1;
constexpr int WrongArguments = 2;

void ShowBox(const QString& text)
{
    QMessageBox box(QMessageBox::Critical, QString::fromLatin1(AppPaths::Title), text, QMessageBox::Ok);
    box.setObjectName(QStringLiteral("startBox"));
    box.exec();
}

void Print(const QString& text, FILE* stream = stdout)
{
    std::fputs(text.toLocal8Bit().constData(), stream);
    std::fflush(stream);
}

QString Version()
{
    return QStringLiteral(VELTORKYN_VERSION);
}

// The console on one settings file, until its main window is closed.
int RunConsole(const IStringSource& strings, const QString& settingsFile)
{
    Application application(strings);
    EndRequest end;
    QObject::connect(&end, &EndRequest::Received, &end, [&application] { application.EndAtOnce(); });
    dao::MakePrivateFolder(QFileInfo(settingsFile).absolutePath());
    FileLock lock(settingsFile + QStringLiteral(".lock"));
    if (lock.TryLock() == FileLock::Result::HeldByAnother) {
        ShowBox(strings.LoadString(AppText::AlreadyRunning));
        return Failed;
    }
    try {
        application.StartUp(settingsFile);
    } catch (const std::exception& failure) {
        ShowBox(FormatMessage(strings, AppText::StartFailed,
                              {DescribeError(failure, strings), application.StageName()}));
        return Failed;
    }
    const int result = QApplication::exec();
    application.ShutdownApplication();
    return result;
}

int RunDemonstration(const IStringSource& strings, const QString& folder)
{
    Demonstration demonstration(folder, strings);
    ProgramLog::Open(demonstration.Folder());
    demonstration.CreateDatabase();
    demonstration.WriteSettings();
    demonstration.StartRadio(QStringLiteral("busy-day"));
    Print(QStringLiteral("The demonstration is kept in %1. Log on as\n").arg(demonstration.Folder()));
    for (const Demonstration::Account& account : {Demonstration::Operator, Demonstration::Administrator}) {
        Print(QStringLiteral("  %1   password %2   %3\n")
                  .arg(account.user, -8)
                  .arg(account.password, -12)
                  .arg(account.administrator ? QStringLiteral("administrator") : QStringLiteral("operator")));
    }
    return RunConsole(strings, demonstration.SettingsFile());
}

// The language that somebody has chosen, if there is one; a file that cannot be read is told of later.
void ChooseLanguage(CStringSourceImpl& source, const QString& settingsFile)
{
    try {
        const Settings settings(settingsFile, source);
        bool isNumber = false;
        const quint16 language =
            settings.Read(QStringLiteral("Language"), QStringLiteral("LangID"), {}).toUShort(&isNumber, 16);
        if (isNumber)
            source.SetLangID(language);
    } catch (const std::exception& failure) {
        ProgramLog::Write(QString::fromUtf8(failure.what()));
    }
}

int Run(const CommandLine& line)
{
    CStringSourceImpl source;
    if (line.mode == CommandLine::Mode::Console)
        ChooseLanguage(source, line.settingsFile.isEmpty() ? Settings::DefaultFile() : line.settingsFile);
    const IStringSource& strings = source.CreateStringSource(QStringLiteral("CKYN"));
    try {
        switch (line.mode) {
        case CommandLine::Mode::Tour:
            return RunConsoleTour(strings, line.folder,
                                  line.script.isEmpty() ? DefaultTourScript() : line.script);
        case CommandLine::Mode::Demonstration:
            return RunDemonstration(strings, line.folder);
        default:
            break;
        }
        ProgramLog::Open(AppPaths::StateFolder());
        return RunConsole(strings, line.settingsFile.isEmpty() ? Settings::DefaultFile() : line.settingsFile);
    } catch (const std::exception& failure) {
        Print(DescribeError(failure, strings) + QLatin1Char('\n'), stderr);
        return Failed;
    }
}

// A Wayland session does not let a window stay on top, come to the front or choose its place; its X server
// does.
void ChoosePlatform(bool tour)
{
    if (qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        return;
    if (tour)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    else if (qEnvironmentVariableIsSet("WAYLAND_DISPLAY") && qEnvironmentVariableIsSet("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "xcb;wayland");
}

} // namespace

int main(int argc, char** argv)
{
    ForbidCoreDumps();
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    const CommandLine line = CommandLine::Parse(arguments);
    switch (line.mode) {
    case CommandLine::Mode::Help:
        Print(CommandLine::Help());
        return 0;
    case CommandLine::Mode::Version:
        Print(QStringLiteral("VeltorKyn %1\n").arg(Version()));
        return 0;
    case CommandLine::Mode::Wrong:
        Print(QStringLiteral("veltorkyn: %1\n").arg(line.problem), stderr);
        Print(CommandLine::Help(), stderr);
        return WrongArguments;
    default:
        break;
    }
    ChoosePlatform(line.mode == CommandLine::Mode::Tour);
    QApplication::setApplicationName(QString::fromLatin1(AppPaths::Title));
    QApplication::setApplicationVersion(Version());
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication application(argc, argv);
    QApplication::setPalette(WithReadableSelection(QApplication::palette()));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/veltorkyn/icons/veltorkyn.svg")));
    return Run(line);
}
