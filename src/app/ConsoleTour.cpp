#include "app/ConsoleTour.h"

#include "app/Application.h"
#include "app/Demonstration.h"
#include "app/TourStage.h"
#include "core/base/AppPaths.h"
#include "core/base/ProgramLog.h"
#include "core/settings/Settings.h"
#include "tour/TourHand.h"
#include "tour/TourLooks.h"
#include "tour/TourRunner.h"
#include "tour/TourScript.h"

#include <QApplication>

namespace {

// The main window as the pictures want it: wide enough for a log that can be read.
void Prepare(const QString& settingsFile, const IStringSource& strings)
{
    Settings settings(settingsFile, strings);
    settings.SetLogWidth(470);
    settings.SetWindowPlacement({.x = 40, .y = 60, .width = 1000, .height = 640});
}

// Warnings about what the platform without a screen cannot do would only clutter the tour's output.
void WriteToLog(QtMsgType, const QMessageLogContext&, const QString& text)
{
    ProgramLog::Write(text);
}

std::vector<TourStep> Steps(const IStringSource& strings, Demonstration& demonstration, const QString& script)
{
    std::vector<TourWord> words = TourStageWords(demonstration);
    for (const std::vector<TourWord>& more : {TourHandWords(), TourLookWords()})
        words.insert(words.end(), more.begin(), more.end());
    return TourScript(words, TourTexts(strings, TourStageNames(demonstration))).Read(script);
}

} // namespace

QString DefaultTourScript()
{
    return AppPaths::OwnFile(QStringLiteral("tour/console.tour"));
}

int RunConsoleTour(const IStringSource& strings, const QString& folder, const QString& script)
{
    Demonstration demonstration(folder, strings);
    const std::vector<TourStep> steps = Steps(strings, demonstration, script);
    demonstration.Clean();
    ProgramLog::Open(demonstration.Folder());
    qInstallMessageHandler(WriteToLog);
    Prepare(demonstration.SettingsFile(), strings);
    demonstration.StartRadio(QStringLiteral("tour"), demonstration.TraceFile());

    Application application(strings);
    application.StartUp(demonstration.SettingsFile());
    TourRunner runner(demonstration.Folder(), steps);
    // Queued: the end may come while a dialog of a failed step is still open.
    QObject::connect(
        &runner, &TourRunner::Finished, qApp, [] { QApplication::exit(); }, Qt::QueuedConnection);
    runner.Start();
    QApplication::exec();
    application.ShutdownApplication();
    return runner.Failed() ? 1 : 0;
}
