#pragma once

#include "ctl/program/Command.h"
#include "logbook/query/LogFilter.h"

// What the commands about the log share: which records are wanted, and as what they are printed.
namespace LogOptions {

// With the account that does it.
QList<QCommandLineOption> All();
QString About();

// UsageError for a value that is none.
LogFilter FilterOf(const Request& request);
// Invalid when the option is not given.
QDateTime TimeOf(const Request& request, const QString& option);
LogFacts FactsOf(const Request& request, dao::Database& database);

enum class Format { Text, Csv, Json };
Format FormatOf(const Request& request, Format otherwise);
// With its line end.
QString Line(const dao::EventRecord& record, const LogFacts& facts, Format format);
// Empty where the format has none.
QString Header(Format format);

} // namespace LogOptions
