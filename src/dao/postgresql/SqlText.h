#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

namespace dao::postgresql {

// SQL as callers and stored queries write it, turned into the server's form: "?" and ":name" become "$1",
// "$2" ... Parameters of one name are one. kyn_now() is a parameter that the program sets itself.
struct SqlText {
    static SqlText Parse(const QString& sql);

    QByteArray server;
    QStringList parameters; // names without their prefix, empty for "?"; that of kyn_now() not among them
    QList<int> numbers;     // of each of them
    int now = 0;            // the number of the parameter for kyn_now(); 0 when there is none
    int count = 0;          // of all parameters
};

} // namespace dao::postgresql
