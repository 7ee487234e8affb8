#include "core/eventlog/MissingRecords.h"

#include "core/base/ProgramLog.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/texts/TextIds.h"
#include "dao/Workspace.h"

#include <QLocale>
#include <utility>

namespace {

QString TimeText(const QDateTime& time)
{
    const QDateTime local = time.toLocalTime();
    return QLocale().toString(local.date(), QLocale::ShortFormat) + u' ' +
           local.time().toString(QStringLiteral("HH:mm:ss"));
}

// The newest of them was stored last, so that a server that has it has all before it.
MissingRecords::Report LookAt(const StoredRecords::Content& kept, const QSet<QString>& there)
{
    MissingRecords::Report report;
    if (kept.records.isEmpty() || kept.older.isEmpty() || there.contains(kept.records.first().id) ||
        there.contains(kept.older.last().recordId))
        return report;
    report.olderMissing = true;
    report.to = kept.records.first().time;
    for (const StoredRecords::Mark& mark : kept.older)
        if (there.contains(mark.recordId))
            report.from = mark.time;
    return report;
}

} // namespace

MissingRecords::MissingRecords(QString folder, QString databaseId)
    : m_folder(std::move(folder)),
      m_databaseId(std::move(databaseId))
{
}

void MissingRecords::Follow(dao::Workspace& workspace, const Store& store)
{
    // Once more after it: the server may have changed meanwhile.
    for (QString server; !(server = workspace.ServerIdentity()).isEmpty() && server != m_server;) {
        if (!m_stored)
            m_stored = std::make_unique<StoredRecords>(m_folder, m_databaseId);
        if (m_stored->Server().isEmpty())
            Begin(workspace, server);
        else if (m_stored->Server() != server)
            SendAgain(workspace, server, store);
        m_server = server;
    }
}

// What is there by now is older than what will be kept.
void MissingRecords::Begin(dao::Workspace& workspace, const QString& server)
{
    if (const auto newest = dao::EventTable::Newest(workspace.Database()))
        m_stored->AddOlder(*newest);
    m_stored->SetServer(server);
}

void MissingRecords::SendAgain(dao::Workspace& workspace, const QString& server, const Store& store)
{
    const StoredRecords::Content kept = m_stored->Read();
    QStringList ids;
    for (const LogRecord& record : kept.records)
        ids.append(record.id);
    for (const StoredRecords::Mark& mark : kept.older)
        ids.append(mark.recordId);
    const QSet<QString> there = dao::EventTable::Stored(workspace.Database(), ids);
    QList<LogRecord> missing;
    for (const LogRecord& record : kept.records)
        if (!there.contains(record.id))
            missing.append(record);
    if (m_found != server) {
        m_report = LookAt(kept, there);
        m_report.records = static_cast<int>(missing.size());
        m_found = server;
    } // otherwise this goes on with what a failure has cut short
    ProgramLog::Write(
        QStringLiteral("The database is on another server (%1, before: %2); of %3 kept log records it has %4")
            .arg(server, m_stored->Server())
            .arg(ids.size())
            .arg(there.size()));
    store(missing);
    m_stored->SetServer(server);
    m_found.clear();
    if (m_report.records > 0 || m_report.olderMissing)
        m_done = m_report;
}

void MissingRecords::Keep(const QList<LogRecord>& records)
{
    if (m_stored)
        m_stored->Add(records);
}

std::optional<MissingRecords::Report> MissingRecords::TakeReport()
{
    return std::exchange(m_done, {});
}

QString TextOf(const MissingRecords::Report& report, const IStringSource& strings)
{
    QString text = FormatMessage(strings, CoreText::ServerChanged, {QString::number(report.records)});
    if (report.olderMissing && report.from.isValid())
        text += u' ' + FormatMessage(strings, CoreText::OlderMissingFrom,
                                     {TimeText(report.from), TimeText(report.to)});
    else if (report.olderMissing)
        text += u' ' + FormatMessage(strings, CoreText::OlderMissing, {TimeText(report.to)});
    return text;
}
