#include "ctl/CtlRun.h"

#include <QProcess>
#include <gtest/gtest.h>
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

CtlRun RunWithPasswords(const QStringList& arguments, const QByteArray& passwords)
{
    return RunCtl(arguments + QStringList("--password-stdin"), passwords);
}

void ExpectFailure(const CtlRun& run, const QByteArray& reason, int code)
{
    EXPECT_EQ(run.code, code);
    EXPECT_EQ(run.out, "");
    EXPECT_TRUE(run.err.startsWith("veltorkynctl: ") && run.err.contains(reason))
        << run.err.toStdString() << " lacks " << reason.toStdString();
}
