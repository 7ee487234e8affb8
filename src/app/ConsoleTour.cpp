#include "app/ConsoleTour.h"

#include "app/Application.h"
#include "app/Demonstration.h"
#include "app/TourRunner.h"
#include "app/TourScript.h"
#include "core/ProgramLog.h"
#include "core/Settings.h"

#include <QApplication>

namespace {

// The main window as the pictures want it: wide enough for a log that can be read.
void Prepare(const QString& settingsFile, const IStringSource& strings)
{
    Settings settings(settingsFile, strings);
    settings.SetLogWidth(470);
    settings.SetWindowPlacement({.x = 40, .y = 60, .width = 1000, .height = 640});
}

// What the platform without a screen cannot do is no news to whoever reads the tour's output.
void WriteToLog(QtMsgType, const QMessageLogContext&, const QString& text)
{
    ProgramLog::Write(text);
}

} // namespace

int RunConsoleTour(const IStringSource& strings, const QString& folder)
{
    Demonstration demonstration(folder, strings);
    demonstration.Clean();
    ProgramLog::Open(demonstration.Folder());
    qInstallMessageHandler(WriteToLog);
    Prepare(demonstration.SettingsFile(), strings);
    demonstration.StartRadio(QStringLiteral("tour"), demonstration.TraceFile());

    Application application(strings);
    application.StartUp(demonstration.SettingsFile());
    TourScript script(strings, demonstration);
    TourRunner runner(demonstration.Folder(), script.Steps());
    // Queued: the end may come while a dialog of a failed step is still open.
    QObject::connect(
        &runner, &TourRunner::Finished, qApp, [] { QApplication::exit(); }, Qt::QueuedConnection);
    runner.Start();
    QApplication::exec();
    application.ShutdownApplication();
    return runner.Failed() ? 1 : 0;
}
