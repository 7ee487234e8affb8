#pragma once

#include "dao/records/Database.h"

#include <QDateTime>
#include <QSet>
#include <QString>
#include <optional>

namespace dao {

// The fields of the message log, as its table and the query of a past period name them.
class EventTable {
public:
    static inline const QString TimeField = QStringLiteral("time_stamp");
    static inline const QString TypeField = QStringLiteral("event_type");
    static inline const QString DescField = QStringLiteral("desc");
    static inline const QString FromField = QStringLiteral("from_address");
    static inline const QString ToField = QStringLiteral("to_address");
    // What the query adds: which picture the type has.
    static inline const QString IconKeyField = QStringLiteral("icon_key");

    // The number of the record that this console has stored last; 0 without one. Raises dao::Error.
    static qlonglong LastNumberOf(Database& database, const QString& console);
    // A record by its number and time.
    struct Mark {
        QString recordId;
        QDateTime time;
    };

    // Which of these numbers are there. A few thousand of them make one statement.
    static QSet<QString> Stored(Database& database, const QStringList& recordIds);
    // The record that was stored last, whichever console did.
    static std::optional<Mark> Newest(Database& database);
};

} // namespace dao
