#include "exchange/StatusImport.h"

#include "core/texts/CsvLine.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "exchange/TextIds.h"

namespace {

enum Field { Code, In, Out, Emergency };

constexpr int LastCode = 31;
const QString Yes = QStringLiteral("yes");
const QString No = QStringLiteral("no");

} // namespace

CsvTable::Columns StatusImport::Columns()
{
    return {.needed = {"code", "in", "out"}, .optional = {"emergency"}};
}

QString StatusImport::Text(dao::Database& database, int& count)
{
    QString text = CsvLine(Columns().needed + Columns().optional);
    count = 0;
    for (const auto rows = dao::StatusTable::OpenSnapshot(database); !rows->Eof();
         rows->MoveNext(), ++count) {
        const dao::StatusRecord record = dao::StatusTable::Read(*rows);
        text += CsvLine({QString::number(record.code), record.in, record.out, record.emergency ? Yes : No});
    }
    return text;
}

StatusImport::StatusImport(dao::Database& database, CsvTable table, const IStringSource& strings)
    : m_database(database),
      m_table(std::move(table)),
      m_strings(strings),
      m_longest(dao::StatusTable::LongestText(database))
{
}

std::vector<ImportLine> StatusImport::Check()
{
    for (const auto rows = dao::StatusTable::OpenSnapshot(m_database); !rows->Eof(); rows->MoveNext()) {
        const dao::StatusRecord record = dao::StatusTable::Read(*rows);
        m_known.emplace(record.code, record);
    }
    std::vector<ImportLine> lines;
    for (const CsvTable::Row& row : m_table.Rows())
        lines.push_back(CheckRow(row));
    return lines;
}

ImportLine StatusImport::CheckRow(const CsvTable::Row& row)
{
    ImportLine line{row.line, row.fields.value(Code).trimmed(), ImportOutcome::Refused, {}};
    dao::StatusRecord message;
    line.reason = row.fields.isEmpty() ? m_strings.LoadString(ExchangeText::OtherFieldCount)
                                       : Parse(row.fields, message);
    if (!line.reason.isEmpty())
        return line;
    m_read.emplace(message.code, message);
    const auto known = m_known.find(message.code);
    if (known == m_known.end())
        line.outcome = ImportOutcome::Added;
    else
        line.outcome = known->second == message ? ImportOutcome::Unchanged : ImportOutcome::Changed;
    return line;
}

QString StatusImport::Parse(const QStringList& fields, dao::StatusRecord& message) const
{
    bool isNumber = false;
    message.code = fields[Code].trimmed().toInt(&isNumber);
    if (!isNumber || message.code < 0 || message.code > LastCode)
        return FormatMessage(m_strings, ExchangeText::BadCode, {fields[Code]});
    if (m_read.contains(message.code))
        return FormatMessage(m_strings, ExchangeText::CodeTwice, {QString::number(message.code)});
    for (const int text : {In, Out})
        if (fields[text].size() > m_longest)
            return FormatMessage(m_strings, ExchangeText::TooLong,
                                 {Columns().needed[text], QString::number(m_longest)});
    message.in = fields[In];
    message.out = fields[Out];
    const QString emergency = fields[Emergency].trimmed().toLower();
    if (fields[Emergency].isNull()) {
        const auto known = m_known.find(message.code);
        message.emergency = known != m_known.end() && known->second.emergency;
    } else if (emergency == Yes || emergency == No) {
        message.emergency = emergency == Yes;
    } else {
        return FormatMessage(m_strings, ExchangeText::NotYesOrNo,
                             {Columns().optional.first(), fields[Emergency]});
    }
    return {};
}

void StatusImport::Store()
{
    const auto records = dao::StatusTable::Open(m_database);
    for (const auto& [code, message] : m_read) {
        const auto known = m_known.find(code);
        if (known != m_known.end() && known->second == message)
            continue;
        records->Seek(code);
        dao::StatusTable::Store(*records, message);
    }
}
