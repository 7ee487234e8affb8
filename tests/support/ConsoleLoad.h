#pragma once

#include "core/eventlog/EventLog.h"
#include "core/texts/StringSourceImpl.h"
#include "support/TestDatabase.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QTest>
#include <vector>

// One console's work on a shared database: log records, and now and then duty, groups or an entry of the
// directory.
class ConsoleLoad {
public:
    struct Report {
        QStringList records; // descriptions of all records that the log has taken
        int counted = 0;     // acknowledged additions to the counter in the entry "Counter"
        int doubtful = 0;    // additions of which the server did not say whether they were done
        QStringList errors;  // what an operator would have been told and should not have
    };

    ConsoleLoad(const TestDatabase& database, int number, const QString& spoolFolder)
        : m_session(database),
          m_log(m_session, m_strings, spoolFolder),
          m_number(number),
          m_random(static_cast<quint32>(number))
    {
    }

    Report Run(int records, int otherPercent, std::chrono::milliseconds longest)
    {
        const QDeadlineTimer deadline(longest);
        for (int i = 0; i < records && !deadline.hasExpired(); ++i) {
            AppendRecord(i);
            if (m_random.bounded(100) < otherPercent)
                Try([this] { ChangeSomething(); });
            QCoreApplication::processEvents();
        }
        if (!QTest::qWaitFor([this] { return m_log.Waiting() == 0; }, 60000))
            m_report.errors.append("records still wait");
        return m_report;
    }

    // Starts a console as a process of its own; it writes its report to a file.
    static pid_t Start(const TestDatabase& database, int number, const QString& folder, int records,
                       int otherPercent, std::chrono::milliseconds longest)
    {
        const pid_t child = fork();
        if (child != 0)
            return child;
        Report report;
        for (bool again = true; again;) {
            again = false;
            try {
                report = ConsoleLoad(database, number, folder + "/" + QString::number(number))
                             .Run(records, otherPercent, longest);
            } catch (const std::exception& failure) {
                again = !TestServer::IsWanted(); // locked by the others: the operator logs on again
                if (!again)
                    report.errors.append(failure.what());
            }
        }
        QFile file(ReportFile(folder, number));
        if (file.open(QIODevice::WriteOnly)) {
            for (const QString& record : report.records)
                file.write("record " + record.toUtf8() + '\n');
            for (const QString& error : report.errors)
                file.write("error " + error.toUtf8().replace('\n', ' ') + '\n');
            file.write("count " + QByteArray::number(report.counted) + "\ndoubt " +
                       QByteArray::number(report.doubtful) + '\n');
        }
        file.close();
        _exit(0);
    }

    static Report ReadReport(const QString& folder, int number)
    {
        Report report;
        QFile file(ReportFile(folder, number));
        if (!file.open(QIODevice::ReadOnly))
            report.errors.append("no report of console " + QString::number(number));
        while (!file.atEnd()) {
            const QString line = QString::fromUtf8(file.readLine()).trimmed();
            const QString value = line.section(' ', 1);
            if (line.startsWith("record "))
                report.records.append(value);
            else if (line.startsWith("error "))
                report.errors.append(value);
            else if (line.startsWith("count "))
                report.counted = value.toInt();
            else if (line.startsWith("doubt "))
                report.doubtful = value.toInt();
        }
        return report;
    }

    // What the load needs in the directory.
    static void Prepare(const TestDatabase& database)
    {
        const auto workspace = database.Open();
        const auto address = workspace->Database().OpenTable("address");
        const auto add = [&](const QString& callsign, int type) {
            address->AddNew();
            address->SetField("callsign", callsign);
            address->SetField("IDENT", callsign);
            address->SetField("Type", type);
            address->SetField("note", "0");
            address->Update();
        };
        add("Counter", 1);
        for (int i = 0; i < units; ++i)
            add("Unit" + QString::number(i), 1);
        add("Group", 2);
    }

private:
    static constexpr int units = 20;

    static QString ReportFile(const QString& folder, int number)
    {
        return folder + "/report" + QString::number(number);
    }

    void AppendRecord(int i)
    {
        const QString desc = QStringLiteral("%1-%2").arg(m_number).arg(i);
        m_report.records.append(desc);
        try {
            m_log.AppendLogRecord(QDateTime::currentDateTimeUtc(), EventType::Text, desc, "A", "B");
        } catch (const std::exception&) {
            if (m_log.Waiting() == 0) // not kept either: the operator was told so
                m_report.records.removeLast();
        }
    }

    void Try(const std::function<void()>& change)
    {
        try {
            change();
        } catch (const dao::Error& error) {
            // Another console was faster, or the server is away: that is told and tried again. Files make
            // each other wait.
            const bool told = error.kind == dao::Kind::ServerAway || error.kind == dao::Kind::RecordChanged ||
                              error.kind == dao::Kind::DuplicateKey ||
                              (error.kind == dao::Kind::Locked && !TestServer::IsWanted());
            if (!told)
                m_report.errors.append(error.what());
        }
    }

    void ChangeSomething()
    {
        dao::Database& database = m_session.Database();
        const QString unit = "Unit" + QString::number(m_random.bounded(units));
        switch (m_random.bounded(3)) {
        case 0: {
            const auto duty = database.QueryDef("update_duty_status");
            duty->SetParameter("cs", unit);
            duty->SetParameter("ds", m_random.bounded(2) == 0);
            duty->Execute();
            break;
        }
        case 1:
            Regroup(unit);
            break;
        default:
            Count();
        }
    }

    void Regroup(const QString& unit)
    {
        dao::Database& database = m_session.Database();
        const auto address = database.OpenTable("address");
        address->SetIndex("i_callsign");
        address->Seek(QString("Group"));
        const QVariant group = address->Field("address_id");
        address->Seek(unit);
        const int position = m_random.bounded(3);
        if (m_random.bounded(2) == 0) {
            const auto ungroup = database.QueryDef("ungroup");
            ungroup->SetParameter("gi", group);
            ungroup->SetParameter("p", position);
            ungroup->Execute();
            return;
        }
        const auto members = database.OpenTable("dynamic_regroup");
        members->AddNew();
        members->SetField("group_id", group);
        members->SetField("member_id", address->Field("address_id"));
        members->SetField("pos", position);
        members->Update();
    }

    // Adds one to what the entry "Counter" holds: a lost update would show.
    void Count()
    {
        const auto address = m_session.Database().OpenTable("address");
        address->SetIndex("i_callsign");
        address->Seek(QString("Counter"));
        address->Edit();
        address->SetField("note", QString::number(address->Field("note").toInt() + 1));
        try {
            address->Update();
            ++m_report.counted;
        } catch (const dao::Error& error) {
            m_report.doubtful += error.kind == dao::Kind::ServerAway ? 1 : 0;
            throw;
        }
    }

    CStringSourceImpl m_strings{QStringList{}};
    TestSession m_session;
    EventLog m_log;
    int m_number;
    QRandomGenerator m_random;
    Report m_report;
};
