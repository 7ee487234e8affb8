#pragma once

#include "dao/base/LogReceipt.h"
#include "dao/tables/EventIndex.h"

#include <QSet>
#include <QString>
#include <functional>
#include <optional>
#include <vector>

namespace dao {

// The fields of the message log, as its table and the query of a past period name them.
class EventTable {
public:
    static inline const QString Table = QStringLiteral("event");
    static inline const QString TimeField = QStringLiteral("time_stamp");
    static inline const QString TypeField = QStringLiteral("event_type");
    static inline const QString DescField = QStringLiteral("desc");
    static inline const QString FromField = QStringLiteral("from_address");
    static inline const QString ToField = QStringLiteral("to_address");
    // What the query adds: which picture the type has.
    static inline const QString IconKeyField = QStringLiteral("icon_key");

    // Of the record that this console has stored last: its number, 0 without one, and its chain; that of the
    // last one that has any, or empty. Raises dao::Error.
    struct Last {
        qlonglong number = 0;
        QString chain;
    };
    static Last LastOf(Database& database, const QString& console);
    // How far each console's chain has come, by the consoles' names.
    static LogReceipt Receipt(Database& database, const QDateTime& time);
    // False in a database of a version that knows no chains.
    static bool HasChains(Database& database);
    // The records with numbers from `after` (exclusive) to `last`, with their chains, in order; at most so
    // many.
    static std::vector<EventRecord> ReadChained(Database& database, qlonglong after, qlonglong last,
                                                int most);

    // Whoever adds a record without being a console: its name, and what makes the chain of the record, given
    // the one before.
    struct Signer {
        QString console;
        std::function<QString(const QString& databaseId, const QString& previous, const EventRecord& record)>
            chain;
    };
    // Adds the record as the signer's next one; without a signer it is nobody's. On files or as the owner.
    static void AppendSigned(Database& database, EventRecord record, const Signer& signer);

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
