#include "exchange/CsvTable.h"

#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "exchange/CsvReader.h"
#include "exchange/InputFile.h"
#include "exchange/TextIds.h"

namespace {

constexpr qsizetype Missing = -1;

QString Joined(const CsvTable::Columns& columns)
{
    return (columns.needed + columns.optional).join(QStringLiteral(", "));
}

// Where each column stands in the file; Missing for an optional one that is not there.
QList<qsizetype> Places(const QString& path, const CsvRecord& heading, const CsvTable::Columns& columns,
                        const IStringSource& strings)
{
    const auto raise = [&](int reason, const QStringList& values) {
        RaiseLineError(path, heading.line, FormatMessage(strings, reason, values), strings);
    };
    QStringList names;
    for (const QString& name : heading.fields)
        names.append(name.trimmed().toLower());
    const QStringList all = columns.needed + columns.optional;
    for (const QString& name : names)
        if (!all.contains(name))
            raise(ExchangeText::UnknownColumn, {name, Joined(columns)});
    QList<qsizetype> places;
    for (const QString& column : all) {
        if (names.count(column) > 1)
            raise(ExchangeText::ColumnTwice, {column});
        if (columns.needed.contains(column) && !names.contains(column))
            raise(ExchangeText::ColumnMissing, {column});
        places.append(names.indexOf(column));
    }
    return places;
}

} // namespace

CsvTable::CsvTable(const QString& path, const QByteArray& bytes, const Columns& columns,
                   const IStringSource& strings)
{
    const QList<CsvRecord> records = ReadCsv(path, bytes, strings);
    if (records.isEmpty())
        throw Error(ErrorCode::General,
                    FormatMessage(strings, ExchangeText::FileEmpty, {path, Joined(columns)}));
    const qsizetype width = records.first().fields.size();
    const QList<qsizetype> places = Places(path, records.first(), columns, strings);
    for (const CsvRecord& record : records.mid(1)) {
        Row row{record.line, {}};
        if (record.fields.size() == width)
            for (const qsizetype place : places)
                row.fields.append(place == Missing ? QString() : record.fields[place]);
        m_rows.append(row);
    }
}

CsvTable CsvTable::Read(const QString& path, const Columns& columns, const IStringSource& strings)
{
    return {path, ReadInputFile(path, strings.LoadString(ExchangeText::FileTooLarge)), columns, strings};
}
