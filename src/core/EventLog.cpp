#include "core/EventLog.h"

#include "core/DbSession.h"
#include "core/Errors.h"
#include "core/ProgramLog.h"
#include "dao/Database.h"

#include <algorithm>

namespace {

constexpr auto table = "event";

void NoteLostRecord(const QString& reason, const QDateTime& time, EventType type, const QStringList& texts)
{
    ProgramLog::Write(
        QStringLiteral("Log record not stored (%1): time %2, type %3, desc \"%4\", from \"%5\", to \"%6\"")
            .arg(reason, time.toString(Qt::ISODateWithMs), QString::number(static_cast<int>(type)), texts[0],
                 texts[1], texts[2]));
}

// The first `size` characters; a character beyond 16 bits is one and is not cut in two.
QString CutTo(const QString& text, int size)
{
    if (text.size() <= size)
        return text;
    const QList<uint> characters = text.toUcs4();
    qsizetype units = 0;
    for (qsizetype i = 0; i < std::min<qsizetype>(size, characters.size()); ++i)
        units += QChar::requiresSurrogates(characters[i]) ? 2 : 1;
    return text.left(units);
}

} // namespace

EventLog::EventLog(IDbSession& session, const IStringSource& strings) : m_session(session), m_strings(strings)
{
}

void EventLog::AppendLogRecord(const QDateTime& time, EventType type, const QString& desc,
                               const QString& from, const QString& to)
{
    try {
        dao::Database& database = m_session.Database();
        const auto records = database.OpenTable(table, true);
        records->AddNew();
        records->SetField("time_stamp", time);
        records->SetField("event_type", static_cast<int>(type));
        records->SetField("desc", CutTo(desc, database.FieldSize(table, "desc")));
        records->SetField("from_address", from);
        records->SetField("to_address", to);
        records->Update();
    } catch (const std::exception& failure) {
        const QString description = DescribeError(failure, m_strings);
        NoteLostRecord(description, time, type, {desc, from, to});
        throw Error(CodeOf(failure), description);
    }
}
