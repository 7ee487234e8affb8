#pragma once

#include <QList>
#include <QString>

namespace dao {

// One step of a schema: the script that leads from version - 1 to version.
struct Migration {
    int version;
    QString sql;
};

// The scripts compiled into the program whose paths begin with `prefix` ("postgresql/", "sqlite/workgroup-"),
// numbered from 1 without a gap. A line "{include FILE}" is replaced by a file that several engines share.
QList<Migration> SchemaScripts(const QString& prefix);

} // namespace dao
