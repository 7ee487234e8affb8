#pragma once

#include <QStringList>

// One record as CSV with its line end; fields are quoted where they need it (RFC 4180).
QString CsvLine(const QStringList& fields);
