#include "ctl/files/CsvTable.h"

#include "core/texts/Errors.h"
#include "ctl/files/CsvReader.h"

namespace {

// Where each column asked for stands in the file.
QList<qsizetype> Places(const QString& path, const CsvRecord& heading, const QStringList& columns)
{
    QStringList names;
    for (const QString& name : heading.fields)
        names.append(name.trimmed().toLower());
    QList<qsizetype> places;
    for (const QString& column : columns) {
        if (names.count(column) > 1)
            RaiseLineError(path, heading.line, QStringLiteral("column \"%1\" comes twice").arg(column));
        if (!names.contains(column))
            RaiseLineError(path, heading.line, QStringLiteral("column \"%1\" is missing").arg(column));
        places.append(names.indexOf(column));
    }
    for (const QString& name : names) {
        if (!columns.contains(name))
            RaiseLineError(path, heading.line,
                           QStringLiteral("unknown column \"%1\"; the columns are %2")
                               .arg(name, columns.join(QStringLiteral(", "))));
    }
    return places;
}

} // namespace

CsvTable::CsvTable(const QString& path, const QStringList& columns)
{
    const QList<CsvRecord> records = ReadCsvFile(path);
    if (records.isEmpty())
        throw Error(ErrorCode::General,
                    QStringLiteral("%1: the file is empty; its first line has to name the columns %2")
                        .arg(path, columns.join(QStringLiteral(", "))));
    const QList<qsizetype> places = Places(path, records.first(), columns);
    for (const CsvRecord& record : records.mid(1)) {
        Row row{record.line, {}};
        if (record.fields.size() == places.size())
            for (const qsizetype place : places)
                row.fields.append(record.fields[place]);
        m_rows.append(row);
    }
}
