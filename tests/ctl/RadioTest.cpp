// The commands about the radio, with the simulated radio at the other end of a real connection.

#include "ctl/CtlRun.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

// On a pseudo terminal.
class Radio {
public:
    Radio(const QString& link, const QStringList& switches)
    {
        const QString program = QFileInfo(QStringLiteral(VELTORKYNCTL)).path() + "/veltorkyn-radio";
        m_process.start(program, QStringList{"--pty", link, "--scenario", "tour"} + switches);
        while (m_process.waitForReadyRead(10000) && !m_process.readAllStandardOutput().contains("ready")) {
        }
    }
    ~Radio()
    {
        m_process.terminate();
        m_process.waitForFinished(5000);
    }

private:
    QProcess m_process;
};

TEST(RadioCommands, ACheckFindsAFaultAndItsTraceShowsIt)
{
    const QTemporaryDir folder;
    const QString port = folder.filePath("radio");
    const QString trace = folder.filePath("trace.jsonl");
    const Radio radio(port, {"--fault", "high-network-bits=1"});
    const CtlRun check = RunCtl({"radio", "check", "--watch", "0", "--json", "--trace", trace, port});
    EXPECT_EQ(check.code, 1);
    EXPECT_TRUE(check.err.contains("deviates from the standard in 2 points")) << check.err.toStdString();
    const QJsonObject report = QJsonDocument::fromJson(check.out).object();
    EXPECT_EQ(report["deviations"].toInt(), 2) << check.out.toStdString();
    EXPECT_EQ(report["struck"].toArray().at(0).toObject()["name"].toString(), "network-bits");
    EXPECT_EQ(report["items"].toArray().at(0).toObject()["verdict"].toString(), "ok");

    EXPECT_FALSE(QFile::permissions(trace) & (QFileDevice::ReadGroup | QFileDevice::ReadOther));
    const CtlRun explained = RunCtl({"trace", "explain", "--findings", trace});
    EXPECT_EQ(explained.code, 0);
    EXPECT_TRUE(explained.out.contains("!! radio, network-bits: ")) << explained.out.toStdString();
    EXPECT_TRUE(explained.out.contains("< LT 5  NETWORK INFORMATION: channel 325"))
        << explained.out.toStdString();
    ExpectFailure(RunCtl({"radio", "check", "--trace", trace, port}), "trace.jsonl");
}

// One frame, what comes behind it in the file, and another frame; with what is said on standard error.
TEST(RadioCommands, ATraceIsReadBeyondItsBadLines)
{
    const QByteArray good = R"({"ms":61001,"dir":"R>D","frame":"16 10 02 01 0E 01 01 10 03 8A 09"})";
    struct Row {
        QByteArray more;
        int code;
        QByteArray said;
        bool goesOn = true;
    };
    const Row rows[] = {
        {"\n", 0, ""},
        {"\r\n\r\n", 0, ""},
        {"\n{\"ms\":2,\"di", 0, "the last line of - is cut off", false},
        {"\n{\"ms\":2,\"event\":\"said\"}\n", 1, "line 2, column 1: \"message\" is missing"},
        {"\n{\"ms\":2,\"di\n", 1, "standard input, line 2, column 12: the line ends within a text"},
        {"\n\n[]\n", 1, "standard input, line 3, column 1: "},
        {"\n{\"ms\":2,\"dir\":\"R>D\",\"frame\":\"16 G0\"}\n", 1, "line 2, column 33: not a pair"},
        {"\n" + QByteArray(300000, ' ') + "\n", 1,
         "line 2, column 1: the line is longer than any of a trace"},
    };
    for (const Row& row : rows) {
        const CtlRun run =
            RunCtl({"trace", "explain", "-"}, good + row.more + (row.goesOn ? good + '\n' : ""));
        EXPECT_EQ(run.code, row.code) << row.said.toStdString();
        EXPECT_TRUE(row.said.isEmpty() ? run.err.isEmpty() : run.err.contains(row.said))
            << run.err.toStdString() << " lacks " << row.said.toStdString();
        EXPECT_EQ(run.out.count("00:01:01.001 < LR N1=14 k=1 version 1"), row.goesOn ? 2 : 1)
            << run.out.toStdString();
        EXPECT_TRUE(row.code == 0 || run.err.contains("one line is no part of a trace"))
            << run.err.toStdString();
    }
    EXPECT_EQ(RunCtl({"trace", "explain", "-"}, "\xEF\xBB\xBF" + good + '\n').code, 0) << "an editor's mark";
    ExpectFailure(RunCtl({"trace", "explain", "-"}, "\n"), "there is no line of a trace");
}

} // namespace
