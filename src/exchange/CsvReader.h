#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

struct IStringSource;

// One record of a CSV text: fields separated by commas, those that hold commas, quotes or line ends in double
// quotes with quotes inside doubled (RFC 4180).
struct CsvRecord {
    int line; // on which the record begins, from 1
    QStringList fields;
};

// Reads what a file holds, in UTF-8, with or without a byte order mark. Blank lines are skipped. Raises Error
// that names file, line and reason.
QList<CsvRecord> ReadCsv(const QString& path, const QByteArray& bytes, const IStringSource& strings);

// An Error about one line of a file.
[[noreturn]] void RaiseLineError(const QString& path, int line, const QString& reason,
                                 const IStringSource& strings);
