#pragma once

#include "logbook/query/LogFacts.h"

#include <QString>
#include <QStringList>

// A record of the log, or of what comes of it, as a line of text, for people and for other programs.
namespace LogLines {

// For a terminal: control characters stand as numbers.
QString Text(const dao::EventRecord& record, const LogFacts& facts);

// RFC 4180. A spreadsheet takes no field for a formula: one that begins like one has an apostrophe before it.
QString CsvHeader();
QString Csv(const dao::EventRecord& record, const LogFacts& facts);
QString CsvOf(QStringList fields);
// In ISO 8601 with its distance from UTC; empty for none.
QString CsvTime(const QDateTime& time);

// One JSON object without a line end; times in ISO 8601 with their distance from UTC.
QString Json(const dao::EventRecord& record, const LogFacts& facts);

// "2020", or "Unit20 (2020)" where the number is known, too.
QString Party(const QString& name, const QString& number);

// For a terminal: control characters as numbers.
QString Printable(const QString& text);

} // namespace LogLines
