#include "logbook/query/LogFacts.h"

#include "core/eventlog/EventLog.h"
#include "dao/base/Words.h"
#include "dao/tables/StatusTable.h"
#include "radio/base/EmergencyCalls.h"
#include "radio/base/StatusTexts.h"

#include <QRegularExpression>
#include <algorithm>

namespace {

constexpr int Codes = 32;
constexpr int In = static_cast<int>(MessageWay::In);
constexpr int Out = static_cast<int>(MessageWay::Out);

} // namespace

LogFacts::LogFacts(const IStringSource& strings, const QStringList& own)
    : m_own(own),
      m_emergencies(EmergencyCallTexts() + EmergencyCallTexts(strings))
{
    m_own.removeAll(QString());
    const StatusTexts texts(strings);
    for (int code = 0; code < Codes; ++code)
        Put(code, texts.StatusInText(code), texts.StatusOutText(code));
}

void LogFacts::ReadStatuses(dao::Database& database)
{
    m_emergencyStatuses.clear();
    for (const auto rows = dao::StatusTable::OpenSnapshot(database); !rows->Eof(); rows->MoveNext()) {
        const dao::StatusRecord status = dao::StatusTable::Read(*rows);
        Put(status.code, StatusTexts::Line(status.code, status.in),
            StatusTexts::Line(status.code, status.out));
        if (status.emergency)
            m_emergencyStatuses.insert(status.code);
    }
}

void LogFacts::Put(int code, const QString& in, const QString& out)
{
    m_in.insert(code, in);
    m_out.insert(code, out);
    m_statusWords.insert(code, dao::WordsOf(in) + dao::WordsOf(out));
}

int LogFacts::DirectionOf(const dao::EventRecord& record) const
{
    if (record.direction != 0)
        return record.direction;
    return m_own.contains(record.from) ? Out : m_own.contains(record.to) ? In : 0;
}

QString LogFacts::TextOf(const dao::EventRecord& record) const
{
    if (record.kind != static_cast<int>(EventType::Status))
        return record.desc;
    bool isCode = false;
    const int code = record.desc.toInt(&isCode);
    const QHash<int, QString>& texts = DirectionOf(record) == Out ? m_out : m_in;
    return isCode ? texts.value(code, record.desc) : record.desc;
}

bool LogFacts::IsEmergency(const dao::EventRecord& record) const
{
    if (record.kind == static_cast<int>(EventType::Call))
        return m_emergencies.contains(record.desc);
    bool isCode = false;
    const int code = record.desc.toInt(&isCode);
    return record.kind == static_cast<int>(EventType::Status) && isCode &&
           m_emergencyStatuses.contains(code) && DirectionOf(record) != Out;
}

bool LogFacts::IsUnknown(const QString& party)
{
    static const QRegularExpression raw(QStringLiteral("^/[01][0-9]{2}0000$"));
    return raw.match(party).hasMatch();
}

QStringList LogFacts::StatusesWith(const QString& beginning) const
{
    QStringList codes;
    for (auto words = m_statusWords.begin(); words != m_statusWords.end(); ++words)
        if (std::any_of(words->begin(), words->end(),
                        [&](const QString& word) { return word.startsWith(beginning); }))
            codes.append(QString::number(words.key()));
    codes.sort();
    return codes;
}
