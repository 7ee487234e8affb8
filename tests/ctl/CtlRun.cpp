#include "ctl/CtlRun.h"

#include <QFile>
#include <QProcess>
#include <stdexcept>

CtlRun RunCtl(const QStringList& arguments, const QByteArray& input)
{
    QProcess process;
    process.start(VELTORKYNCTL, arguments);
    if (!process.waitForStarted(10000))
        throw std::runtime_error("veltorkynctl does not start: " + process.errorString().toStdString());
    process.write(input);
    process.closeWriteChannel();
    const bool ended = process.waitForFinished(10000) && process.exitStatus() == QProcess::NormalExit;
    if (!ended)
        process.kill();
    return {ended ? process.exitCode() : -1, process.readAllStandardOutput(), process.readAllStandardError()};
}

QString WriteFile(const QString& folder, const QString& name, const QByteArray& content)
{
    QFile file(folder + '/' + name);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        throw std::runtime_error("cannot write " + file.fileName().toStdString());
    return file.fileName();
}
